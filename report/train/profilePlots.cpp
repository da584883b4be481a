// The profiles of one wheel pair in the report.
#include "report/train/profilePlots.h"

#include "report/elements/plot.h"
#include "report/elements/plotPoints.h"
#include "report/elements/svg.h"
#include "tools/kxmath/console/numbers.h"

#include <cmath>

namespace kxtool {

namespace {

using kxreport::Plot;
using kxreport::Points;
using kxreport::Range;

constexpr int kWidth = 540;
constexpr int kHeight = 400;
constexpr int kOffsetHeight = 240;
constexpr int kMostOverlaid = 40;

/// One wheel with what its distance is made from.
struct ShownWheel {
    size_t side = 0;
    Wheel wheel;
    Points all; ///< of the overlaid profiles
    int overlaid = 0;
    Points chosen; ///< whole
    Points half; ///< the points of the chosen profile that the line is fitted to
    KxMath::KxLine fit;
    bool hasFit = false;
};

ShownWheel loadWheel(const Pass& pass, size_t side, const Wheel& wheel) {
    ShownWheel shown{side, wheel, {}, 0, {}, {}, {}, false};
    KxMath::KxProfile profile;
    const int step = (wheel.profiles + kMostOverlaid - 1) / kMostOverlaid;
    for (int number = 1; number <= wheel.profiles; number += step) {
        readWheelProfile(pass, side, wheel.number, number, profile);
        append(profile.points, shown.all);
        ++shown.overlaid;
    }
    if (wheel.chosenProfile > 0) {
        readWheelProfile(pass, side, wheel.number, wheel.chosenProfile, profile);
        append(profile.points, shown.chosen);
        profile.removeHighLevel(pass.sides[side].sensor.level);
        profile.points.resize(profile.points.size() / 2);
        append(profile.points, shown.half);
        shown.hasFit = profile.calcLine(shown.fit);
    }
    return shown;
}

double heightOf(const KxMath::KxLine& line, double x) {
    return static_cast<double>(line.k) * x + static_cast<double>(line.b);
}

QString profilePlot(const Pass& pass, const ShownWheel& shown) {
    const Sensor& sensor = pass.sides[shown.side].sensor;
    Range x;
    Range y;
    for (const Points* const points : {&shown.all, &shown.chosen}) {
        for (const QPointF& p : *points) {
            if (p.y() < heightOf(sensor.level, p.x())) { // what is far behind the wheel would make it small
                x.include(p.x());
                y.include(p.y());
            }
        }
    }
    x = x.padded(0.1);
    for (const KxMath::KxLine& line : {sensor.level, sensor.reference}) {
        y.include(heightOf(line, x.middle()));
    }
    y = y.padded(0.1);
    kxreport::makeScalesEqual(x, y, Plot::areaWidth(kWidth), Plot::areaHeight(kHeight));
    const QString number = QString::number(shown.side + 1);
    Plot plot(QStringLiteral("profile-") + number, QStringLiteral("Profiles of the wheel on side ") + number, kWidth,
              kHeight, {QStringLiteral("x, mm"), x}, {QStringLiteral("y, mm"), y});
    const auto straight = [&](const KxMath::KxLine& line, const kxreport::Stroke& stroke, const QString& legend) {
        plot.addStraight(static_cast<double>(line.k), static_cast<double>(line.b), stroke, legend);
    };
    plot.addDots(shown.all, kxreport::colour::kPale, 1.5, QStringLiteral("all profiles"));
    plot.addDots(shown.chosen, "#1c2630", 1.8, QStringLiteral("chosen"));
    plot.addDots(shown.half, kxreport::colour::kBlue, 2.6, QStringLiteral("fitted half"));
    straight(sensor.level, {kxreport::colour::kOrange, 1.6, ""}, QStringLiteral("level"));
    if (pass.mode == kModeWithLowLine) {
        straight(sensor.low, {kxreport::colour::kOrange, 1.6, "2 3"}, QStringLiteral("low"));
    }
    straight(sensor.reference, {kxreport::colour::kGreen, 1.6, "7 4"}, QStringLiteral("reference"));
    if (shown.hasFit) {
        straight(shown.fit, {kxreport::colour::kPurple, 1.4, ""}, QStringLiteral("fit"));
    }
    return plot.svg();
}

/// Heights above the reference line, much enlarged against the profile.
QString offsetPlot(const Pass& pass, const ShownWheel& shown) {
    const KxMath::KxLine& reference = pass.sides[shown.side].sensor.reference;
    Points heights;
    Range x;
    Range y;
    y.include(0.0);
    for (const QPointF& p : shown.half) {
        heights.emplace_back(p.x(), p.y() - heightOf(reference, p.x()));
        x.include(p.x());
        y.include(heights.back().y());
    }
    const QString number = QString::number(shown.side + 1);
    Plot plot(QStringLiteral("offset-") + number, QStringLiteral("Height above the reference line on side ") + number,
              kWidth, kOffsetHeight, {QStringLiteral("x, mm"), x.padded(0.04)},
              {QStringLiteral("y \u2212 reference, mm"), y.padded(0.12)});
    plot.addDots(heights, kxreport::colour::kBlue, 2.2, QStringLiteral("fitted half"));
    plot.addLevel(0.0, {kxreport::colour::kGreen, 1.6, "7 4"}, QStringLiteral("reference"));
    if (shown.hasFit) {
        plot.addStraight(static_cast<double>(shown.fit.k - reference.k), static_cast<double>(shown.fit.b - reference.b),
                         {kxreport::colour::kPurple, 1.6, ""}, QStringLiteral("fit"));
    }
    return plot.svg();
}

QString profileCaption(const Pass& pass, const ShownWheel& shown) {
    const Side& side = pass.sides[shown.side];
    const QString overlaid =
        shown.overlaid == shown.wheel.profiles
            ? QStringLiteral("all %1 profiles").arg(shown.wheel.profiles)
            : QStringLiteral("%1 of %2 profiles, evenly spread").arg(shown.overlaid).arg(shown.wheel.profiles);
    return QStringLiteral("Side %1, SENSOR%2, wheel %3: %4; chosen is profile %5 (record %6), with %7 points below the "
                          "level line. What is far behind the wheel is outside the picture.")
        .arg(shown.side + 1)
        .arg(side.sensor.number)
        .arg(shown.wheel.number)
        .arg(overlaid)
        .arg(shown.wheel.chosenProfile)
        .arg(shown.wheel.firstRecord + shown.wheel.chosenProfile - 1)
        .arg(shown.wheel.pointsBelowLevel);
}

QString offsetCaption(const Pass& pass, const ShownWheel& shown) {
    if (!shown.hasFit) {
        return QStringLiteral("Side %1: too few points for a line.").arg(shown.side + 1);
    }
    const KxMath::KxLine& reference = pass.sides[shown.side].sensor.reference;
    const float offset = (shown.fit.b - reference.b) * std::cos(std::atan(reference.k));
    return QStringLiteral("Side %1: the wheel stands %2 mm off the reference line (intercept %3 of the fit, %4 of the "
                          "reference, perpendicular to the reference).")
        .arg(QString::number(shown.side + 1), fixedText(offset, 3), fixedText(shown.fit.b, 3),
             fixedText(reference.b, 3));
}

} // namespace

void addProfiles(const Pass& pass, int pairNumber, kxreport::Page& page) {
    if (pairNumber < 1 || static_cast<size_t>(pairNumber) > pass.pairs.size()) {
        return;
    }
    const MeasuredPair& pair = pass.pairs[static_cast<size_t>(pairNumber) - 1];
    std::vector<ShownWheel> shown;
    for (size_t side = 0; side < pass.sides.size(); ++side) {
        if (const Wheel* const wheel = pass.wheelOf(pair, side)) {
            shown.push_back(loadWheel(pass, side, *wheel));
        }
    }
    page.heading(QStringLiteral("Profiles of wheel pair %1").arg(pairNumber));
    page.paragraph(
        QStringLiteral("Each sensor in its own coordinates. Points below the level line count as wheel. Of the profile "
                       "with the most such points the first half, in the order in which the sensor delivers them, is "
                       "fitted by a line; the wheel's offset is how far that line stands from the sensor's reference "
                       "line. The distance is the base distance plus both offsets."));
    std::vector<kxreport::Figure> profiles;
    std::vector<kxreport::Figure> offsets;
    for (const ShownWheel& wheel : shown) {
        profiles.push_back({profilePlot(pass, wheel), profileCaption(pass, wheel)});
        offsets.push_back({offsetPlot(pass, wheel), offsetCaption(pass, wheel)});
    }
    page.figures(profiles);
    page.figures(offsets);
    page.paragraph(shown.size() == 2 ? QStringLiteral("Base distance %1 mm, distance of this pair %2 mm.")
                                           .arg(fixedText(pass.baseDistance, 3), fixedText(pair.distance, 3))
                                     : QStringLiteral("Only one sensor saw this wheel; it has no distance."));
}

} // namespace kxtool
