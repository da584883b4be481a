// The report of a calibration.
#include "tools/kxmath/calibrate/calibrationResult.h"

#include "report/elements/page.h"
#include "report/elements/plot.h"
#include "report/elements/svg.h"

#include <KxMath/KxMathVersion.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace kxtool {

namespace {

using namespace kxreport;

namespace colour = kxreport::colour;

constexpr int kWidth = 1060;

QString noNumber() {
    return numberText(std::numeric_limits<double>::quiet_NaN(), 0);
}

/// Neighbouring flanks have different colours, and the oblique ridge has its own.
const char* flankColour(int flank) {
    const bool isBehind = flank % 2 == 1;
    if (flank >= kFlankCount - 2) {
        return isBehind ? colour::kPurple : colour::kGreen;
    }
    return isBehind ? colour::kOrange : colour::kBlue;
}

QString flankLegend(int flank) {
    switch (flank) {
    case 0:
        return QStringLiteral("before a straight crest");
    case 1:
        return QStringLiteral("behind it");
    case 6:
        return QStringLiteral("before the oblique crest");
    case 7:
        return QStringLiteral("behind it");
    default:
        return {};
    }
}

/// The points on one flank as `value` shows them, -1 for those on none.
template <typename Value>
Points pointsOn(const PoseMeasurement& m, int flank, Value value) {
    Points points;
    for (const MeasuredPoint& p : m.points) {
        if (p.flank == flank) {
            points.push_back(value(p));
        }
    }
    return points;
}

template <typename Value>
void addFlanks(Plot& plot, const PoseMeasurement& m, Value value, double size) {
    for (int flank = 0; flank < kFlankCount; ++flank) {
        plot.addDots(pointsOn(m, flank, value), flankColour(flank), size, flankLegend(flank));
    }
}

Range rangeOf(const PoseMeasurement& m) {
    Range x;
    for (const MeasuredPoint& p : m.points) {
        x.include(static_cast<double>(p.point.x));
    }
    return x.padded(0.02);
}

QString profilePlot(const PoseMeasurement& m, const QString& id) {
    const auto value = [](const MeasuredPoint& p) {
        return QPointF(static_cast<double>(p.point.x), -static_cast<double>(p.point.y));
    };
    Range x = rangeOf(m);
    Range y;
    for (const MeasuredPoint& p : m.points) {
        y.include(value(p).y());
    }
    y = y.padded(0.05);
    const double border = -Plot::areaHeight(0);
    const double wanted = Plot::areaWidth(kWidth) * y.size() / x.size() + border;
    const int height = static_cast<int>(std::clamp(wanted, 260.0, 520.0));
    kxreport::makeScalesEqual(x, y, Plot::areaWidth(kWidth), Plot::areaHeight(height));
    Plot plot(id, QStringLiteral("Profile %1").arg(m.name), kWidth, height, {QStringLiteral("x, mm"), x},
              {QStringLiteral("-y, mm (towards the sensor)"), y});
    plot.addDots(pointsOn(m, -1, value), colour::kPale, 2.0, QStringLiteral("other points"));
    addFlanks(plot, m, value, 2.2);
    return plot.svg();
}

QString residualPlot(const PoseMeasurement& m, const QString& id) {
    const auto value = [](const MeasuredPoint& p) { return QPointF(static_cast<double>(p.point.x), p.residual); };
    constexpr double kLeast = 0.1; // mm, so that good fits look good
    Range y{-kLeast, kLeast};
    for (const MeasuredPoint& p : m.points) {
        if (p.flank >= 0) {
            y.include(p.residual);
        }
    }
    Plot plot(id, QStringLiteral("Residuals of %1").arg(m.name), kWidth, 280, {QStringLiteral("x, mm"), rangeOf(m)},
              {QStringLiteral("behind the object, mm"), y.padded(0.05)});
    plot.addLevel(0.0, {colour::kGrey, 1.0});
    addFlanks(plot, m, value, 2.6);
    return plot.svg();
}

void addPose(Page& page, const CalibrationResult& result) {
    const PoseAverage& average = result.average;
    std::vector<std::vector<Cell>> rows;
    for (size_t i = 0; i < kPoseNames.size(); ++i) {
        const bool isAngle = i >= kFirstAngle;
        const int decimals = isAngle ? 4 : 3;
        const bool isKnown = i != 1 || result.hasY();
        rows.push_back({{QLatin1String(kPoseNames[i])},
                        {isAngle ? QStringLiteral("degrees") : QStringLiteral("mm")},
                        {isKnown ? numberText(average.pose[i], decimals) : QStringLiteral("not known")},
                        {numberText(average.deviation[i], decimals)},
                        {average.profiles > 1 ? numberText(average.largest[i], decimals) : noNumber()}});
    }
    page.table({QStringLiteral("value"), QStringLiteral("unit"), QStringLiteral("mean"),
                QStringLiteral("standard deviation of a profile"), QStringLiteral("largest difference from the mean")},
               rows, 2);
    if (!result.task.findsY()) {
        page.paragraph(QStringLiteral("This placement does not find y. By the object it would be %1 mm.")
                           .arg(numberText(average.foundY, 3)));
    }
}

void addFacts(Page& page, const CalibrationResult& result) {
    double worstRms = 0.0;
    double worstAngle = 0.0;
    for (const PoseMeasurement& m : result.measurements) {
        worstRms = std::max(worstRms, m.fault.isEmpty() ? m.rms : 0.0);
        worstAngle = std::max(worstAngle, m.fault.isEmpty() ? m.angleDeviation : 0.0);
    }
    const auto flanks = pooled(result.measurements);
    const auto off = std::count_if(flanks.begin(), flanks.end(), [](const FlankResidual& f) { return f.isOff(); });
    const int all = static_cast<int>(result.measurements.size());
    page.facts(
        {{QStringLiteral("Profiles with a pose"), QStringLiteral("%1 of %2").arg(result.average.profiles).arg(all),
          result.average.profiles == all ? Tone::Good : Tone::Bad},
         {QStringLiteral("Residual, rms"), numberText(worstRms, 3) + QStringLiteral(" mm"), Tone::Plain},
         {QStringLiteral("Angles certain to, one sigma"), numberText(worstAngle, 3) + QStringLiteral("\u00b0"),
          Tone::Plain},
         {QStringLiteral("Flanks off the object"), QString::number(off), off == 0 ? Tone::Good : Tone::Bad}});
}

void addFlankTable(Page& page, const CalibrationResult& result) {
    std::vector<std::vector<Cell>> rows;
    const auto flanks = pooled(result.measurements);
    for (int i = 0; i < kFlankCount; ++i) {
        const FlankResidual& flank = flanks[static_cast<size_t>(i)];
        rows.push_back({{flankName(i)},
                        {QString::number(flank.points)},
                        {numberText(flank.mean, 3), flank.isOff() ? Tone::Bad : Tone::Good},
                        {numberText(flank.rms, 3)},
                        {numberText(flank.largest, 3)}});
    }
    page.table({QStringLiteral("flank"), QStringLiteral("points"), QStringLiteral("mean, mm"),
                QStringLiteral("rms, mm"), QStringLiteral("largest, mm")},
               rows, 1);
    page.paragraph(QStringLiteral(
        "Distances of the points from the object along Y, positive behind it. A mean that is red lies off by more than "
        "0.02 mm and four standard deviations: there or on a neighbour the object is not as its pitch, slope and "
        "obliqueness say, is dirty, or is partly hidden. An error of the oblique ridge moves x by the error across it "
        "divided by the obliqueness."));
}

void addProfileTable(Page& page, const CalibrationResult& result) {
    std::vector<std::vector<Cell>> rows;
    QStringList headers = {QStringLiteral("profile"), QStringLiteral("fault")};
    for (const char* const name : kPoseNames) {
        headers += QLatin1String(name);
    }
    headers += QStringLiteral("rms, mm");
    for (const PoseMeasurement& m : result.measurements) {
        std::vector<Cell> row = {
            {m.name},
            {m.fault.isEmpty() ? QStringLiteral("none") : m.fault, m.fault.isEmpty() ? Tone::Faint : Tone::Bad}};
        for (size_t i = 0; i < m.pose.size(); ++i) {
            const bool isKnown = m.fault.isEmpty() && (i != 1 || result.hasY());
            row.push_back({isKnown ? numberText(m.pose[i], 3) : noNumber()});
        }
        row.push_back({m.fault.isEmpty() ? numberText(m.rms, 3) : noNumber()});
        rows.push_back(std::move(row));
    }
    page.table(headers, rows, 2);
}

void addDrawings(Page& page, const CalibrationResult& result) {
    constexpr int kMaxDrawings = 5; // the rest would look alike
    int number = 0;
    for (const PoseMeasurement& m : result.measurements) {
        if (!m.fault.isEmpty() && m.points.empty()) {
            continue;
        }
        if (++number > kMaxDrawings) {
            page.paragraph(QStringLiteral("The first %1 profiles are drawn.").arg(kMaxDrawings));
            return;
        }
        page.heading(m.name);
        page.figure(profilePlot(m, QStringLiteral("profile%1").arg(number)),
                    QStringLiteral("The profile as the sensor sees it, the sensor above."));
        if (m.fault.isEmpty()) {
            page.figure(residualPlot(m, QStringLiteral("residuals%1").arg(number)),
                        QStringLiteral("How far the points on the flanks lie behind the object with the pose found."));
        } else {
            page.warning(QStringLiteral("The profile %1.").arg(m.fault));
        }
    }
}

QString subtitle(const CalibrationTask& task) {
    return QStringLiteral("Position %1; object with pitch %2 mm, slope %3, obliqueness %4, crests at Y = %5 mm")
        .arg(task.placement)
        .arg(task.object.pitch)
        .arg(task.object.slope)
        .arg(task.object.obliqueness)
        .arg(task.object.crestY);
}

} // namespace

QString calibrationReport(const CalibrationResult& result) {
    Page page(QStringLiteral("Pose of a sensor"), subtitle(result.task));
    addFacts(page, result);
    for (const QString& file : result.unreadable) {
        page.warning(file);
    }
    for (const QString& warning : result.warnings) {
        page.warning(warning);
    }
    if (result.hasPose()) {
        page.heading(QStringLiteral("Pose"));
        addPose(page, result);
        page.heading(QStringLiteral("Distances of the flanks from the object"));
        addFlankTable(page, result);
    } else {
        page.warning(result.average.fault.isEmpty() ? QStringLiteral("No pose was found.") : result.average.fault);
    }
    if (result.measurements.size() > 1) {
        page.heading(QStringLiteral("Profiles"));
        addProfileTable(page, result);
    }
    addDrawings(page, result);
    page.paragraph(QStringLiteral("KxMath %1.").arg(QLatin1String(KxMath_GetVersionString())));
    return page.html();
}

} // namespace kxtool
