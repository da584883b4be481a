// The measures of a wheel from what its sensors see.
#include "inspect/wheelset/sectionMeasures.h"

#include "inspect/fitting/studentT.h"
#include "inspect/wheel/rimMeasures.h"
#include "inspect/wheelset/placeErrors.h"
#include "inspect/wheelset/poseErrors.h"
#include "inspect/wheelset/treadRoundness.h"
#include "inspect/wheelset/wheelSection.h"

#include <QtCore/QString>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>
#include <utility>

namespace KxInspect::detail {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// A sensor with the wheel that it has found.
struct FoundView {
    const SensorView* view;
    TurnedWheel wheel;
    PlaceErrors errors = {};
};

/// The places of which a measure is a sum, with their factors.
using Factors = std::array<double, kWheelPlaces>;

/// Back, Tip, Flank, Tape, OuterFace. The flank counts where its level is, which moves with the tape circle.
constexpr std::array<Factors, kPassMeasures> kFactors = {{
    {0.0, 0.0, 0.0, 2.0, 0.0},
    {0.0, 1.0, 0.0, -1.0, 0.0},
    {-1.0, 0.0, 1.0, 0.0, 0.0},
    {0.0, 0.0, 1.0, 0.0, 0.0},
    {0.0, 0.0, 0.0, 0.0, 0.0},
    {-1.0, 0.0, 0.0, 0.0, 1.0},
}};

std::size_t indexOf(PassMeasure measure) {
    return static_cast<std::size_t>(measure);
}

std::optional<double> faceOf(const std::vector<std::vector<TrackPoint>>& points, const std::vector<SensorView>& views,
                             double expected) {
    for (std::size_t i = 0; i < views.size(); ++i) {
        if (!views[i].isOnFieldSide && !points[i].empty()) {
            if (const auto face = findFace(points[i], expected)) {
                return face;
            }
        }
    }
    return {};
}

/// The weight of a radius, from what the axle leaves uncertain of it.
double weightOf(const TurnedWheel& wheel, double face) {
    const std::array<std::optional<PlaceOnContour>, kWheelPlaces> tip = {
        std::nullopt, PlaceOnContour{{face + 15.0, wheel.grid.highest}, false}};
    const double variance = axleVariance(wheel, placeErrorsOf(wheel, tip), {0.0, 1.0, 0.0, 0.0, 0.0});
    constexpr double kLeast = 1e-6; // mm2
    return std::isfinite(variance) ? 1.0 / std::max(variance, kLeast) : 1e-6;
}

/// The places of a section where the sensors saw them.
std::array<std::optional<PlaceOnContour>, kWheelPlaces> placesOf(const WheelSection& section,
                                                                 const WheelPlaces& found) {
    const auto at = [&](float x, float y) {
        return TurnedPoint{section.face + static_cast<double>(x), section.highest - static_cast<double>(y)};
    };
    constexpr float kOnBack = 25.0f; // mm from the tip
    std::array<std::optional<PlaceOnContour>, kWheelPlaces> places;
    if (found.tip) {
        places[0] = PlaceOnContour{at(0.0f, found.tip->y + kOnBack), true};
        places[1] = PlaceOnContour{at(found.tip->x, found.tip->y), false};
    }
    if (found.flank) {
        places[2] = PlaceOnContour{at(found.flank->x, found.flank->y), true};
    }
    if (found.tape) {
        places[3] = PlaceOnContour{at(found.tape->x, found.tape->y), false};
        if (found.outerFace) {
            constexpr float kOnFace = 15.0f; // mm below the tread
            places[4] = PlaceOnContour{at(*found.outerFace, found.tape->y + kOnFace), true};
        }
    }
    return places;
}

/// The variance of a measure as far as the axles are uncertain: by the sensors that see all of its places, or by the best
/// sensor for each place.
double axleVarianceOf(const std::vector<FoundView>& views, const Factors& factors) {
    double weights = 0.0;
    for (const FoundView& view : views) {
        const double variance = axleVariance(view.wheel, view.errors, factors);
        weights += std::isfinite(variance) ? 1.0 / std::max(variance, 1e-12) : 0.0;
    }
    if (weights > 0.0) {
        return 1.0 / weights;
    }
    double sum = 0.0;
    for (std::size_t i = 0; i < kWheelPlaces; ++i) {
        Factors one = {};
        one[i] = factors[i];
        double best = one[i] == 0.0 ? 0.0 : kInfinity;
        for (const FoundView& view : views) {
            best = std::min(best, axleVariance(view.wheel, view.errors, one));
        }
        sum += best;
    }
    return sum;
}

double leastFreedom(const std::vector<FoundView>& views) {
    double freedom = kInfinity;
    for (const FoundView& view : views) {
        freedom = std::min(freedom, axleFreedom(view.wheel));
    }
    return freedom;
}

/// What the points of the section show of a measure.
const std::optional<Estimate>& estimateOf(const RimMeasures& rim, std::optional<float> WheelMeasures::*measure) {
    for (std::size_t i = 0; i < kWheelMeasures.size(); ++i) {
        if (kWheelMeasures[i].value == measure) {
            return rim.values[i];
        }
    }
    return rim.values.front();
}

std::string reasonOf(const RimMeasures& rim, std::optional<float> WheelMeasures::*measure) {
    for (std::size_t i = 0; i < kWheelMeasures.size(); ++i) {
        if (kWheelMeasures[i].value == measure) {
            return rim.reasons[i];
        }
    }
    return {};
}

/// A variance that was estimated, with the degrees of freedom of that.
struct Variance {
    double value;
    double freedom;
};

/// A value and its interval, half as wide as the noise of the points and the axle leave it uncertain.
PassValue valueOf(double value, const Variance& ofPoints, const Variance& ofAxle) {
    PassValue result;
    result.value = static_cast<float>(value);
    // Means over half a millimetre, and steps of the contour, flatten an arc of 12 mm radius by 0.0015 mm.
    constexpr double kFlattened = 0.0015;
    const double sum = ofPoints.value + ofAxle.value + kFlattened * kFlattened;
    // A curve through few steps knows their noise less well than the groups of profiles tell the axle.
    const double squares =
        ofPoints.value * ofPoints.value / ofPoints.freedom + ofAxle.value * ofAxle.value / ofAxle.freedom;
    const double freedom = std::max(1.0, sum * sum / squares); // F. E. Satterthwaite, 1946
    const double half = studentT(freedom) * std::sqrt(sum);
    result.interval = Interval::around(*result.value, std::isfinite(half) ? static_cast<float>(half) : -1.0f);
    return result;
}

constexpr std::array<std::optional<float> WheelMeasures::*, kPassMeasures> kRimMeasures = {
    nullptr,
    &WheelMeasures::flangeHeight,
    &WheelMeasures::flangeThickness,
    &WheelMeasures::flangeSlope,
    &WheelMeasures::treadHollow,
    &WheelMeasures::rimWidth};

/// What a sensor on the field side would show: that there is one, and why it does not.
std::string whyNoFieldSensor(const PassWheelMeasures& wheel) {
    for (const SensorShare& share : wheel.sensors) {
        if (share.isOnFieldSide && !share.reason.empty()) {
            return "; SENSOR" + std::to_string(share.sensor) + " on the field side: " + share.reason;
        }
    }
    return "; one on the field side does";
}

/// Why a measure is absent: what hides it from the sensors that are there, when that is plain.
std::string whyAbsent(PassMeasure measure, const std::vector<FoundView>& found, const RimMeasures& rim,
                      const PassWheelMeasures& wheel) {
    const bool hasField =
        std::any_of(found.begin(), found.end(), [](const FoundView& f) { return f.view->isOnFieldSide; });
    const bool isOutside = measure == PassMeasure::FlangeThickness || measure == PassMeasure::FlangeSlope ||
                           measure == PassMeasure::RimWidth;
    if (isOutside && !hasField) {
        const std::string what = measure == PassMeasure::RimWidth ? "the outer face of the rim"
                                                                  : "the front of the flange, which faces outwards";
        return "no sensor between the rails sees " + what + whyNoFieldSensor(wheel);
    }
    return measure == PassMeasure::Diameter ? reasonOf(rim, &WheelMeasures::flangeHeight)
                                            : reasonOf(rim, kRimMeasures[indexOf(measure)]);
}

void fillValues(const WheelSection& section, const RimMeasures& rim, const std::vector<FoundView>& found,
                PassWheelMeasures& result) {
    for (const PassMeasureInfo& info : kPassMeasureInfos) {
        const std::size_t i = indexOf(info.measure);
        PassValue& value = result.values[i];
        const bool isDiameter = info.measure == PassMeasure::Diameter;
        const auto& estimate = estimateOf(rim, isDiameter ? &WheelMeasures::flangeHeight : kRimMeasures[i]);
        if (!estimate || (isDiameter && !rim.places.tape)) {
            value.reason = whyAbsent(info.measure, found, rim, result);
            continue;
        }
        const Variance axle = {axleVarianceOf(found, kFactors[i]), leastFreedom(found)};
        Variance points = {estimate->deviation() * estimate->deviation(), estimate->freedom()};
        if (!std::isfinite(axle.value + points.value)) {
            value.reason = "too little is seen around one of its places to say how sure it is";
            continue;
        }
        if (isDiameter) {
            const double level = static_cast<double>(rim.places.tape->y);
            points.value *= 4.0;
            value = valueOf(2.0 * (section.highest - level), points, axle);
        } else {
            value = valueOf(estimate->value(), points, axle);
        }
        if (info.measure == PassMeasure::TreadHollow && *value.value < 0.0f) {
            value.value = 0.0f;
        }
        if (info.measure == PassMeasure::TreadHollow && value.interval.isKnown()) {
            value.interval = {std::max(0.0f, value.interval.low), std::max(0.0f, value.interval.high)};
        }
    }
}

/// How a measure moves with the radius of the tread. The axle, which is found by the tread too, doubles it for diameters;
/// the flank counts where its level is, on an incline of 60 degrees or more.
constexpr std::array<float, kPassMeasures> kPerTread = {4.0f, 1.0f, 0.5f, 0.5f, 1.0f, 0.0f};

/// Widens intervals by what a tread is off round where it is seen. Of a tread that is flat all over nothing is known.
void doubtTread(const std::vector<FoundView>& found, PassWheelMeasures& result, std::vector<std::string>& warnings) {
    TreadRoundness worst;
    for (const FoundView& view : found) {
        const TreadRoundness tread = treadRoundness(view.wheel);
        worst.off = std::max(worst.off, tread.off);
        worst.isFlat = worst.isFlat || tread.isFlat;
    }
    if (worst.off == 0.0) {
        return;
    }
    warnings.push_back(worst.isFlat ? "has a flat tread all over what is seen of it"
                                    : QStringLiteral("has a tread that is %1 mm off round where it is seen")
                                          .arg(worst.off, 0, 'f', 3)
                                          .toStdString());
    for (std::size_t i = 0; i < kPassMeasures; ++i) {
        PassValue& value = result.values[i];
        const float part = kPerTread[i] * static_cast<float>(worst.off);
        if (!value.value || part == 0.0f) {
            continue;
        }
        if (worst.isFlat) {
            value = {{}, {}, "the tread is flat all over what is seen of it, and how deep the flat is shows nowhere"};
        } else if (value.interval.isKnown()) {
            const float half = std::hypot(*value.value - value.interval.low, part);
            value.interval = Interval::around(*value.value, half);
            if (kPassMeasureInfos[i].measure == PassMeasure::TreadHollow) {
                value.interval.low = std::max(0.0f, value.interval.low);
            }
        }
    }
}

/// Whether a sensor sees something from which a measure is taken.
bool contributes(const PlaceErrors& errors, PassMeasure measure) {
    if (measure == PassMeasure::TreadHollow) {
        return errors.sees(WheelPlace::Tape);
    }
    const Factors& factors = kFactors[indexOf(measure)];
    for (std::size_t i = 0; i < kWheelPlaces; ++i) {
        if (factors[i] != 0.0 && errors.gradients[i]) {
            return true;
        }
    }
    return false;
}

void fillShares(const std::vector<FoundView>& found, PassWheelMeasures& result) {
    for (const FoundView& view : found) {
        for (SensorShare& share : result.sensors) {
            if (share.sensor != view.view->sensor) {
                continue;
            }
            share.points = static_cast<int>(view.wheel.points.size());
            bool isAny = false;
            for (std::size_t i = 0; i < kPassMeasures; ++i) {
                share.measures[i] = result.values[i].value && contributes(view.errors, kPassMeasureInfos[i].measure);
                isAny = isAny || share.measures[i];
            }
            share.reason = isAny ? "" : "it sees no place from which a measure is taken";
        }
    }
}

void withhold(const std::string& reason, PassWheelMeasures& result) {
    for (PassValue& value : result.values) {
        value = {{}, {}, reason};
    }
    for (SensorShare& share : result.sensors) {
        share.reason = share.reason.empty() ? reason : share.reason;
    }
}

/// The faces are measured where they are flat: webs begin deeper.
void cutFaces(WheelSection& section) {
    constexpr float kDeepest = 50.0f; // mm from the tip on the back
    constexpr float kNear = 40.0f; // mm across
    std::erase_if(section.points, [](const Point& p) { return p.x < kNear && p.y > kDeepest; });
}

/// Whether the section shows the flat back of the flange.
bool hasBack(const WheelSection& section) {
    constexpr float kNear = 3.0f; // mm
    constexpr float kFrom = 20.0f; // mm from the tip, as the measurement takes it
    constexpr float kLeast = 4.0f;
    float deepest = kFrom;
    float shallowest = kFrom + 100.0f;
    for (const Point& p : section.points) {
        if (std::abs(p.x) <= kNear && p.y >= kFrom) {
            deepest = std::max(deepest, p.y);
            shallowest = std::min(shallowest, p.y);
        }
    }
    return deepest - shallowest >= kLeast;
}

/// How far the pose of a sensor may put a flange off across the track, mm to both sides with a probability of 95 %; NaN where
/// the settings do not say it. An angle moves a point by its arm to the sensor at most.
double poseErrorAcross(const FoundView& found) {
    constexpr double kDegree = std::numbers::pi / 180.0;
    const SensorSettings& sensor = *found.view->profiles.sensor;
    if (!sensor.poseUncertainty || !sensor.origin) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    const TurnedWheel& wheel = found.wheel;
    const double arm =
        std::hypot(wheel.grid.tip - std::abs(sensor.origin->y), wheel.axle.up - wheel.grid.highest - sensor.origin->z);
    const PoseUncertainty& off = *sensor.poseUncertainty;
    return std::hypot(off.y, arm * kDegree * std::hypot(off.alpha, off.beta, off.gamma));
}

/// Tells of sensors whose poses do not fit each other.
void warnOfPoses(const std::vector<FoundView>& found, const WheelSection& section, std::vector<std::string>& warnings) {
    constexpr double kUnknown = 0.2; // mm, a tenth of what the flange thickness loses in service
    constexpr double kFound = 0.05; // mm; how surely a difference is found at the least, see mergedSection()
    for (std::size_t i = 1; i < found.size(); ++i) {
        const double stored = std::hypot(poseErrorAcross(found[0]), poseErrorAcross(found[i]));
        const double allowed = std::isnan(stored) ? kUnknown : std::hypot(stored, kFound);
        if (std::abs(section.apart[i]) > allowed) { // NaN: false
            warnings.push_back(
                QStringLiteral(
                    "is seen %1 mm farther %2 by SENSOR%3 than by SENSOR%4: their poses do not fit each other%5")
                    .arg(QString::number(std::abs(section.apart[i]), 'f', 2),
                         section.apart[i] > 0.0 ? QStringLiteral("outwards") : QStringLiteral("inwards"),
                         QString::number(found[i].view->sensor), QString::number(found[0].view->sensor),
                         std::isnan(stored) ? QString()
                                            : QStringLiteral(", by their uncertainties they may be %1 mm apart")
                                                  .arg(allowed, 0, 'f', 2))
                    .toStdString());
        }
    }
}

/// Why the measures are not those of a wheel, a clause; empty when they are.
std::string whyNoWheel(const PassWheelMeasures& wheel) {
    constexpr float kLowest = 24.0f; // mm; flanges of wheels, from new ones to the most worn treads
    constexpr float kHighest = 40.0f;
    constexpr float kWidest = 2.0f; // mm to both sides of a diameter; limits of differences are about as large
    const PassValue& height = wheel[PassMeasure::FlangeHeight];
    const PassValue& diameter = wheel[PassMeasure::Diameter];
    if (height.value && !(*height.value >= kLowest && *height.value <= kHighest)) {
        return QStringLiteral("the section shows a flange of %1 mm; those of wheels have 24 to 40 mm")
            .arg(static_cast<double>(*height.value), 0, 'f', 1)
            .toStdString();
    }
    if (diameter.value && diameter.interval.high - diameter.interval.low > 2.0f * kWidest) {
        return "the profiles leave the axle uncertain: too short an arc of the wheel is seen";
    }
    return {};
}

/// What a section shows, without intervals.
SectionValues plainValues(const WheelSection& section, const RimMeasures& rim) {
    SectionValues values;
    for (const PassMeasureInfo& info : kPassMeasureInfos) {
        const std::size_t i = indexOf(info.measure);
        const bool isDiameter = info.measure == PassMeasure::Diameter;
        const auto& estimate = estimateOf(rim, isDiameter ? &WheelMeasures::flangeHeight : kRimMeasures[i]);
        if (isDiameter && estimate && rim.places.tape) {
            values[i] = 2.0 * (section.highest - static_cast<double>(rim.places.tape->y));
        } else if (!isDiameter && estimate) {
            values[i] = estimate->value();
        }
    }
    return values;
}

/// Widens the intervals by what the poses leave uncertain, where that is known.
void addPoseErrors(const std::vector<FoundView>& found, const std::vector<double>& weights, double face,
                   PassWheelMeasures& result) {
    std::vector<PosedWheel> wheels;
    wheels.reserve(found.size());
    for (const FoundView& view : found) {
        wheels.push_back({view.view, &view.wheel});
    }
    const SectionValues errors = poseErrors(wheels, face, [&](const std::vector<const TurnedWheel*>& together) {
        WheelSection section = mergedSection(together, weights, face);
        cutFaces(section);
        return plainValues(section, measureRim(RimContour(section.points), true));
    });
    for (const PassMeasureInfo& info : kPassMeasureInfos) {
        PassValue& value = result.values[indexOf(info.measure)];
        const std::optional<double>& error = errors[indexOf(info.measure)];
        if (!value.value || !value.interval.isKnown() || !error) {
            continue;
        }
        const auto part = static_cast<float>(*error);
        value.byPoses = part;
        value.interval = {*value.value - std::hypot(*value.value - value.interval.low, part),
                          *value.value + std::hypot(value.interval.high - *value.value, part)};
        if (info.measure == PassMeasure::TreadHollow) {
            value.interval.low = std::max(0.0f, value.interval.low);
        }
    }
}

void measureSection(std::vector<FoundView>& found, double face, PassWheelMeasures& result,
                    std::vector<std::string>& warnings) {
    std::vector<const TurnedWheel*> wheels;
    std::vector<double> weights;
    for (const FoundView& view : found) {
        wheels.push_back(&view.wheel);
        weights.push_back(weightOf(view.wheel, face));
    }
    WheelSection section = mergedSection(wheels, weights, face);
    warnOfPoses(found, section, warnings);
    cutFaces(section);
    result.place = static_cast<float>(-found.front().wheel.axle.along);
    if (!hasBack(section)) {
        withhold("no sensor shows the back of the flange, from which the tape circle is counted", result);
        return;
    }
    const RimMeasures rim = measureRim(RimContour(section.points), true);
    const auto places = placesOf(section, rim.places);
    for (FoundView& view : found) {
        view.errors = placeErrorsOf(view.wheel, places);
    }
    fillValues(section, rim, found, result);
    doubtTread(found, result, warnings);
    if (const std::string reason = whyNoWheel(result); !reason.empty()) {
        withhold(reason, result);
        return;
    }
    addPoseErrors(found, weights, face, result);
    fillShares(found, result);
    const float tip = rim.places.tip ? rim.places.tip->y : 0.0f;
    for (const Point& p : section.points) {
        result.section.push_back({p.x, p.y - tip});
    }
}

} // namespace

PassWheelMeasures measureWheelOf(const std::vector<SensorView>& views, double expectedFace,
                                 std::vector<std::string>& warnings) {
    PassWheelMeasures result;
    std::vector<std::vector<TrackPoint>> points;
    for (const SensorView& view : views) {
        SensorShare share;
        share.sensor = view.sensor;
        share.isOnFieldSide = view.isOnFieldSide;
        share.wheel = view.wheel;
        share.reason = view.missing;
        const bool isThere = view.missing.empty();
        points.push_back(isThere ? trackPointsOf(view.profiles) : std::vector<TrackPoint>());
        share.profiles = isThere ? static_cast<int>(view.profiles.profiles->size()) : 0;
        result.sensors.push_back(share);
    }
    const double face = faceOf(points, views, expectedFace).value_or(expectedFace);
    // The sensors between the rails first: they see the tip of the flange best, and their places are those of the pass.
    std::vector<std::size_t> order(views.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_partition(order.begin(), order.end(), [&](std::size_t i) { return !views[i].isOnFieldSide; });
    std::vector<FoundView> found;
    std::string reason = "no sensor of this side has seen the wheel";
    for (const std::size_t i : order) {
        if (points[i].empty()) {
            continue;
        }
        TurnedWheel wheel =
            turnWheel(points[i], result.sensors[i].profiles, face, found.empty() ? nullptr : &found.front().wheel);
        if (wheel.isFound()) {
            found.push_back({&views[i], std::move(wheel)});
        } else {
            reason = result.sensors[i].reason = wheel.reason;
        }
    }
    if (found.empty()) {
        withhold(reason, result);
    } else {
        measureSection(found, face, result, warnings);
    }
    return result;
}

} // namespace KxInspect::detail
