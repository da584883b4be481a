// How noise of the profiles changes the conicity, by resampling.
#include "inspect/conicity/resampling.h"

#include "inspect/conicity/calculation.h"
#include "inspect/fitting/lookUp.h"
#include "inspect/fitting/normalNumbers.h"
#include "inspect/sections/contourSmoothing.h"
#include "inspect/sections/gaugeDistortion.h"
#include "inspect/sections/runningSurface.h"

#include <KxInspect/Wheel.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <optional>

namespace KxInspect::detail {

namespace {

constexpr int kTrials = 200;
constexpr int kTrialsWithoutNoise = 20;

constexpr double kNormal95 = 1.96;
/// Instead of 1.96 for noise: the deviation of 200 trials is known to 5 to 10 %, and the tails are wider where contacts jump.
/// tools/tables/conicityIntervals found 2.2.
constexpr double kNoiseDeviations = 2.2;

/// Between displacements with errors of the gauges, mm: so small that steps of contacts do not hide what the errors change.
constexpr double kGaugeStep = 0.02;

using Points = std::vector<Point>;

Points sumOf(const Points& a, const Points& b) {
    Points sum = a;
    for (std::size_t i = 0; i < sum.size(); ++i) {
        sum[i] = {sum[i].x + b[i].x, sum[i].y + b[i].y};
    }
    return sum;
}

/// The profile as it would have been without noise, as far as the smoothest contour tells that the noise allows; and what was
/// done with it, once more with noise that is drawn.
class Contour {
public:
    Contour(const PreparedSection& section, WheelSetPart part, float gaugeDepth)
        : section_(section), part_(part), gaugeDepth_(gaugeDepth), numbers_(static_cast<std::uint64_t>(part) + 1) {
        const Points& points = section.contour;
        const bool isSmoothed = !section.windows.empty();
        places_ = placesAlong(points, kGap, isSmoothed ? PointPlaces::Tenth : PointPlaces::All);
        const std::vector<float> windows = parabolaWindows(points, section.noise);
        const ContourSmoothing atPoints(points, windows, placesOfPoints(points));
        Points toPilot;
        for (std::size_t i = 0; i < points.size(); ++i) {
            const Point& normal = atPoints.normal(i);
            const float noise = section.noise.across(normal);
            noises_.push_back({noise * normal.x, noise * normal.y});
            toPilot.push_back({atPoints.contour()[i].x - points[i].x, atPoints.contour()[i].y - points[i].y});
        }
        if (!section.noise.isNegligible()) {
            pilotSmoothing_.emplace(points, windows, places_);
        }
        if (isSmoothed) {
            smoothing_.emplace(points, section.windows, places_);
        }
        pilot_ = pilotSmoothing_ ? pilotSmoothing_->contour() : atPlaces(points);
        repeated_ = smoothing_ ? sumOf(smoothing_->contour(), smoothing_->displaced(toPilot)) : pilot_;
        draw();
    }

    /// Draws the noise of the next trial.
    void draw() {
        Points noise;
        for (const Point& deviation : noises_) {
            const float drawn = numbers_.next();
            noise.push_back({drawn * deviation.x, drawn * deviation.y});
        }
        result_ = std::move(next_);
        pilotResult_ = std::move(nextPilot_);
        next_ = smoothing_ ? smoothing_->displaced(noise) : atPlaces(noise);
        nextPilot_ = pilotSmoothing_ ? pilotSmoothing_->displaced(noise) : atPlaces(noise);
    }

    Points pilot() const { return pilot_; } ///< free of noise
    Points observed() const { return smoothing_ ? smoothing_->contour() : atPlaces(section_.contour); }
    Points trial() const { return sumOf(repeated_, result_); } ///< as it was measured
    Points pilotOfTrial() const { return sumOf(pilot_, pilotResult_); }
    /// As it would be measured if that pilot were the profile.
    Points trialOfPilot() const { return sumOf(sumOf(repeated_, next_), pilotResult_); }

    /// The running surface of such a contour as a gauge shows it that is off. The errors of its place drop out where the
    /// place is measured itself: a rail begins at its gauge point.
    std::vector<float> surfaceOf(const Points& contour, GaugeDistortion error, double step) const {
        error.shift = isWheel(part_) && section_.isBackMeasured ? 0.0 : error.shift;
        return samplesOf(section_, part_, error.of(contour, centre()), gaugeDepth_, step);
    }

private:
    static constexpr float kGap = 2.0f; // mm; wider gaps are straight

    /// Values of the points at the places.
    Points atPlaces(const Points& values) const {
        Points result;
        for (const ContourPlace& place : places_) {
            const Point& a = values[place.point];
            const Point& b = values[std::min(place.point + 1, values.size() - 1)];
            result.push_back({a.x + place.share * (b.x - a.x), a.y + place.share * (b.y - a.y)});
        }
        return result;
    }

    /// The flange back at the level of the tape circle, or the end of a rail on its gauge side. Only differences of heights
    /// count, so that any centre of the turn will do for a rail.
    Point centre() const {
        if (!isWheel(part_)) {
            return pilot_.empty() ? Point{} : pilot_.front();
        }
        const auto tape = std::find_if(pilot_.rbegin(), pilot_.rend(),
                                       [&](const Point& p) { return p.x <= section_.flangeBack + kTapeCircleX; });
        return {section_.flangeBack, tape == pilot_.rend() ? 0.0f : tape->y};
    }

    const PreparedSection& section_;
    WheelSetPart part_;
    float gaugeDepth_;
    NormalNumbers numbers_;
    Points noises_ = {}; ///< of the points, across the contour
    std::vector<ContourPlace> places_ = {};
    std::optional<ContourSmoothing> pilotSmoothing_ = {};
    std::optional<ContourSmoothing> smoothing_ = {};
    Points pilot_ = {}; ///< the smoothest contour
    Points repeated_ = {}; ///< that one, smoothed as the points were
    Points result_ = {}, pilotResult_ = {}; ///< what the noise of the trial does to the contour and to its pilot
    Points next_ = {}, nextPilot_ = {}; ///< likewise that of the next trial
};

/// Errors of the gauge of the wheels and of that of the rails.
using Gauges = std::array<GaugeDistortion, 2>;

/// Logarithms of conicities at the amplitudes, NaN where there is none.
using Curve = std::vector<double>;

/// Sums of what was seen at one amplitude.
struct Statistics {
    int count = 0;
    double trial = 0.0, trialSquare = 0.0;
    double corrected = 0.0, correctedSquare = 0.0;

    void add(double trialValue, double correctedValue) {
        if (std::isfinite(trialValue) && std::isfinite(correctedValue)) {
            ++count;
            trial += trialValue;
            trialSquare += trialValue * trialValue;
            corrected += correctedValue;
            correctedSquare += correctedValue * correctedValue;
        }
    }

    static double variance(double sum, double squares, int count) {
        return std::max((squares - sum * sum / count) / (count - 1), 0.0);
    }
};

/// The variances of the logarithm of the conicity from the errors of the gauges, to first order: what each of them changes from
/// one standard uncertainty on one side to one on the other is twice its standard deviation.
/// @param curveOf the curve with errors of the gauges
std::vector<double> gaugeVariances(const GaugeError& error, std::size_t amplitudes,
                                   const std::function<Curve(const Gauges&)>& curveOf) {
    std::vector<double> variances(amplitudes, 0.0);
    const std::array<GaugeDistortion, 3> single = {GaugeDistortion::times(error, 1.0, 0.0, 0.0),
                                                   GaugeDistortion::times(error, 0.0, 1.0, 0.0),
                                                   GaugeDistortion::times(error, 0.0, 0.0, 1.0)};
    for (std::size_t gauge = 0; gauge < std::tuple_size_v<Gauges>; ++gauge) {
        for (const GaugeDistortion& off : single) {
            if (off.isNone()) {
                continue;
            }
            Gauges gauges;
            gauges[gauge] = off;
            const Curve more = curveOf(gauges);
            gauges[gauge] = off.opposite();
            const Curve less = curveOf(gauges);
            for (std::size_t i = 0; i < amplitudes; ++i) {
                variances[i] += (more[i] - less[i]) * (more[i] - less[i]) / 4.0;
            }
        }
    }
    return variances;
}

} // namespace

NoiseEffect resample(const PerWheelSetPart<PreparedSection>& sections, const ConicityInput& input, float last,
                     double pilotStep) {
    const Stand stand = standOf(input);
    constexpr float kStep = 0.5f;
    constexpr float kMost = 60.0f; // the sweep goes no further
    NoiseEffect effect;
    for (int i = 1; static_cast<float>(i) * kStep <= std::min(last, kMost) + kStep; ++i) {
        effect.values.push_back({static_cast<float>(i) * kStep});
    }
    std::vector<Contour> contours;
    for (const WheelSetPart part : {Wheel1, Rail1, Wheel2, Rail2}) {
        contours.emplace_back(sections[part], part, input.gaugeDepth);
    }
    const auto oscillationOf = [&](Points (Contour::*contour)() const, double step = kLateralStep,
                                   const Gauges& gauges = {}) {
        PerWheelSetPart<std::vector<float>> surfaces;
        for (std::size_t part = 0; part < surfaces.size(); ++part) {
            surfaces[part] = contours[part].surfaceOf((contours[part].*contour)(),
                                                      gauges[isWheel(static_cast<WheelSetPart>(part)) ? 0 : 1], step);
        }
        return sweep(surfaces, stand, step);
    };
    const auto curveOf = [&](const Oscillation& oscillation) {
        Curve curve;
        for (const NoiseEffect::Value& value : effect.values) {
            const auto conicity = oscillation.conicity(static_cast<double>(value.amplitude));
            curve.push_back(conicity ? std::log(*conicity) : std::numeric_limits<double>::quiet_NaN());
        }
        return curve;
    };
    const bool isNoisy = std::any_of(sections.begin(), sections.end(),
                                     [](const PreparedSection& section) { return !section.noise.isNegligible(); });
    const int trials = isNoisy ? kTrials : kTrialsWithoutNoise;
    const Curve pilot = curveOf(oscillationOf(&Contour::pilot, pilotStep));
    effect.observed = oscillationOf(&Contour::observed);
    const std::vector<double> ofGauges =
        gaugeVariances(input.gaugeError, effect.values.size(), [&](const Gauges& gauges) {
            return curveOf(oscillationOf(&Contour::pilot, kGaugeStep, gauges));
        });
    std::vector<Statistics> statistics(effect.values.size());
    for (int i = 0; i < trials; ++i) {
        for (Contour& contour : contours) {
            contour.draw();
        }
        const Curve trial = curveOf(oscillationOf(&Contour::trial));
        const Curve pilotOfTrial = curveOf(oscillationOf(&Contour::pilotOfTrial));
        const Curve trialOfPilot = curveOf(oscillationOf(&Contour::trialOfPilot));
        for (std::size_t k = 0; k < statistics.size(); ++k) {
            statistics[k].add(trial[k], trial[k] + pilotOfTrial[k] - trialOfPilot[k]);
        }
    }
    for (std::size_t k = 0; k < statistics.size(); ++k) {
        const int kLeast = trials * 3 / 4;
        const Statistics& s = statistics[k];
        NoiseEffect::Value& value = effect.values[k];
        if (s.count < kLeast || !std::isfinite(pilot[k])) {
            value.logCorrection = value.halfWidth = std::numeric_limits<float>::quiet_NaN();
            continue;
        }
        const double variance = Statistics::variance(s.trial, s.trialSquare, s.count);
        // That of the corrected value, and of the noise with which the second draw corrects it.
        const double both = Statistics::variance(s.corrected, s.correctedSquare, s.count);
        value.logCorrection = static_cast<float>(pilot[k] - s.trial / s.count);
        value.halfWidth = static_cast<float>(std::hypot(
            kNoiseDeviations * std::sqrt(std::max(both - variance, variance)), kNormal95 * std::sqrt(ofGauges[k])));
    }
    return effect;
}

float NoiseEffect::correction(float amplitude) const {
    std::vector<Point> curve;
    for (const Value& value : values) {
        curve.push_back({value.amplitude, value.logCorrection});
    }
    return std::exp(static_cast<float>(valueAt(curve, static_cast<double>(amplitude))));
}

float NoiseEffect::observedAt(float amplitude) const {
    const auto value = observed.conicity(static_cast<double>(amplitude));
    return value ? static_cast<float>(*value) : std::numeric_limits<float>::quiet_NaN();
}

Interval NoiseEffect::interval(float amplitude, float conicity) const {
    std::vector<Point> curve;
    for (const Value& value : values) {
        curve.push_back({value.amplitude, value.halfWidth});
    }
    const float factor = std::exp(static_cast<float>(valueAt(curve, static_cast<double>(amplitude))));
    return {conicity / factor, conicity * factor};
}

} // namespace KxInspect::detail
