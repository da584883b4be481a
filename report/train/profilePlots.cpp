// The profiles of one wheel pair in the report.
#include "report/train/profilePlots.h"

#include "report/elements/numbers.h"
#include "report/elements/plot.h"
#include "report/elements/plotPoints.h"
#include "report/elements/svg.h"
#include "report/train/facePlots.h"
#include "report/train/shownWheel.h"

#include <cmath>

namespace kxreport {

using namespace KxInspect;

namespace {

constexpr int kWidth = 540;
constexpr int kHeight = 400;
constexpr int kOffsetHeight = 240;

double heightOf(const Line& line, double x) {
    return static_cast<double>(line.slope) * x + static_cast<double>(line.intercept);
}

QString profilePlot(const ShownWheel& shown) {
    const Line& level = shown.side().level;
    const Line& reference = shown.side().reference;
    const Points all = toPoints(shown.picture.profiles);
    const Points chosen = toPoints(shown.picture.chosen);
    Range x;
    Range y;
    for (const Points* const points : {&all, &chosen}) {
        for (const QPointF& p : *points) {
            if (p.y() < heightOf(level, p.x())) { // what is far behind the wheel would make it small
                x.include(p.x());
                y.include(p.y());
            }
        }
    }
    x = x.padded(0.1);
    for (const Line& line : {level, reference}) {
        y.include(heightOf(line, x.middle()));
    }
    y = y.padded(0.1);
    makeScalesEqual(x, y, Plot::areaWidth(kWidth), Plot::areaHeight(kHeight));
    Plot plot(shown.plotName("profile"), QStringLiteral("Profiles of the wheel on side ") + shown.number(), kWidth,
              kHeight, {QStringLiteral("x, mm"), x}, {QStringLiteral("y, mm"), y});
    const auto straight = [&](const Line& line, const Stroke& stroke, const QString& legend) {
        plot.addStraight(static_cast<double>(line.slope), static_cast<double>(line.intercept), stroke, legend);
    };
    plot.addDots(all, colour::kPale, 1.5, QStringLiteral("all profiles"));
    plot.addDots(chosen, colour::kInk, 1.8, QStringLiteral("chosen"));
    plot.addDots(toPoints(shown.picture.half), colour::kBlue, 2.6, QStringLiteral("fitted half"));
    straight(level, {colour::kOrange, 1.6, ""}, QStringLiteral("level"));
    if (shown.picture.low) {
        straight(*shown.picture.low, {colour::kOrange, 1.6, "2 3"}, QStringLiteral("low"));
    }
    straight(reference, {colour::kGreen, 1.6, "7 4"}, QStringLiteral("reference"));
    if (shown.picture.fit) {
        straight(*shown.picture.fit, {colour::kPurple, 1.4, ""}, QStringLiteral("fit"));
    }
    return plot.svg();
}

/// Heights above the reference line, much enlarged against the profile.
QString offsetPlot(const ShownWheel& shown) {
    const WheelPicture& picture = shown.picture;
    Points heights;
    Range x;
    Range y;
    y.include(0.0);
    for (size_t i = 0; i < picture.half.size(); ++i) {
        heights.emplace_back(static_cast<double>(picture.half[i].x), picture.heights[i]);
        x.include(heights.back().x());
        y.include(heights.back().y());
    }
    Plot plot(shown.plotName("offset"), QStringLiteral("Height above the reference line on side ") + shown.number(),
              kWidth, kOffsetHeight, {QStringLiteral("x, mm"), x.padded(0.04)},
              {QStringLiteral("y \u2212 reference, mm"), y.padded(0.12)});
    plot.addDots(heights, colour::kBlue, 2.2, QStringLiteral("fitted half"));
    plot.addLevel(0.0, {colour::kGreen, 1.6, "7 4"}, QStringLiteral("reference"));
    if (picture.fit) {
        const Line& reference = shown.side().reference;
        plot.addStraight(static_cast<double>(picture.fit->slope - reference.slope),
                         static_cast<double>(picture.fit->intercept - reference.intercept), {colour::kPurple, 1.6, ""},
                         QStringLiteral("fit"));
    }
    return plot.svg();
}

QString profileCaption(const ShownWheel& shown) {
    const PassWheel& wheel = shown.wheel();
    const QString overlaid =
        shown.picture.overlaid == wheel.profiles
            ? QStringLiteral("all %1 profiles").arg(wheel.profiles)
            : QStringLiteral("%1 of %2 profiles, evenly spread").arg(shown.picture.overlaid).arg(wheel.profiles);
    return QStringLiteral("Side %1, SENSOR%2, wheel %3: %4; chosen is profile %5 (record %6), with %7 points below the "
                          "level line. What is far behind the wheel is outside the picture.")
        .arg(shown.number())
        .arg(shown.side().sensor)
        .arg(wheel.number)
        .arg(overlaid)
        .arg(wheel.chosenProfile)
        .arg(wheel.firstRecord + wheel.chosenProfile - 1)
        .arg(wheel.points);
}

QString offsetCaption(const ShownWheel& shown) {
    if (!shown.picture.fit) {
        return QStringLiteral("Side %1: too few points for a line.").arg(shown.number());
    }
    return QStringLiteral(
               "Side %1: the chosen profile stands %2 mm off the reference line (intercept %3 of the fit, %4 of the "
               "reference, perpendicular to the reference).")
        .arg(shown.number(), fixedText(shown.picture.offset, 3), fixedText(shown.picture.fit->intercept, 3),
             fixedText(shown.side().reference.intercept, 3));
}

void addPair(const PassResult& pass, const PairPicture& pair, Page& page) {
    page.heading(QStringLiteral("Profiles of wheel pair %1").arg(pair.pair));
    page.paragraph(QStringLiteral(
        "Each sensor in its own coordinates. Points below the level line count as wheel; in all profiles "
        "that show the back face, the first of them tell how far it is behind the sensor's reference "
        "line. A line through these offsets over the places of the profiles gives the yaw of the "
        "wheelset, and the offset at one place on both sides, the chord. The distance is the base "
        "distance plus both offsets, along the axle. Of the profile with the most points, the first half "
        "is shown as a line of its own."));
    std::vector<Figure> profiles;
    std::vector<Figure> offsets;
    std::vector<Figure> faces;
    for (const WheelPicture& wheel : pair.wheels) {
        const ShownWheel shown{pass, pair, wheel};
        profiles.push_back({profilePlot(shown), profileCaption(shown)});
        offsets.push_back({offsetPlot(shown), offsetCaption(shown)});
        faces.push_back(facePlot(shown));
    }
    page.figures(profiles);
    page.figures(offsets);
    page.figures(faces);
    const WheelPair& measured = pass.pairs[static_cast<size_t>(pair.pair) - 1];
    page.paragraph(pair.wheels.size() == 2 ? QStringLiteral("Base distance %1 mm, distance of this pair %2 mm.")
                                                 .arg(fixedText(pass.baseDistance, 3),
                                                      withInterval(measured.distance, measured.interval, 3))
                                           : QStringLiteral("Only one sensor saw this wheel; it has no distance."));
}

} // namespace

void addProfiles(const PassResult& pass, Page& page) {
    for (const PairPicture& pair : pass.pictures) {
        addPair(pass, pair, page);
    }
}

} // namespace kxreport
