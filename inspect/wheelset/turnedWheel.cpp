// One wheel as one sensor sees it.
#include "inspect/wheelset/turnedWheel.h"

#include "inspect/fitting/leastSquares.h"
#include "inspect/fitting/median.h"
#include "inspect/fitting/normalEquations.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace KxInspect::detail {

namespace {

using Parameters = Axle::Parameters;
constexpr std::size_t kParameters = Axle::kParameters;
constexpr double kNormal = 1.4826; // from the median deviation to the standard deviation of normal noise
constexpr double kTuning = 4.685; // of the biweight function: Beaton and Tukey, The fitting of power series, 1974

/// Weight of a value that is `off` by so many standard deviations.
double biweight(double off) {
    const double u = std::min(1.0, std::abs(off) / kTuning);
    return (1.0 - u * u) * (1.0 - u * u);
}

/// The lowest point of the flange in each profile that shows one.
std::vector<TrackPoint> flangeTips(const std::vector<TrackPoint>& points, int profiles, double face) {
    constexpr double kFrom = 6.0; // mm from the back; a rail would begin at some 37
    constexpr double kTo = 30.0;
    std::vector<TrackPoint> lowest(static_cast<std::size_t>(profiles), {0.0, 0.0, 0.0, -1});
    for (const TrackPoint& p : points) {
        TrackPoint& tip = lowest[static_cast<std::size_t>(p.profile)];
        if (p.across > face + kFrom && p.across < face + kTo && (tip.profile < 0 || p.up < tip.up)) {
            tip = p;
        }
    }
    std::erase_if(lowest, [](const TrackPoint& p) { return p.profile < 0; });
    return lowest;
}

/// A circle in the plane along and up.
struct Circle {
    double along;
    double up;
    double radius;
};

/// The circle through three points; empty when it is not that of a wheel, whose axle is above the points.
std::optional<Circle> circleOf(const TrackPoint& a, const TrackPoint& b, const TrackPoint& c) {
    constexpr double kSmallest = 150.0; // mm
    constexpr double kLargest = 800.0;
    const double bx = b.along - a.along, bz = b.up - a.up, cx = c.along - a.along, cz = c.up - a.up;
    const double area = 2.0 * (bx * cz - bz * cx);
    const double x = (cz * (bx * bx + bz * bz) - bz * (cx * cx + cz * cz)) / area;
    const double z = (bx * (cx * cx + cz * cz) - cx * (bx * bx + bz * bz)) / area;
    const double radius = std::hypot(x, z);
    const bool isWheel = radius >= kSmallest && radius <= kLargest && z > 0.0; // NaN: false
    return isWheel ? std::optional(Circle{a.along + x, a.up + z, radius}) : std::nullopt;
}

std::vector<double> offsetsFrom(const Circle& circle, const std::vector<TrackPoint>& tips) {
    std::vector<double> offsets;
    offsets.reserve(tips.size());
    for (const TrackPoint& p : tips) {
        offsets.push_back(std::hypot(p.along - circle.along, p.up - circle.up) - circle.radius);
    }
    return offsets;
}

double medianSize(std::vector<double> values) {
    for (double& value : values) {
        value = std::abs(value);
    }
    return median(std::move(values));
}

/// Of the circles through three of the tips that are spread over all, the one from which the median of all is least off
/// (Rousseeuw, Least median of squares regression, 1984). Profiles that end before the tip show a higher place.
std::optional<Circle> circleOfMost(const std::vector<TrackPoint>& tips) {
    constexpr std::size_t kTried = 10;
    const std::size_t step = std::max<std::size_t>(1, tips.size() / kTried);
    std::optional<Circle> best;
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < tips.size(); i += step) {
        for (std::size_t k = i + 2 * step; k < tips.size(); k += step) {
            for (std::size_t m = k + 2 * step; m < tips.size(); m += step) {
                const auto circle = circleOf(tips[i], tips[k], tips[m]);
                const double off = circle ? medianSize(offsetsFrom(*circle, tips)) : least;
                if (off < least) {
                    least = off;
                    best = circle;
                }
            }
        }
    }
    return best;
}

/// Circle of least weighted squares (Kasa, A circle fitting procedure and its error analysis, 1976), about the first point
/// for the sake of rounding.
std::optional<Circle> circleThrough(const std::vector<TrackPoint>& tips) {
    constexpr int kRounds = 5;
    constexpr double kLeastScatter = 0.02; // mm
    std::optional<Circle> circle = circleOfMost(tips);
    for (int round = 0; round < kRounds && circle; ++round) {
        const std::vector<double> offsets = offsetsFrom(*circle, tips);
        const double scatter = std::max(kLeastScatter, kNormal * medianSize(offsets));
        LeastSquares3 sums;
        for (std::size_t i = 0; i < tips.size(); ++i) {
            const double x = tips[i].along - tips[0].along;
            const double z = tips[i].up - tips[0].up;
            sums.add({2.0 * x, 2.0 * z, 1.0}, x * x + z * z, biweight(offsets[i] / scatter));
        }
        const auto c = sums.solve();
        if (!c) {
            return {};
        }
        const auto [x, z, rest] = *c;
        circle = Circle{tips[0].along + x, tips[0].up + z, std::sqrt(x * x + z * z + rest)};
    }
    return circle && std::isfinite(circle->radius) ? circle : std::nullopt;
}

/// Writes the points of a wheel, turned, in their steps, and which of them are the wheel's.
void putIntoBins(const std::vector<TrackPoint>& points, const Axle& axle, const ContourGrid& grid,
                 std::vector<BinnedPoint>& result, std::vector<BinnedPoint>& kept) {
    // A rail, whose top is as far below the axle as the tape circle: flanges are at most 39 mm high.
    constexpr double kFromTip = 20.0; // mm across
    constexpr double kHighestFlange = 39.0;
    const double railTop = axle.up - grid.highest + kHighestFlange;
    const Turning turning(axle);
    result.clear();
    result.reserve(points.size());
    kept.clear();
    kept.reserve(points.size());
    for (const TrackPoint& p : points) {
        const TurnedPoint at = turning.turned(p);
        if (grid.holds(at) && !(at.across > grid.tip + kFromTip && p.up < railTop)) {
            const bool isBack = grid.isBack(at);
            const ContourCoordinates place = grid.placeOf(at, isBack);
            result.push_back({grid.binOf(place.along, isBack), place, p.profile, p.along - axle.along});
            kept.push_back(result.back());
        } else {
            result.push_back({0, {}, -1});
        }
    }
}

/// Sums over the points of a step for the least squares of its line and the parameters.
struct BinSums {
    static constexpr std::size_t kColumns = 3 + kParameters; // 1, along, gradients, residual
    std::array<std::array<double, kColumns>, kColumns> sums = {};

    void add(const std::array<double, kColumns>& row, double weight) {
        for (std::size_t i = 0; i < kColumns; ++i) {
            for (std::size_t k = i; k < kColumns; ++k) {
                sums[i][k] += weight * row[i] * row[k];
            }
        }
    }
    void add(const BinSums& other, double factor) {
        for (std::size_t i = 0; i < kColumns; ++i) {
            for (std::size_t k = i; k < kColumns; ++k) {
                sums[i][k] += factor * other.sums[i][k];
            }
        }
    }
    /// Takes the line of the step out of the other columns.
    void eliminateLine() {
        for (std::size_t p = 0; p < 2; ++p) {
            const double pivot = sums[p][p];
            if (!(pivot > 1e-9 * (p == 0 ? 1.0 : sums[0][0]))) {
                continue; // all points at one place
            }
            for (std::size_t i = p + 1; i < kColumns; ++i) {
                for (std::size_t k = i; k < kColumns; ++k) {
                    sums[i][k] -= sums[p][i] * sums[p][k] / pivot;
                }
            }
        }
    }
};

/// Groups of successive profiles with about as many points each.
std::vector<int> groupsOf(const std::vector<BinnedPoint>& points, int profiles, int groups) {
    std::vector<std::size_t> count(static_cast<std::size_t>(profiles), 0);
    std::size_t all = 0;
    for (const BinnedPoint& p : points) {
        if (p.profile >= 0) {
            ++count[static_cast<std::size_t>(p.profile)];
            ++all;
        }
    }
    std::vector<int> group(count.size(), 0);
    std::size_t before = 0;
    for (std::size_t i = 0; i < count.size(); ++i) {
        group[i] = static_cast<int>(std::min<std::size_t>(static_cast<std::size_t>(groups - 1),
                                                          (before + count[i] / 2) * static_cast<std::size_t>(groups) /
                                                              std::max<std::size_t>(1, all)));
        before += count[i];
    }
    return group;
}

constexpr int kGroups = 16;

/// The scatter of each seen step: the median over its surroundings. Noise changes slowly along a contour, while what the
/// few points of one step say of it is off by a quarter and more, and would give the most weight to steps that happen to
/// scatter little about the axle of the moment.
std::vector<double> scattersAlong(const ContourGrid& grid, const std::vector<ContourBin>& contour) {
    constexpr double kLeastScatter = 0.003; // mm; keeps weights defined on perfect data
    constexpr std::size_t kReach = 5; // steps to either side
    std::vector<double> scatters(contour.size(), kLeastScatter);
    std::vector<double> around;
    for (std::size_t i = 0; i < contour.size(); ++i) {
        if (!contour[i].isSeen()) {
            continue;
        }
        around.clear();
        const std::size_t end = std::min(contour.size(), i + kReach + 1);
        for (std::size_t k = i - std::min(i, kReach); k < end; ++k) {
            if (contour[k].isSeen() && grid.isBackBin(k) == grid.isBackBin(i)) {
                around.push_back(contour[k].scatter);
            }
        }
        scatters[i] = std::max(kLeastScatter, medianInPlace(around));
    }
    return scatters;
}

/// One step of the least squares: that of all points, and those without each group.
class AxleStep {
public:
    AxleStep(const std::vector<TrackPoint>& points, const std::vector<BinnedPoint>& places, const Axle& axle,
             const ContourGrid& grid, const std::vector<ContourBin>& contour)
        : points_(points), places_(places), turning_(axle), grid_(grid), contour_(contour),
          scatters_(scattersAlong(grid, contour)) {}

    std::optional<Parameters> step() {
        std::vector<BinSums> sums(contour_.size());
        forEach([&](std::size_t bin, int, const auto& row, double weight) { sums[bin].add(row, weight); });
        BinSums all;
        for (BinSums& bin : sums) {
            bin.eliminateLine();
            all.add(bin, 1.0);
        }
        return solved(all);
    }

    std::vector<Parameters> withoutGroups(int profiles) {
        const std::vector<int> group = groupsOf(places_, profiles, kGroups);
        std::vector<std::array<BinSums, kGroups>> parts(contour_.size());
        forEach([&](std::size_t bin, int profile, const auto& row, double weight) {
            parts[bin][static_cast<std::size_t>(group[static_cast<std::size_t>(profile)])].add(row, weight);
        });
        std::array<BinSums, kGroups> without;
        for (const std::array<BinSums, kGroups>& bin : parts) {
            BinSums all;
            for (const BinSums& part : bin) {
                all.add(part, 1.0);
            }
            for (std::size_t i = 0; i < kGroups; ++i) {
                BinSums rest = all;
                rest.add(bin[i], -1.0);
                rest.eliminateLine();
                without[i].add(rest, 1.0);
            }
        }
        std::vector<Parameters> steps;
        for (const BinSums& sums : without) {
            if (const auto step = solved(sums)) {
                steps.push_back(*step);
            }
        }
        return steps;
    }

private:
    template <typename Use>
    void forEach(Use use) {
        for (std::size_t i = 0; i < points_.size(); ++i) {
            const BinnedPoint& p = places_[i];
            if (p.profile < 0 || !contour_[p.bin].isSeen()) {
                continue;
            }
            const ContourBin& bin = contour_[p.bin];
            const double along = p.place.along - bin.along;
            const double residual = p.place.off - bin.off - bin.slope * along;
            const double scatter = scatters_[p.bin];
            const double weight = biweight(residual / scatter) / (scatter * scatter);
            if (!(weight > 0.0)) {
                continue;
            }
            const TurnedGradient gradient = turning_.gradient(points_[i]);
            std::array<double, BinSums::kColumns> row = {1.0, along};
            for (std::size_t k = 0; k < kParameters; ++k) {
                const ContourCoordinates d =
                    ContourGrid::stepOf(gradient.across[k], gradient.radius[k], grid_.isBackBin(p.bin));
                row[2 + k] = d.off - bin.slope * d.along;
            }
            row[2 + kParameters] = residual;
            use(p.bin, p.profile, row, weight);
        }
    }

    /// Takes the sums of all steps, without their lines.
    static std::optional<Parameters> solved(const BinSums& all) {
        constexpr double kYaw = 0.02; // rad; wheelsets stand less askew. Holds yaw where no upright face is seen
        Matrix<kParameters> matrix{};
        Parameters values{};
        for (std::size_t k = 0; k < kParameters; ++k) {
            for (std::size_t i = k; i < kParameters; ++i) {
                matrix[k][i] = matrix[i][k] = all.sums[2 + k][2 + i];
            }
            values[k] = -all.sums[2 + k][2 + kParameters];
        }
        matrix[2][2] += 1.0 / (kYaw * kYaw);
        const auto inverse = inverseOf(matrix);
        return inverse ? std::optional(*inverse * values) : std::nullopt;
    }

    const std::vector<TrackPoint>& points_;
    const std::vector<BinnedPoint>& places_;
    const Turning turning_;
    const ContourGrid& grid_;
    const std::vector<ContourBin>& contour_;
    const std::vector<double> scatters_;
};

/// The mean gradients of the steps.
std::vector<Parameters> gradientsOf(const std::vector<TrackPoint>& points, const std::vector<BinnedPoint>& places,
                                    const TurnedWheel& wheel) {
    std::vector<Parameters> gradients(wheel.contour.size(), Parameters{});
    std::vector<int> count(wheel.contour.size(), 0);
    const Turning turning(wheel.axle);
    for (std::size_t i = 0; i < points.size(); ++i) {
        const BinnedPoint& p = places[i];
        if (p.profile < 0 || !wheel.contour[p.bin].isSeen()) {
            continue;
        }
        const TurnedGradient gradient = turning.gradient(points[i]);
        ++count[p.bin];
        for (std::size_t k = 0; k < kParameters; ++k) {
            const ContourCoordinates d =
                ContourGrid::stepOf(gradient.across[k], gradient.radius[k], wheel.grid.isBackBin(p.bin));
            gradients[p.bin][k] += d.off - wheel.contour[p.bin].slope * d.along;
        }
    }
    for (std::size_t i = 0; i < gradients.size(); ++i) {
        for (double& part : gradients[i]) {
            part /= std::max(1, count[i]);
        }
    }
    return gradients;
}

double largestOf(const Parameters& step) {
    constexpr double kArm = 200.0; // mm; turns yaw into a distance
    return std::max({std::abs(step[0]), std::abs(step[1]), kArm * std::abs(step[2])});
}

/// Why what was found is no wheel, a clause; empty when it is one. Wheels that turn about another axle than the one that was
/// found, as with a wrong pose or an uneven z, show a section that scatters.
std::string whyNoWheel(const TurnedWheel& wheel) {
    constexpr double kMostScatter = 0.3; // mm; more than the noise of any usual sensor
    std::vector<double> scatters;
    for (const ContourBin& bin : wheel.contour) {
        if (bin.isSeen()) {
            scatters.push_back(bin.scatter);
        }
    }
    if (!(median(scatters) <= kMostScatter)) { // NaN: no step is seen
        return "the profiles do not show one cross-section when they are turned about an axle";
    }
    return {};
}

/// The steps in which the contour is found.
constexpr double kFineStep = 0.25; // mm

/// Starts with the circle of the flange tips.
TurnedWheel startAtTips(const std::vector<TrackPoint>& points, int profiles, double face) {
    constexpr double kUsualTip = 15.0; // mm from the back
    TurnedWheel wheel;
    const std::vector<TrackPoint> tips = flangeTips(points, profiles, face);
    if (tips.size() < kFewestProfiles) {
        wheel.reason = "fewer than 5 profiles show the flange";
        return wheel;
    }
    const std::optional<Circle> circle = circleThrough(tips);
    if (!circle) {
        wheel.reason = "the tips of the flange are on no circle of a wheel";
        return wheel;
    }
    wheel.axle = {circle->along, circle->up, 0.0, face};
    wheel.grid.highest = circle->radius;
    wheel.grid.tip = face + kUsualTip;
    return wheel;
}

} // namespace

std::optional<double> findFace(const std::vector<TrackPoint>& points, double expected) {
    constexpr double kReach = 30.0; // mm to both sides
    constexpr double kStep = 1.0;
    constexpr double kLeastShare = 0.02; // of the points
    std::vector<int> counts(static_cast<std::size_t>(2.0 * kReach / kStep));
    for (const TrackPoint& p : points) {
        const double place = (p.across - expected + kReach) / kStep;
        if (place >= 0.0 && place < static_cast<double>(counts.size())) {
            ++counts[static_cast<std::size_t>(place)];
        }
    }
    const auto most = std::max_element(counts.begin(), counts.end());
    if (static_cast<double>(*most) < kLeastShare * static_cast<double>(points.size())) {
        return {};
    }
    const auto bin = static_cast<double>(most - counts.begin());
    std::vector<double> near;
    for (const TrackPoint& p : points) {
        const double place = (p.across - expected + kReach) / kStep;
        if (place >= bin - 1.0 && place < bin + 2.0) {
            near.push_back(p.across);
        }
    }
    return median(std::move(near));
}

TurnedWheel turnWheel(const std::vector<TrackPoint>& points, int profiles, double face, const TurnedWheel* start) {
    constexpr int kMostSteps = 8;
    constexpr double kEnough = 0.001; // mm
    TurnedWheel wheel;
    if (start != nullptr) {
        wheel.axle = start->axle;
        wheel.grid = start->grid;
        wheel.grid.step = ContourGrid().step;
    } else {
        wheel = startAtTips(points, profiles, face);
    }
    wheel.profiles = profiles;
    if (!wheel.isFound()) {
        return wheel;
    }
    std::vector<BinnedPoint> places;
    for (int round = 0;; ++round) {
        putIntoBins(points, wheel.axle, wheel.grid, places, wheel.points);
        wheel.contour = medianContour(wheel.grid, wheel.points, kFewestProfiles);
        AxleStep fit(points, places, wheel.axle, wheel.grid, wheel.contour);
        const std::optional<Parameters> step = fit.step();
        if (!step) {
            wheel.reason = "the profiles do not determine the axle";
            return wheel;
        }
        const double size = largestOf(*step);
        if (size < kEnough || round == kMostSteps) {
            wheel.withoutGroup = fit.withoutGroups(profiles);
            for (Parameters& without : wheel.withoutGroup) {
                for (std::size_t k = 0; k < kParameters; ++k) {
                    without[k] -= (*step)[k];
                }
            }
            break;
        }
        wheel.axle = wheel.axle.movedBy(*step);
    }
    wheel.grid.step = kFineStep;
    putIntoBins(points, wheel.axle, wheel.grid, places, wheel.points);
    wheel.contour = medianContour(wheel.grid, wheel.points, kFewestProfiles);
    wheel.gradients = gradientsOf(points, places, wheel);
    wheel.reason = whyNoWheel(wheel);
    return wheel;
}

} // namespace KxInspect::detail
