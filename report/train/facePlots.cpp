// The back face of a wheel over the places of its profiles.
#include "report/train/facePlots.h"

#include "report/elements/numbers.h"
#include "report/elements/plot.h"
#include "report/elements/plotPoints.h"
#include "report/elements/svg.h"

#include <cmath>

namespace kxreport {

using namespace KxInspect;

namespace {

constexpr int kWidth = 540;
constexpr int kHeight = 260;
constexpr double kMrad = 1000.0;

QString caption(const ShownWheel& shown) {
    const WheelPicture& picture = shown.picture;
    const WheelPair& pair = shown.pass.pairs[static_cast<size_t>(shown.pair.pair) - 1];
    if (!picture.faceLine) {
        return QStringLiteral("Side %1: too few profiles show the back face for a line.").arg(shown.number());
    }
    const QString slope =
        picture.hasPlaces
            ? QStringLiteral("%1 \u00b5m each mm").arg(kMrad * static_cast<double>(picture.faceLine->slope), 0, 'f', 2)
            : QStringLiteral("%1 mm each record").arg(static_cast<double>(picture.faceLine->slope), 0, 'f', 4);
    const QString offset = fixedText(
        picture.faceLine->slope * (std::isfinite(pair.chord) ? pair.chord : 0.0f) + picture.faceLine->intercept, 3);
    return QStringLiteral(
               "Side %1: the back face in %2 of %3 profiles. Along the pass it moves by %4; at the chord of the "
               "distance it is %5 mm behind the reference line.")
        .arg(shown.number())
        .arg(picture.faces.size())
        .arg(shown.wheel().profiles)
        .arg(slope, offset);
}

} // namespace

Figure facePlot(const ShownWheel& shown) {
    const WheelPicture& picture = shown.picture;
    const Points faces = toPoints(picture.faces);
    Range x;
    Range y;
    x.include(0.0);
    for (const QPointF& p : faces) {
        x.include(p.x());
        y.include(p.y());
    }
    constexpr double kLeastHeight = 0.02; // mm; what is smaller is noise
    y.include(y.isEmpty() ? 0.0 : y.middle() - kLeastHeight / 2.0);
    y.include(y.middle() + kLeastHeight / 2.0);
    const QString unit = picture.hasPlaces ? QStringLiteral("mm") : QStringLiteral("records");
    Plot plot(shown.plotName("face"), QStringLiteral("Back face along the pass on side ") + shown.number(), kWidth,
              kHeight, {QStringLiteral("place behind the axle, ") + unit, x.padded(0.04)},
              {QStringLiteral("behind the reference, mm"), y.padded(0.12)});
    plot.addDots(faces, colour::kBlue, 3.2, QStringLiteral("a profile each"));
    if (picture.faceLine) {
        plot.addStraight(static_cast<double>(picture.faceLine->slope), static_cast<double>(picture.faceLine->intercept),
                         {colour::kPurple, 1.6, ""}, QStringLiteral("line"));
    }
    const float chord = shown.pass.pairs[static_cast<size_t>(shown.pair.pair) - 1].chord;
    if (picture.faceLine && std::isfinite(chord)) {
        plot.addMark({static_cast<double>(chord),
                      static_cast<double>(picture.faceLine->slope * chord + picture.faceLine->intercept)},
                     colour::kOrange, 4.5, QStringLiteral("where the distance is measured"));
        plot.addLegendMark(QStringLiteral("chord of the distance"), colour::kOrange);
    }
    return {plot.svg(), caption(shown)};
}

} // namespace kxreport
