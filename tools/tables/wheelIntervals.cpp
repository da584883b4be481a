// Prints how often the intervals of the measures of wheels hold the true values, by simulation: each wheel has its own wear,
// place and noise, so that all values are independent.
//
//     wheelIntervals [RUNS [FILE...]]
//
// RUNS is the number of wheels for each noise and spacing, 100 by default. With files of real wheels, contours from them
// take the place of simulated ones, without the measures of the field side. Ends with 1 when the intervals of a measure hold
// fewer than 93 % or more than 97 % of the true values.
#include "simulator/wornRim.h"

#include <KxInspect/Wheel.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <utility>
#include <vector>

namespace {

using KxInspect::kWheelMeasures;

constexpr KxInspect::GaugeError kGaugeError = {0.02f, 0.2f, 200.0f};
constexpr std::size_t kMeasures = kWheelMeasures.size();
using PerMeasure = std::array<double, kMeasures>;

PerMeasure truthOf(const kxsim::Contour& contour) {
    const kxsim::RimTruth t = kxsim::trueMeasures(contour);
    return {t.height,     t.thicknessAt18, t.flankWidth,  t.height - (t.height >= 29.0 ? 30.0 : 28.0),
            t.height,     t.thickness,     t.flangeSlope, t.hollow,
            t.treadSlope, t.width};
}

struct Count {
    int values = 0;
    int below = 0; ///< the truth is below the interval
    int above = 0;
    double width = 0.0;
    double squares = 0.0; ///< of the errors
};

using Counts = std::array<Count, kMeasures>;

/// Shallower hollows are no hollows: their depth is 0, and noise does not change it.
constexpr double kLeastHollow = 0.2; // mm

struct Condition {
    double noise;
    double spacing;
    bool isAlongX;
    KxInspect::GaugeError gaugeError = {}; ///< standard deviations, which are told
    bool isInSpace =
        false; ///< a section of a rim in space, seen from an angle, with the noise of all three coordinates
};

/// A profile as a file holds it: with its own origin where its back is seen, and in any orientation.
KxInspect::CrossSection sectionOf(const kxsim::Contour& points, bool isPlaced, kxsim::Random& random) {
    const double shift = isPlaced ? random.uniform(100.0, 300.0) : 0.0;
    const bool isMirrored = isPlaced && random.chance(0.5);
    const bool isUp = random.chance(0.5);
    KxInspect::CrossSection section;
    section.profile.emplace();
    for (const kxsim::ContourPoint& p : points) {
        const double x = p.axial + shift;
        section.profile->points.push_back(
            {static_cast<float>(isMirrored ? -x : x), static_cast<float>(isUp ? p.radius : -p.radius)});
    }
    return section;
}

/// The points as a gauge measures them that is off, turned about the flange back.
kxsim::Contour distorted(kxsim::Contour points, const KxInspect::GaugeError& error, kxsim::Random& random) {
    const double shift = static_cast<double>(error.place) * random.normal();
    const double turn = 1e-3 * static_cast<double>(error.turn) * random.normal();
    const double scale = 1.0 + 1e-6 * static_cast<double>(error.scale) * random.normal();
    for (kxsim::ContourPoint& p : points) {
        p = {scale * (std::cos(turn) * p.axial - std::sin(turn) * p.radius) + shift,
             scale * (std::sin(turn) * p.axial + std::cos(turn) * p.radius)};
    }
    return points;
}

/// A wheel from points in space: its section stands at an angle about the axis of y, through a centre that is told.
KxInspect::WheelResult measureInSpace(const kxsim::Contour& points, kxsim::Random& random) {
    constexpr double kFromCentre = 160.0; // mm, of the flange back
    KxInspect::WheelOptions options;
    options.centre = {static_cast<float>(random.uniform(-200.0, 200.0)),
                      static_cast<float>(random.uniform(-200.0, 200.0))};
    const double angle = random.uniform(-3.1, 3.1);
    const double height = random.uniform(100.0, 600.0);
    std::vector<KxInspect::Point3> rim;
    for (const kxsim::ContourPoint& p : points) {
        const double fromCentre = kFromCentre - p.axial;
        rim.push_back({static_cast<float>(static_cast<double>(options.centre.x) + fromCentre * std::cos(angle)),
                       static_cast<float>(height - p.radius),
                       static_cast<float>(static_cast<double>(options.centre.y) + fromCentre * std::sin(angle))});
    }
    return measureRim(rim, {}, options);
}

/// The contour of a real wheel, made smooth: what its gauge has added would else be part of the truth.
kxsim::Contour contourOf(const char* file) {
    constexpr std::ptrdiff_t kHalf = 50; // points, 0.02 mm apart: means over 2 mm, twice
    const KxInspect::WheelResult wheel = KxInspect::measureWheel({file});
    kxsim::Contour contour;
    for (const KxInspect::Point& p : wheel.section) {
        const double level = static_cast<double>(wheel.places.tape ? wheel.places.tape->y : p.y);
        contour.push_back({static_cast<double>(p.x), level - static_cast<double>(p.y)});
    }
    for (int round = 0; round < 2; ++round) {
        kxsim::Contour means;
        for (std::ptrdiff_t i = kHalf; i + kHalf < std::ssize(contour); ++i) {
            kxsim::ContourPoint mean = {0.0, 0.0};
            for (std::ptrdiff_t k = i - kHalf; k <= i + kHalf; ++k) {
                mean.axial += contour[static_cast<std::size_t>(k)].axial / (2 * kHalf + 1);
                mean.radius += contour[static_cast<std::size_t>(k)].radius / (2 * kHalf + 1);
            }
            means.push_back(mean);
        }
        contour = std::move(means);
    }
    return contour;
}

void count(const KxInspect::WheelResult& result, const PerMeasure& truth, std::size_t measures, Counts& counts) {
    for (std::size_t i = 0; i < measures; ++i) {
        const std::optional<float> value = result.measures.*kWheelMeasures[i].value;
        const KxInspect::Interval& interval = result.intervals[i];
        const auto expected = static_cast<float>(truth[i]);
        const bool isHollow = kWheelMeasures[i].value == &KxInspect::WheelMeasures::treadHollow;
        if (!value || !interval.isKnown() || (isHollow && truth[i] < kLeastHollow)) {
            continue;
        }
        ++counts[i].values;
        counts[i].below += expected < interval.low ? 1 : 0;
        counts[i].above += expected > interval.high ? 1 : 0;
        counts[i].width += static_cast<double>(interval.high - interval.low);
        const double error = static_cast<double>(*value) - truth[i];
        counts[i].squares += error * error;
    }
}

/// Measures simulated wheels, or one contour again and again.
void simulate(const Condition& condition, int runs, const std::vector<kxsim::Contour>& contours, Counts& counts) {
    constexpr std::size_t kWithoutFieldSide = 7; // the hollow, the slope and the width of the rim come last
    for (int run = 0; run < runs; ++run) {
        kxsim::Random random({static_cast<std::uint64_t>(run), static_cast<std::uint64_t>(condition.noise * 1e4),
                              static_cast<std::uint64_t>(condition.spacing * 1e4), condition.isAlongX});
        const kxsim::Contour contour = contours.empty() ? kxsim::makeRimContour(kxsim::randomWear(random))
                                                        : contours[static_cast<std::size_t>(run) % contours.size()];
        const kxsim::Contour points =
            kxsim::sampled(contour, {condition.spacing, condition.noise, condition.isAlongX}, random);
        if (condition.isInSpace) {
            count(measureInSpace(points, random), truthOf(contour), kMeasures, counts);
            continue;
        }
        KxInspect::WheelOptions options;
        options.gaugeError = condition.gaugeError;
        const bool isExact = !options.gaugeError.isSet();
        const bool isPlaced = isExact && contours.empty() && !condition.isAlongX && random.chance(0.5);
        const kxsim::Contour shown = isExact ? points : distorted(points, options.gaugeError, random);
        count(measureWheel(sectionOf(shown, isPlaced, random), options), truthOf(contour),
              contours.empty() ? kMeasures : kWithoutFieldSide, counts);
    }
}

void print(const char* what, const Counts& counts) {
    std::printf("| %s |", what);
    for (const Count& c : counts) {
        if (c.values > 0) {
            std::printf(" %.1f |", 100.0 * (c.values - c.below - c.above) / c.values);
        } else {
            std::printf(" |");
        }
    }
    std::printf("\n");
    std::fflush(stdout);
}

void add(const Counts& from, Counts& to) {
    for (std::size_t i = 0; i < kMeasures; ++i) {
        to[i].values += from[i].values;
        to[i].below += from[i].below;
        to[i].above += from[i].above;
        to[i].width += from[i].width;
        to[i].squares += from[i].squares;
    }
}

} // namespace

int main(int count, char** arguments) {
    constexpr double kNoises[] = {0.01, 0.02, 0.05, 0.1, 0.2};
    constexpr double kSpacings[] = {0.05, 0.1, 0.2, 0.4};
    const int runs = count > 1 ? static_cast<int>(std::strtol(arguments[1], nullptr, 10)) : 100;
    std::vector<kxsim::Contour> contours;
    for (int i = 2; i < count; ++i) {
        contours.push_back(contourOf(arguments[i]));
    }
    std::printf("| intervals that hold the truth, %% |");
    for (const KxInspect::WheelMeasure& measure : kWheelMeasures) {
        std::printf(" `%s` |", measure.key);
    }
    std::printf("\n| --- |");
    for (std::size_t i = 0; i < kMeasures; ++i) {
        std::printf(" --- |");
    }
    std::printf("\n");
    Counts all = {};
    Counts atNoise005 = {};
    std::array<Counts, std::size(kSpacings)> perSpacing = {};
    for (const double noise : kNoises) {
        Counts counts = {};
        for (std::size_t i = 0; i < std::size(kSpacings); ++i) {
            for (const bool isAlongX : {false, true}) {
                Counts some = {};
                simulate({noise, kSpacings[i], isAlongX}, runs, contours, some);
                add(some, counts);
                add(some, perSpacing[i]);
                if (noise == 0.05 && kSpacings[i] == 0.2) {
                    add(some, atNoise005);
                }
            }
        }
        char what[40];
        static_cast<void>(std::snprintf(what, sizeof what, "noise %.2f mm", noise));
        print(what, counts);
        add(counts, all);
    }
    for (std::size_t i = 0; i < std::size(kSpacings); ++i) {
        char what[40];
        static_cast<void>(std::snprintf(what, sizeof what, "points %.2f mm apart", kSpacings[i]));
        print(what, perSpacing[i]);
    }
    print("all", all);
    Counts inSpace = {};
    Counts byGauge = {};
    for (const double noise : kNoises) {
        for (const double spacing : kSpacings) {
            simulate({noise, spacing, false, {}, true}, runs, contours, inSpace);
            simulate({noise, spacing, false, kGaugeError}, runs, contours, byGauge);
        }
    }
    print("rims in space", inSpace);
    print("gauge off by 0.02 mm, 0.2 mrad and 200 millionths, as told", byGauge);
    for (const auto& [what, counts] : {std::pair{"values", &all},
                                       {"values of rims in space", &inSpace},
                                       {"values of gauges that are off", &byGauge}}) {
        std::printf("| %s |", what);
        for (const Count& c : *counts) {
            std::printf(" %d |", c.values);
        }
        std::printf("\n");
    }
    std::printf("| half an interval, noise 0.05 mm, points 0.2 mm apart |");
    for (const Count& c : atNoise005) {
        std::printf(c.values > 0 ? " %.4f |" : " |", c.width / c.values / 2.0);
    }
    std::printf("\n| error there, root mean square |");
    for (const Count& c : atNoise005) {
        std::printf(c.values > 0 ? " %.4f |" : " |", std::sqrt(c.squares / c.values));
    }
    std::printf("\n");
    const auto isRight = [](const Count& c) {
        const double held = c.values > 0 ? 100.0 * (c.values - c.below - c.above) / c.values : 95.0;
        return held >= 93.0 && held <= 97.0;
    };
    const auto areRight = [&](const Counts& counts) { return std::all_of(counts.begin(), counts.end(), isRight); };
    return areRight(all) && areRight(inSpace) && areRight(byGauge) ? 0 : 1;
}
