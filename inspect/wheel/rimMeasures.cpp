// The measures of a rim from its contour.
#include "inspect/wheel/rimMeasures.h"

#include "inspect/wheel/rimPlaces.h"
#include "inspect/wheel/treadHollow.h"

#include <QtCore/QString>

#include <algorithm>
#include <cmath>
#include <limits>

namespace KxInspect::detail {

namespace {

constexpr double kTape = static_cast<double>(kTapeCircleX);
constexpr double kTip = static_cast<double>(kTipLevel);

Point toPoint(const Vector& v) {
    return {static_cast<float>(v.x), static_cast<float>(v.y)};
}

/// Why the tread has no place at the tape circle.
std::string reasonWithoutTread(const RimContour& contour, std::size_t tip, double x) {
    double end = 0.0;
    for (std::size_t i = tip; i < contour.points.size(); ++i) {
        end = std::max(end, contour.points[i].x);
    }
    const auto text = [](double value) { return QString::number(value, 'f', 1); };
    const QString reason =
        end <= x ? QStringLiteral("the profile ends %1 mm from the flange back, before the tape circle at %2 mm")
                       .arg(text(end), text(kTape))
                 : QStringLiteral("the profile has a gap at the tape circle");
    return reason.toStdString();
}

std::string reasonWithoutFlank(const char* level) {
    return std::string("the profile does not show the flank ") + level;
}

/// Fills in the measures one after the other.
class Measurement {
public:
    Measurement(const RimContour& contour, bool isBackMeasured) : contour_(contour), isBackMeasured_(isBackMeasured) {}

    RimMeasures run() {
        const std::optional<FlangeTip> tip = findTip(contour_);
        if (!tip) {
            result_.reasons.fill("the profile does not show both sides of the flange tip");
            return result_;
        }
        result_.places.tip = toPoint(tip->at);
        findBack(tip->near);
        const std::optional<TreadPlace> tread = findTread(contour_, tip->near, back_.value() + kTape);
        if (!tread) {
            result_.reasons.fill(reasonWithoutTread(contour_, tip->near, back_.value() + kTape));
            return result_;
        }
        result_.places.tape = toPoint({back_.value() + kTape, tread->level.value()});
        measureTread(*tread, tip->level);
        measureFlank(*tip, *tread);
        measureFieldSide(tread->near);
        return result_;
    }

private:
    /// Where the back was measured without being seen to be flat, how far it is off is not known.
    void findBack(std::size_t tip) {
        if (!isBackMeasured_) {
            return;
        }
        if (const std::optional<Estimate> face = findBackFace(contour_, tip)) {
            back_ = *face;
            widthBack_ = back_;
        } else {
            result_.isBackUnsure = true;
            widthBack_ = Estimate(0.0, {{0, std::numeric_limits<double>::quiet_NaN(), 0.0}}, 1.0);
        }
    }

    void set(std::optional<float> WheelMeasures::*measure, const std::optional<Estimate>& value,
             const std::string& reason) {
        for (std::size_t i = 0; i < kWheelMeasures.size(); ++i) {
            if (kWheelMeasures[i].value != measure) {
                continue;
            }
            if (value && !std::isfinite(value->value())) {
                result_.reasons[i] = "the points there are all in one place";
            } else {
                result_.values[i] = value;
                result_.reasons[i] = value ? std::string() : reason;
            }
        }
    }

    void measureTread(const TreadPlace& tread, const Estimate& tip) {
        // The tape circle is where the back is: a back that is off by d takes the level that is d times the slope higher.
        tapeLevel_ = tread.level.plus(back_.plus(-back_.value()), tread.slope.value());
        const Estimate height = tapeLevel_.plus(tip, -1.0);
        set(&WheelMeasures::heightAt70, height, {});
        set(&WheelMeasures::flangeHeight, height, {});
        set(&WheelMeasures::treadSlope, tread.slope, {});
    }

    /// x of the flank at a level, from the contour's origin.
    std::optional<Estimate> flankAt(const FlangeTip& tip, const TreadPlace& tread, const Estimate& level,
                                    std::optional<Point>* place = nullptr) {
        const std::optional<FlankPlace> found = findFlank(contour_, tip.near, tread.near, level);
        if (!found) {
            return {};
        }
        if (place) {
            *place = toPoint(found->at);
        }
        return found->x;
    }

    void measureFlank(const FlangeTip& tip, const TreadPlace& tread) {
        const auto difference = [](const std::optional<Estimate>& a, const std::optional<Estimate>& b) {
            return a && b ? std::optional(a->plus(*b, -1.0)) : std::nullopt;
        };
        WheelPlaces& places = result_.places;
        const auto top = flankAt(tip, tread, tip.level.plus(kTip), &places.flankTop);
        const auto flank = flankAt(tip, tread, tapeLevel_.plus(-static_cast<double>(kThicknessDepth)), &places.flank);
        const auto atDepth = flankAt(tip, tread, tapeLevel_.plus(-static_cast<double>(kFlankDepth)));
        const auto atLevel = flankAt(tip, tread, tip.level.plus(static_cast<double>(kFlankLevel)));
        const std::string noTop = reasonWithoutFlank("2 mm below the tip");
        set(&WheelMeasures::flangeThickness, difference(flank, widthBack_),
            reasonWithoutFlank("10 mm above the tape circle"));
        set(&WheelMeasures::flangeSlope, difference(flank, top),
            top ? reasonWithoutFlank("10 mm above the tape circle") : noTop);
        set(&WheelMeasures::xAtLevel18, difference(atLevel, widthBack_), reasonWithoutFlank("18 mm below the tip"));
        set(&WheelMeasures::widthLevel2ToH13, difference(atDepth, top),
            top ? reasonWithoutFlank("13 mm above the tape circle") : noTop);
    }

    void measureFieldSide(std::size_t tread) {
        if (const std::optional<TreadHollow> hollow = findHollow(contour_, tread)) {
            set(&WheelMeasures::treadHollow, hollow->depth, {});
            if (hollow->depth.value() > 0.0) {
                result_.places.hollowBottom = toPoint(hollow->bottom);
                result_.places.hollowCrest = toPoint(hollow->crest);
            }
        } else {
            set(&WheelMeasures::treadHollow, {},
                "the profile does not show the tread beyond the tape circle without gaps");
        }
        const std::optional<Estimate> face = findOuterFace(contour_, tread);
        if (face) {
            result_.places.outerFace = static_cast<float>(face->value());
        }
        set(&WheelMeasures::rimWidth, face ? std::optional(face->plus(widthBack_, -1.0)) : std::nullopt,
            "the profile does not show the outer face of the rim");
    }

    const RimContour& contour_;
    const bool isBackMeasured_;
    RimMeasures result_ = {};
    Estimate back_ = {};
    Estimate widthBack_ = {}; ///< from which widths count; the levels at the tape circle hardly depend on the back
    Estimate tapeLevel_ = {};
};

} // namespace

RimMeasures measureRim(const RimContour& contour, bool isBackMeasured) {
    return Measurement(contour, isBackMeasured).run();
}

} // namespace KxInspect::detail
