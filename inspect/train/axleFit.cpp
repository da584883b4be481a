// Where the axle of a wheel is in the profiles of a pass, from the tips of its flange.
#include "inspect/train/axleFit.h"

#include "inspect/fitting/median.h"

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

constexpr double kNormal = 1.4826; // from the median deviation to the standard deviation of normal noise
constexpr double kLeastScatter = 1e-4; // mm; keeps weights defined on perfect data

AxleFit firstGuess(const std::vector<ProfileTip>& tips, const FlangeCircle& circle, const AxleKnowledge& known) {
    AxleFit axle;
    axle.value = {circle.place, circle.down, circle.radius, known.shear.value, known.stretch.value};
    std::vector<double> downs;
    downs.reserve(tips.size());
    for (const ProfileTip& tip : tips) {
        downs.push_back(tip.down);
    }
    axle.level = median(downs);
    return axle;
}

std::vector<double> offCircle(const AxleFit& axle, const std::vector<ProfileTip>& tips) {
    std::vector<double> off;
    off.reserve(tips.size());
    for (const ProfileTip& tip : tips) {
        off.push_back(axle.radiusOf(axle.fromAxle(tip.place, tip.down), tip.down) - axle.value[AxleFit::Radius]);
    }
    return off;
}

double scatterOf(const std::vector<double>& off) {
    std::vector<double> sizes;
    sizes.reserve(off.size());
    for (const double value : off) {
        sizes.push_back(std::abs(value));
    }
    // Five unknowns leave fewer degrees of freedom than there are tips.
    constexpr double kUnknowns = 5.0;
    const double count = static_cast<double>(off.size());
    return kNormal * median(sizes) * std::sqrt(count / (count - kUnknowns));
}

/// One step of Gauss and Newton with weights of the biweight function. @return false when there is none
bool improve(AxleFit& axle, const std::vector<ProfileTip>& tips, const AxleKnowledge& known) {
    constexpr double kTuning = 4.685;
    const std::vector<double> off = offCircle(axle, tips);
    axle.scatter = scatterOf(off);
    const double scatter = std::max({axle.scatter, known.noise, kLeastScatter});
    // The larger one of two estimates of the same noise would be too large on the average.
    const double deviation =
        isByChance(axle.scatter, known.noise, tips.size()) ? std::max(known.noise, kLeastScatter) : scatter;
    AxleFit::Fit sums;
    for (std::size_t i = 0; i < tips.size(); ++i) {
        const double u = std::min(1.0, std::abs(off[i]) / (kTuning * scatter));
        AxleFit::Fit::Vector change = axle.changeOfRadius(tips[i].place, tips[i].down);
        change[AxleFit::Radius] = -1.0;
        sums.add(change, -off[i], (1.0 - u * u) * (1.0 - u * u));
    }
    const auto expect = [&](AxleFit::Unknown unknown, const ValueWithError& estimate) {
        AxleFit::Fit::Vector a = {};
        a[unknown] = 1.0;
        sums.add(a, estimate.value - axle.value[unknown], deviation * deviation / (estimate.error * estimate.error));
    };
    expect(AxleFit::Shear, known.shear);
    expect(AxleFit::Stretch, known.stretch);
    const auto step = sums.solve();
    const auto inverse = sums.inverse();
    if (!step || !inverse) {
        return false;
    }
    for (std::size_t i = 0; i < step->size(); ++i) {
        axle.value[i] += (*step)[i];
        for (std::size_t k = 0; k < step->size(); ++k) {
            axle.covariance[i][k] = (*inverse)[i][k] * deviation * deviation;
        }
    }
    return true;
}

} // namespace

AxleFit::Fit::Vector AxleFit::changeOfRadius(double place, double down, double skewed) const {
    const double along = fromAxle(place, down) - skewed;
    const double radius = radiusOf(along, down);
    const double sine = along / radius;
    const double cosine = (down - value[Down]) / radius;
    return {-sine * (1.0 + value[Stretch]), -cosine, 0.0, -sine * (down - level), sine * (place - value[Place])};
}

bool isByChance(double scatter, double noise, std::size_t count) {
    // A standard deviation from the median deviation of n values is uncertain by 1.17 / sqrt(n) of itself.
    return scatter <= noise * (1.0 + 2.0 * 1.17 / std::sqrt(static_cast<double>(count)));
}

std::optional<AxleFit> fitAxle(const std::vector<ProfileTip>& tips, const FlangeCircle& circle,
                               const AxleKnowledge& known) {
    constexpr int kRounds = 20;
    AxleFit axle = firstGuess(tips, circle, known);
    for (int round = 0; round < kRounds; ++round) {
        if (!improve(axle, tips, known)) {
            return {};
        }
    }
    axle.scatter = scatterOf(offCircle(axle, tips));
    return std::isfinite(axle.scatter) ? std::optional(axle) : std::nullopt;
}

} // namespace KxInspect::detail
