// The report of a calibration.
#include "report/calibrate/calibrationReport.h"

#include "report/elements/fileNames.h"
#include "report/elements/page.h"
#include "report/elements/plot.h"
#include "report/elements/svg.h"
#include "report/elements/textList.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kxreport {

namespace {

using namespace KxInspect;

constexpr int kWidth = 1060;

/// Neighbouring flanks have different colours, and the oblique ridge has its own.
const char* flankColour(std::size_t flank) {
    const bool isBehind = flank % 2 == 1;
    if (flank >= kFlankCount - 2) {
        return isBehind ? colour::kPurple : colour::kGreen;
    }
    return isBehind ? colour::kOrange : colour::kBlue;
}

QString flankLegend(std::size_t flank) {
    switch (flank) {
    case 0:
        return QStringLiteral("straight, before crest");
    case 1:
        return QStringLiteral("straight, behind crest");
    case 6:
        return QStringLiteral("oblique, before crest");
    case 7:
        return QStringLiteral("oblique, behind crest");
    default:
        return {};
    }
}

/// The points on one flank, or those without a flank, transformed by `value`.
template <typename Value>
Points pointsOn(const ProfilePose& m, std::optional<std::size_t> flank, Value value) {
    Points points;
    for (const CalibrationPoint& p : m.points) {
        if (p.flank == flank && !p.isOutlier) {
            points.push_back(value(p));
        }
    }
    return points;
}

template <typename Value>
void addFlanks(Plot& plot, const ProfilePose& m, Value value, double size) {
    for (std::size_t flank = 0; flank < kFlankCount; ++flank) {
        plot.addDots(pointsOn(m, flank, value), flankColour(flank), size, flankLegend(flank));
    }
}

Range rangeOf(const ProfilePose& m) {
    Range x;
    for (const CalibrationPoint& p : m.points) {
        x.include(static_cast<double>(p.point.x));
    }
    return x.padded(0.02);
}

QString profilePlot(const ProfilePose& m, const QString& name, const QString& id) {
    const auto value = [](const CalibrationPoint& p) {
        return QPointF(static_cast<double>(p.point.x), -static_cast<double>(p.point.y));
    };
    Range x = rangeOf(m);
    Range y;
    for (const CalibrationPoint& p : m.points) {
        y.include(value(p).y());
    }
    y = y.padded(0.05);
    const double border = -Plot::areaHeight(0);
    const double wanted = Plot::areaWidth(kWidth) * y.size() / x.size() + border;
    const int height = static_cast<int>(std::clamp(wanted, 260.0, 520.0));
    makeScalesEqual(x, y, Plot::areaWidth(kWidth), Plot::areaHeight(height));
    Plot plot(id, QStringLiteral("Profile %1").arg(name), kWidth, height, {QStringLiteral("x, mm"), x},
              {QStringLiteral("-y, mm (towards the sensor)"), y});
    plot.addDots(pointsOn(m, std::nullopt, value), colour::kPale, 2.0, QStringLiteral("other points"));
    addFlanks(plot, m, value, 2.2);
    Points outliers;
    for (const CalibrationPoint& p : m.points) {
        if (p.isOutlier) {
            outliers.push_back(value(p));
        }
    }
    plot.addDots(outliers, colour::kBlack, 2.6, QStringLiteral("outliers"));
    return plot.svg();
}

QString residualPlot(const ProfilePose& m, const QString& name, const QString& id) {
    const auto value = [](const CalibrationPoint& p) { return QPointF(static_cast<double>(p.point.x), p.residual); };
    constexpr double kSmallestRange = 0.1; // mm, keeps noise from filling the plot
    Range y{-kSmallestRange, kSmallestRange};
    for (const CalibrationPoint& p : m.points) {
        if (p.flank) {
            y.include(p.residual);
        }
    }
    Plot plot(id, QStringLiteral("Residuals of %1").arg(name), kWidth, 280, {QStringLiteral("x, mm"), rangeOf(m)},
              {QStringLiteral("residual, mm"), y.padded(0.05)});
    plot.addLevel(0.0, {colour::kGrey, 1.0});
    addFlanks(plot, m, value, 2.6);
    return plot.svg();
}

std::vector<Cell> poseRow(const QString& name, const PoseField& field, double value, const PoseAverage& average) {
    const int decimals = field.isAngle ? 4 : 3;
    return {{name},
            {field.isAngle ? QStringLiteral("degrees") : QStringLiteral("mm")},
            {numberText(value, decimals)},
            {numberText(average.uncertainty.*field.value, decimals)},
            {numberText(average.deviation.*field.value, decimals)},
            {numberText(average.largest.*field.value, decimals)}};
}

void addPose(Page& page, const CalibrationResult& result) {
    const PoseAverage& average = result.average;
    std::vector<std::vector<Cell>> rows;
    for (const PoseField& field : kPoseFields) {
        if (field.value == &SensorPose::y && !placementOf(result.task.placement).findsY) {
            const QString given = result.hasY() ? numberText(average.pose.y, 3) : QStringLiteral("not known");
            rows.push_back({{QStringLiteral("y, as given")}, {QStringLiteral("mm")}, {given}, {}, {}, {}});
            rows.push_back(poseRow(QStringLiteral("y by the object"), field, average.foundY, average));
        } else {
            rows.push_back(poseRow(QLatin1String(field.name), field, average.pose.*field.value, average));
        }
    }
    page.table({QStringLiteral("value"), QStringLiteral("unit"), QStringLiteral("mean"),
                QStringLiteral("95 % interval, \u00b1"), QStringLiteral("standard deviation, one profile"),
                QStringLiteral("largest difference from the mean")},
               rows, 2);
    page.paragraph(
        result.task.objectError.isSet()
            ? QStringLiteral(
                  "The intervals contain the noise of the points and the standard uncertainties of the object: "
                  "pitch %1 mm, slope %2, obliqueness %3.")
                  .arg(result.task.objectError.pitch)
                  .arg(result.task.objectError.slope)
                  .arg(result.task.objectError.obliqueness)
            : QStringLiteral("The intervals contain the noise of the points; errors of the object are not in them."));
    page.paragraph(QStringLiteral("Standard deviations and largest differences, of profiles as of points, describe the "
                                  "data: they are what intervals are made of, and have none of their own."));
}

/// How many flanks are off, of those with points. Without a pose there is none to judge.
Fact flankFact(const CalibrationResult& result) {
    const auto count = [&](const auto& condition) {
        return result.hasPose() ? std::count_if(result.flanks.begin(), result.flanks.end(), condition) : 0;
    };
    const auto off = count([](const FlankResidual& flank) { return flank.isOff(); });
    const auto judged = count([](const FlankResidual& flank) { return flank.isJudged(); });
    const QString label = QStringLiteral("Flanks off the object");
    if (judged == 0) {
        return {label, QStringLiteral("not judged"), Tone::Bad};
    }
    const bool isWhole = judged == static_cast<std::ptrdiff_t>(kFlankCount);
    return {label, QStringLiteral("%1 of %2").arg(off).arg(judged),
            off > 0   ? Tone::Bad
            : isWhole ? Tone::Good
                      : Tone::Plain};
}

void addFacts(Page& page, const CalibrationResult& result) {
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    double worstRms = kNaN;
    double worstAngle = kNaN;
    for (const ProfilePose& m : result.profiles) {
        worstRms = m.hasPose() ? std::fmax(worstRms, m.rms) : worstRms; // NaN is nothing to compare with
        worstAngle = m.hasPose() ? std::fmax(worstAngle, m.angleDeviation) : worstAngle;
    }
    int outliers = 0;
    for (const ProfilePose& m : result.profiles) {
        outliers += m.outliers;
    }
    const auto withUnit = [](double value, const char* unit) {
        const QString text = numberText(value, 3);
        return std::isnan(value) ? text : text + QString::fromUtf8(unit);
    };
    const int all = static_cast<int>(result.profiles.size());
    page.facts(
        {{QStringLiteral("Profiles with a pose"), QStringLiteral("%1 of %2").arg(result.average.profiles).arg(all),
          result.average.profiles == all ? Tone::Good : Tone::Bad},
         {QStringLiteral("Largest rms residual of a profile"), withUnit(worstRms, " mm"), Tone::Plain},
         {QStringLiteral("Largest standard deviation of an angle"), withUnit(worstAngle, "\u00b0"), Tone::Plain},
         {QStringLiteral("Sensor"),
          !result.side                           ? QStringLiteral("not known")
          : *result.side == SensorSide::SmallerY ? QStringLiteral("at smaller y than the crests")
                                                 : QStringLiteral("at larger y than the crests"),
          Tone::Plain},
         {QStringLiteral("Outliers"), QString::number(outliers), Tone::Plain},
         flankFact(result)});
}

void addFlankTable(Page& page, const CalibrationResult& result) {
    std::vector<std::vector<Cell>> rows;
    for (std::size_t i = 0; i < kFlankCount; ++i) {
        const FlankResidual& flank = result.flanks[i];
        rows.push_back({{QString::fromStdString(flankName(i))},
                        {QString::number(flank.points)},
                        {numberText(flank.mean, 3), flank.isOff()      ? Tone::Bad
                                                    : flank.isJudged() ? Tone::Good
                                                                       : Tone::Plain},
                        {numberText(flank.uncertainty, 3)},
                        {numberText(flank.rms, 3)},
                        {numberText(flank.largest, 3)}});
    }
    page.table({QStringLiteral("flank"), QStringLiteral("points"), QStringLiteral("mean residual, mm"),
                QStringLiteral("95 % interval, \u00b1 mm"), QStringLiteral("rms, mm"), QStringLiteral("largest, mm")},
               rows, 1);
    page.paragraph(QStringLiteral(
        "A residual is the distance of a point from the object along Y, positive behind the object as the sensor sees "
        "it. A red mean exceeds 0.02 mm and four standard deviations: this flank or a neighbour deviates from the "
        "given "
        "pitch, slope and obliqueness, is dirty, or is partly hidden. An error of the oblique ridge moves x by the "
        "error across the ridge divided by the obliqueness."));
}

std::vector<std::string> pathsOf(const CalibrationResult& result) {
    std::vector<std::string> paths;
    for (const ProfilePose& m : result.profiles) {
        paths.push_back(m.name);
    }
    return paths;
}

/// @param names of the profiles, for readers
void addProfileTable(Page& page, const CalibrationResult& result, const QStringList& names) {
    std::vector<std::vector<Cell>> rows;
    QStringList headers = textList({QStringLiteral("profile"), QStringLiteral("fault")});
    for (const PoseField& field : kPoseFields) {
        headers +=
            QStringLiteral("%1, %2").arg(QLatin1String(field.name), QLatin1String(field.isAngle ? "degrees" : "mm"));
    }
    headers += QStringLiteral("rms, mm");
    for (std::size_t i = 0; i < result.profiles.size(); ++i) {
        const ProfilePose& m = result.profiles[i];
        std::vector<Cell> row = {{names.at(static_cast<qsizetype>(i))},
                                 {m.hasPose() ? QStringLiteral("none") : QString::fromStdString(m.fault),
                                  m.hasPose() ? Tone::Faint : Tone::Bad}};
        const bool findsY = placementOf(result.task.placement).findsY;
        const SensorPose pose = findsY ? m.pose : withFoundY(m.pose, m.foundY);
        for (const PoseField& field : kPoseFields) {
            const double uncertainty = m.uncertainty.*field.value;
            const QString value = numberText(pose.*field.value, 3); // a dash without a pose
            row.push_back(
                {std::isnan(uncertainty) ? value : value + QStringLiteral(" \u00b1 ") + numberText(uncertainty, 3)});
        }
        row.push_back({numberText(m.rms, 3)});
        rows.push_back(std::move(row));
    }
    page.table(headers, rows, 2);
    page.paragraph(
        QStringLiteral("Each value stands with half the width of its 95 % interval; y is that by the object."));
}

void addDrawings(Page& page, const CalibrationResult& result, const QStringList& names) {
    constexpr int kMaxDrawings = 5; // keeps the page short
    int number = 0;
    for (std::size_t i = 0; i < result.profiles.size(); ++i) {
        const ProfilePose& m = result.profiles[i];
        const QString& name = names.at(static_cast<qsizetype>(i));
        if (!m.hasPose() && m.points.empty()) {
            continue;
        }
        if (++number > kMaxDrawings) {
            page.paragraph(QStringLiteral("The first %1 profiles are drawn.").arg(kMaxDrawings));
            return;
        }
        page.heading(name);
        page.figure(profilePlot(m, name, QStringLiteral("profile%1").arg(number)),
                    QStringLiteral("The profile in the frame of the sensor, which is at the top."));
        if (m.hasPose()) {
            page.figure(residualPlot(m, name, QStringLiteral("residuals%1").arg(number)),
                        QStringLiteral(
                            "Residuals of the points on the flanks for the pose found, positive behind the object."));
        } else {
            page.failure(QStringLiteral("The profile %1.").arg(QString::fromStdString(m.fault)));
        }
    }
}

QString subtitle(const CalibrationTask& task) {
    return QStringLiteral("Placement code %1; object with pitch %2 mm, slope %3, obliqueness %4, crests at Y = %5 mm")
        .arg(task.placement)
        .arg(task.object.pitch)
        .arg(task.object.slope)
        .arg(task.object.obliqueness)
        .arg(task.object.crestY);
}

} // namespace

QString calibrationReport(const CalibrationResult& result, const PageOrigin& origin) {
    Page page(QStringLiteral("Pose of a sensor"), subtitle(result.task), origin);
    const std::vector<std::string> paths = pathsOf(result);
    const QStringList names = distinctNames(paths);
    addFacts(page, result);
    for (const std::string& text : result.unreadable) {
        page.failure(withBareName(QString::fromStdString(text)) + QLatin1Char('.'));
    }
    for (const std::string& text : result.warnings) {
        page.warning(withNames(QString::fromStdString(text), paths, names));
    }
    if (result.hasPose()) {
        page.heading(QStringLiteral("Pose"));
        addPose(page, result);
        page.heading(QStringLiteral("Residuals of the flanks"));
        addFlankTable(page, result);
    } else {
        page.failure(withNames(QString::fromStdString(reasonWithoutPose(result)), paths, names) + QLatin1Char('.'));
    }
    if (result.profiles.size() > 1) {
        page.heading(QStringLiteral("Profiles"));
        addProfileTable(page, result, names);
    }
    addDrawings(page, result, names);
    page.paragraph(QStringLiteral("KxMath %1.").arg(QString::fromStdString(result.version)));
    return page.html();
}

} // namespace kxreport
