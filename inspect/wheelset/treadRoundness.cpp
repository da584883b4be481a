// Whether a tread is round where the sensors see it.
#include "inspect/wheelset/treadRoundness.h"

#include "inspect/fitting/leastSquares.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

namespace KxInspect::detail {

namespace {

constexpr double kCertain = 5.0; // standard errors

/// The radii of the tread in one profile, above the median of all profiles.
struct ProfileMean {
    int count = 0;
    double ahead = 0.0; ///< sums, as those below
    double radius = 0.0;
    double squares = 0.0;

    bool isEnough() const {
        constexpr int kFewest = 10;
        return count >= kFewest;
    }
    double place() const { return ahead / count; }
    double mean() const { return radius / count; }
    /// The standard error of the mean.
    double error() const {
        const double variance = std::max(0.0, squares / count - mean() * mean());
        return std::sqrt(variance / (count - 1));
    }
};

/// What a residual off the contour has to be multiplied with for the residual of the radius, 0 where the contour is no
/// tread: treads are inclined by at most 1 in 5.
double radiusPerOff(const ContourBin& bin) {
    constexpr double kSteepest = 0.2;
    constexpr double kHalf = std::numbers::sqrt2 / 2.0;
    const double inclination = (1.0 - bin.slope) / (1.0 + bin.slope); // the contour is seen at 45 degrees
    return bin.isSeen() && std::abs(inclination) <= kSteepest ? 1.0 / (kHalf * (1.0 + bin.slope)) : 0.0;
}

std::vector<ProfileMean> meansOf(const TurnedWheel& wheel) {
    std::vector<ProfileMean> means(static_cast<std::size_t>(std::max(0, wheel.profiles)));
    for (const BinnedPoint& p : wheel.points) {
        const ContourBin& bin = wheel.contour[p.bin];
        const double factor = wheel.grid.isBackBin(p.bin) ? 0.0 : radiusPerOff(bin);
        if (factor != 0.0) {
            const double radius = factor * (p.place.off - bin.off - bin.slope * (p.place.along - bin.along));
            ProfileMean& mean = means[static_cast<std::size_t>(p.profile)];
            ++mean.count;
            mean.ahead += p.ahead;
            mean.radius += radius;
            mean.squares += radius * radius;
        }
    }
    std::erase_if(means, [](const ProfileMean& mean) { return !mean.isEnough(); });
    return means;
}

/// Where a place ahead of the axle is on the circumference, mm from the contact point, of a wheel that rolls: while its axle
/// comes nearer by s, it turns by s / radius.
double onCircumference(double ahead, double radius) {
    return radius * std::asin(std::clamp(ahead / radius, -1.0, 1.0)) - ahead;
}

/// Whether the radii rise from a middle to both sides as those of a chord do, by s^2 / (2 R).
bool isChord(const std::vector<ProfileMean>& means, double radius) {
    // Of the curvature of a chord; a round tread has none. The axle that fits a chord best is too high, which hides some.
    constexpr double kPart = 0.3;
    constexpr double kUnit = 10.0; // mm, for numbers of about one size
    constexpr double kLeastError = 1e-4; // mm, keeps weights defined on perfect data
    LeastSquares<3> parabola;
    for (const ProfileMean& mean : means) {
        const double s = onCircumference(mean.place(), radius) / kUnit;
        const double error = std::max(kLeastError, mean.error());
        parabola.add({1.0, s, s * s}, mean.mean(), 1.0 / (error * error));
    }
    const auto solved = parabola.solve();
    const auto covariance = parabola.inverse();
    if (!solved || !covariance) {
        return false;
    }
    const double ofChord = kUnit * kUnit / (2.0 * radius);
    const double curvature = (*solved)[2];
    return curvature > kPart * ofChord && curvature > kCertain * std::sqrt((*covariance)[2][2]);
}

} // namespace

TreadRoundness treadRoundness(const TurnedWheel& wheel) {
    constexpr std::size_t kFewest = 5; // profiles
    constexpr double kFlange = 28.0; // mm high, to a few mm
    constexpr double kLeast = 0.01; // mm, as rough as treads are
    const std::vector<ProfileMean> means = meansOf(wheel);
    TreadRoundness result;
    for (const ProfileMean& mean : means) {
        const double off = std::abs(mean.mean()) - kCertain * mean.error();
        result.off = off > kLeast ? std::max(result.off, off) : result.off;
    }
    result.isFlat = result.off > 0.0 && means.size() >= kFewest && isChord(means, wheel.grid.highest - kFlange);
    return result;
}

} // namespace KxInspect::detail
