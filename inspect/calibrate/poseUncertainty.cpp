// How certain a pose is, from the distances of the points from the flanks.
#include "inspect/calibrate/poseUncertainty.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace KxInspect::detail {

namespace {

using Pose = ObjectPose;

constexpr double kFreedom = 2.0 * kFlankCount - static_cast<double>(Pose::kCount); // of places and slopes of the flanks

/// Kinds of flanks: straight ones before and behind their crests, oblique ones before and behind theirs. The noise of a
/// sensor may differ with the angle at which it sees a flank.
constexpr std::size_t kKindCount = 4;

std::size_t kindOf(std::size_t flank) {
    return (flank / 2 == kObliqueRidge ? 2 : 0) + flank % 2;
}

/// The variance of the mean of points, as a multiple of that of independent ones: 1 and twice the correlations with the
/// next points, up to the first one that is not certain (after C. J. Geyer, Practical Markov chain Monte Carlo, 1992). The
/// fit itself takes unknowns / n off each correlation.
double correlationFactor(const FlankPoints& points) {
    std::vector<double> distances;
    std::vector<std::size_t> flanks;
    double squares = 0.0;
    points.forEach([&](const ReadPoint&, std::size_t flank, double distance) {
        distances.push_back(distance);
        flanks.push_back(flank);
        squares += distance * distance;
    });
    const double n = static_cast<double>(distances.size());
    const double certain = 3.0 / std::sqrt(n); // standard deviations of a correlation of independent points
    double factor = 1.0;
    constexpr std::size_t kFarthest =
        2000; // neighbours; a sensor gives no more points in a profile than some thousands
    for (std::size_t lag = 1; lag < std::min(distances.size() / 10, kFarthest); ++lag) {
        double products = 0.0;
        for (std::size_t i = lag; i < distances.size(); ++i) {
            products += flanks[i - lag] == flanks[i] ? distances[i] * distances[i - lag] : 0.0;
        }
        const double correlation = products / squares + static_cast<double>(Pose::kCount) / n;
        if (!(correlation > certain)) { // NaN: the end
            break;
        }
        factor += 2.0 * correlation;
    }
    return factor;
}

void scale(Matrix<Pose::kCount>& covariance, double factor) {
    for (auto& row : covariance) {
        for (double& value : row) {
            value *= factor;
        }
    }
}

/// The noise of each kind of flank as a variance along y, and the covariance of the least squares that it causes, for
/// independent points.
struct Noise {
    std::array<double, kKindCount> variances{};
    Matrix<Pose::kCount> covariance{};
};

Noise noiseOf(const FlankPoints& points, const Pose& pose, const Matrix<Pose::kCount>& inverse) {
    const Tangent tangent(pose);
    Matrix<Pose::kCount> normal[kKindCount]{};
    double squares[kKindCount]{};
    double freedom[kKindCount]{}; // the points less what the fit takes of them
    points.forEach([&](const ReadPoint& p, std::size_t flank, double distance) {
        const Gradient gradient = tangent.gradient(p, points.plane(flank));
        const std::size_t kind = kindOf(flank);
        addProduct(normal[kind], gradient, gradient);
        const Gradient pull = inverse * gradient;
        squares[kind] += distance * distance;
        freedom[kind] += 1.0 - std::inner_product(gradient.begin(), gradient.end(), pull.begin(), 0.0);
    });
    Noise noise;
    Matrix<Pose::kCount> sum{};
    for (std::size_t kind = 0; kind < kKindCount; ++kind) {
        noise.variances[kind] = freedom[kind] > 0.0 ? squares[kind] / freedom[kind] : 0.0;
        for (std::size_t row = 0; row < Pose::kCount; ++row) {
            for (std::size_t column = 0; column < Pose::kCount; ++column) {
                sum[row][column] += noise.variances[kind] * normal[kind][row][column];
            }
        }
    }
    noise.covariance = inverse * sum * inverse;
    return noise;
}

double product(const Gradient& a, const Gradient& b) {
    return std::inner_product(a.begin(), a.end(), b.begin(), 0.0);
}

/// Finds the standard deviations of the mean distances of the flanks: the noise of the mean less what the pose follows of
/// it, and what the pose does by the noise of the other flanks.
void findFlankDeviations(const FlankPoints& points, const Matrix<Pose::kCount>& inverse, const Noise& noise,
                         ObjectFit& fit) {
    const Tangent tangent(fit.pose);
    Gradient means[kFlankCount]{};
    double counts[kFlankCount]{};
    points.forEach([&](const ReadPoint& p, std::size_t flank, double) {
        const Gradient gradient = tangent.gradient(p, points.plane(flank));
        for (std::size_t i = 0; i < gradient.size(); ++i) {
            means[flank][i] += gradient[i];
        }
        counts[flank] += 1.0;
    });
    for (std::size_t flank = 0; flank < kFlankCount; ++flank) {
        Gradient& mean = means[flank];
        for (double& part : mean) {
            part /= counts[flank];
        }
        const double own = noise.variances[kindOf(flank)];
        const double variance =
            own / counts[flank] - 2.0 * own * product(mean, inverse * mean) + product(mean, noise.covariance * mean);
        fit.flankDeviations[flank] = std::abs(tangent.perY(points.plane(flank))) * std::sqrt(std::max(0.0, variance));
    }
}

/// What is left of a line through the distances of a flank, along Y.
struct FlankDeviation {
    double n = 0.0, x = 0.0, xx = 0.0, d = 0.0, xd = 0.0, dd = 0.0;

    void add(double at, double distance) {
        n += 1.0;
        x += at;
        xx += at * at;
        d += distance;
        xd += at * distance;
        dd += distance * distance;
    }

    double spread() const { return xx - x * x / n; }
    double slope() const { return (xd - x * d / n) / spread(); }
    double variance() const {
        return std::max(kResolution * kResolution, (dd - d * d / n - slope() * slope() * spread()) / (n - 2.0));
    }
    /// How far the ends of the flank deviate, less four standard deviations of what noise does there.
    double beyondNoise() const {
        constexpr double kDeviations = 4.0;
        const double halfWidth = std::sqrt(3.0 * spread() / n);
        return std::abs(d / n) + std::abs(slope()) * halfWidth - kDeviations * 2.0 * std::sqrt(variance() / n);
    }
    /// Of place and slope.
    double chiSquared() const { return (d * d / n + slope() * slope() * spread()) / variance(); }
};

/// Finds the misfit. @return the chi squared of places and slopes of all flanks per degree of freedom
double findMisfit(const FlankPoints& points, ObjectFit& fit) {
    const Tangent tangent(fit.pose);
    FlankDeviation deviations[kFlankCount];
    points.forEach([&](const ReadPoint& p, std::size_t flank, double distance) {
        deviations[flank].add(p.x, distance * tangent.perY(points.plane(flank)));
    });
    constexpr double kFewest = 5.0;
    double chiSquared = 0.0;
    fit.hasAllFlanks = true;
    for (const FlankDeviation& deviation : deviations) {
        chiSquared += deviation.chiSquared();
        fit.misfit = std::max(fit.misfit, deviation.beyondNoise());
        fit.hasAllFlanks = fit.hasAllFlanks && deviation.n >= kFewest;
    }
    return chiSquared / kFreedom;
}

} // namespace

void judge(const FlankPoints& points, const Matrix<Pose::kCount>& inverse, ObjectFit& fit) {
    // Flanks that deviate by more than noise make the pose less certain than the noise alone: by the ratio of their chi
    // squared to what noise gives (R. T. Birge, The calculation of errors by the method of least squares, 1932), where it
    // is certainly above 1.
    const double limit = 1.0 + 4.0 * std::sqrt(2.0 / kFreedom); // four standard deviations
    const double correlation = correlationFactor(points);
    const double ratio = findMisfit(points, fit) / correlation;
    const Noise noise = noiseOf(points, fit.pose, inverse);
    findFlankDeviations(points, inverse, noise, fit);
    for (double& deviation : fit.flankDeviations) {
        deviation *= std::sqrt(correlation);
    }
    fit.covariance = noise.covariance;
    fit.inflation = ratio > limit ? ratio : 1.0;
    scale(fit.covariance, correlation * fit.inflation);
}

} // namespace KxInspect::detail
