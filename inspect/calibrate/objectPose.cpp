// The pose of a sensor in the frame of the calibration object.
#include "inspect/calibrate/objectPose.h"

#include "inspect/calibrate/objectSurface.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace KxInspect::detail {

namespace {

using Pose = ObjectPose;
using Gradient = Vector<Pose::kCount>;

/// Y and Z of a point (x, y) of the profile: Y = onX[0] x + onY[0] y + offset[0], Z likewise.
struct CrossSection {
    double onX[2];
    double onY[2];
    double offset[2];
};

/// The three equally spaced lines of all straight flanks on one side of their crests, as the distance
/// onX x + onY y + offset from the middle one along Y.
struct LineFamily {
    double onX;
    double onY;
    double offset;
};

LineFamily straightFlanks(const FlankLines& lines, bool isBehind, const CalibrationObject& object) {
    const std::size_t first = isBehind ? 1 : 0;
    const double slope = (lines[first].slope + lines[first + 2].slope + lines[first + 4].slope) / 3.0;
    const double middle = (lines[first].intercept + lines[first + 2].intercept + lines[first + 4].intercept) / 3.0;
    const double step = (lines[first + 4].intercept - lines[first].intercept) / 2.0;
    // From one line to the next Z grows by the pitch.
    const double onY = (isBehind ? -1.0 : 1.0) * object.slope * object.pitch / step;
    return {-slope * onY, onY, -middle * onY};
}

/// Y +- m Z from the flanks on either side of the crests, and with it Y and Z.
CrossSection crossSection(const FlankLines& lines, const CalibrationObject& object) {
    const LineFamily before = straightFlanks(lines, false, object); // Y + m Z
    const LineFamily behind = straightFlanks(lines, true, object); // Y - m Z
    CrossSection section{};
    const auto split = [&](double sum, double difference, double(&value)[2]) {
        value[0] = (sum + difference) / 2.0;
        value[1] = (sum - difference) / (2.0 * object.slope);
    };
    split(before.onX, behind.onX, section.onX);
    split(before.onY, behind.onY, section.onY);
    split(before.offset, behind.offset, section.offset);
    return section;
}

/// The parts of the directions of x and y along X: what is missing to unit vectors at right angles. The larger one is
/// certain, the other one follows from it.
struct PartsAlongX {
    double ofX;
    double ofY;
};

PartsAlongX partsAlongX(const CrossSection& s) {
    const double ofX = std::sqrt(std::max(0.0, 1.0 - s.onX[0] * s.onX[0] - s.onX[1] * s.onX[1]));
    const double ofY = std::sqrt(std::max(0.0, 1.0 - s.onY[0] * s.onY[0] - s.onY[1] * s.onY[1]));
    const double product = -s.onX[0] * s.onY[0] - s.onX[1] * s.onY[1];
    return ofX > ofY ? PartsAlongX{ofX, product / ofX} : PartsAlongX{product / ofY, ofY};
}

Pose poseFrom(const Vec3& alongX, const Vec3& alongY, const Vec3& origin) {
    Pose pose;
    const double beta = std::atan2(alongY[1], alongY[0]);
    const double alpha = -std::asin(std::clamp(alongY[2], -1.0, 1.0));
    const double sine = std::sin(beta) * alongX[0] - std::cos(beta) * alongX[1];
    pose.values = {alpha, beta, std::atan2(sine, alongX[2] / std::cos(alpha)), origin[0], origin[1], origin[2]};
    return pose;
}

/// A pose with the derivatives of its directions by the angles.
class Tangent {
public:
    explicit Tangent(const Pose& pose) : alongX_(pose.alongX()), alongY_(pose.alongY()) {
        constexpr double kStep = 1e-6;
        for (std::size_t angle = 0; angle < 3; ++angle) {
            Pose up = pose;
            Pose down = pose;
            up.values[angle] += kStep;
            down.values[angle] -= kStep;
            for (std::size_t axis = 0; axis < 3; ++axis) {
                byX_[angle][axis] = (up.alongX()[axis] - down.alongX()[axis]) / (2.0 * kStep);
                byY_[angle][axis] = (up.alongY()[axis] - down.alongY()[axis]) / (2.0 * kStep);
            }
        }
    }

    /// How the distance along y of a point from a plane changes with the pose, and with y itself as `perY`.
    Gradient gradient(const ReadPoint& point, const FlankPlane& plane) const {
        const auto alongPlane = [&](const Vec3& v) { return v[1] + plane.onX * v[0] + plane.onZ * v[2]; };
        Gradient gradient;
        for (std::size_t angle = 0; angle < 3; ++angle) {
            gradient[angle] = point.x * alongPlane(byX_[angle]) + point.y * alongPlane(byY_[angle]);
        }
        gradient[Pose::kX] = plane.onX;
        gradient[Pose::kY] = 1.0;
        gradient[Pose::kZ] = plane.onZ;
        const double perY = alongPlane(alongY_);
        for (double& value : gradient) {
            value /= perY;
        }
        return gradient;
    }

    double perY(const FlankPlane& plane) const { return alongY_[1] + plane.onX * alongY_[0] + plane.onZ * alongY_[2]; }

private:
    Vec3 alongX_;
    Vec3 alongY_;
    Vec3 byX_[3]{};
    Vec3 byY_[3]{};
};

/// The points on flanks with their distances from them.
class FlankPoints {
public:
    FlankPoints(const std::vector<ReadPoint>& points, const CalibrationObject& object, double slopeFactor)
        : points_(points), object_(object), distances_(points.size()), flanks_(points.size()),
          isOutlier_(points.size()) {
        for (std::size_t flank = 0; flank < kFlankCount; ++flank) {
            planes_[flank] = planeOf(object, flank, slopeFactor);
        }
    }

    /// Finds the flanks of all points and which of them are outliers.
    void look(const Pose& pose) {
        const Tangent tangent(pose);
        const Vec3 away = pose.alongY();
        std::vector<double> sizes;
        isInside_.assign(points_.size(), false);
        for (std::size_t i = 0; i < points_.size(); ++i) {
            Vec3 p = pose.at(points_[i]);
            flanks_[i] = flankAt(object_, p[0], p[2], 0.0);
            if (!flanks_[i]) {
                continue;
            }
            const FlankPlane& plane = planes_[*flanks_[i]];
            distances_[i] = plane.distance(p[0], p[1], p[2]) / tangent.perY(plane);
            // Where the point would be without noise decides: what the noise chose would be biased.
            for (std::size_t axis = 0; axis < 3; ++axis) {
                p[axis] -= distances_[i] * away[axis];
            }
            if (flankAt(object_, p[0], p[2]) == flanks_[i]) {
                sizes.push_back(std::abs(distances_[i]));
                isInside_[i] = true;
            }
        }
        const double limit = outlierLimit(std::move(sizes));
        for (std::size_t i = 0; i < points_.size(); ++i) {
            isOutlier_[i] = flanks_[i] && !(std::abs(distances_[i]) <= limit); // NaN: an outlier
            if (!isInside_[i] || isOutlier_[i]) {
                flanks_[i].reset();
            }
        }
    }

    /// Calls `use` for each point on a flank with the point moved onto the flank, the flank, and the distance of the
    /// point from it along y. Gradients at the points as measured would hold their noise and give a bias.
    template <typename Use>
    void forEach(Use use) const {
        for (std::size_t i = 0; i < points_.size(); ++i) {
            if (flanks_[i]) {
                use(ReadPoint{points_[i].x, points_[i].y - distances_[i]}, *flanks_[i], distances_[i]);
            }
        }
    }

    const FlankPlane& plane(std::size_t flank) const { return planes_[flank]; }
    const std::vector<bool>& areOutliers() const { return isOutlier_; }

private:
    const std::vector<ReadPoint>& points_;
    const CalibrationObject& object_;
    FlankPlane planes_[kFlankCount];
    std::vector<double> distances_;
    std::vector<std::optional<std::size_t>> flanks_;
    std::vector<bool> isInside_; ///< off crests and valleys
    std::vector<bool> isOutlier_;
};

/// The inverse of the normal matrix, and the step towards the least squares.
struct Step {
    Matrix<Pose::kCount> inverse;
    Gradient step;
    double variance; ///< of the points
};

std::optional<Step> solve(const FlankPoints& points, const Pose& pose) {
    const Tangent tangent(pose);
    Matrix<Pose::kCount> normal{};
    Gradient right{};
    double squares = 0.0;
    int count = 0;
    points.forEach([&](const ReadPoint& p, std::size_t flank, double distance) {
        const Gradient gradient = tangent.gradient(p, points.plane(flank));
        addProduct(normal, gradient, gradient);
        for (std::size_t i = 0; i < gradient.size(); ++i) {
            right[i] -= gradient[i] * distance;
        }
        squares += distance * distance;
        ++count;
    });
    const auto inverse = inverseOf(normal);
    if (!inverse || count <= Pose::kCount) {
        return std::nullopt;
    }
    return Step{*inverse, *inverse * right, squares / (count - static_cast<int>(Pose::kCount))};
}

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
    for (std::size_t lag = 1; lag < distances.size() / 10; ++lag) {
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

/// The covariance of the least squares, with the noise of each kind of flank and the correlation of neighbours.
Matrix<Pose::kCount> covarianceOf(const FlankPoints& points, const Pose& pose, const Step& solution,
                                  double correlation) {
    const Tangent tangent(pose);
    Matrix<Pose::kCount> normal[kKindCount]{};
    double squares[kKindCount]{};
    double freedom[kKindCount]{}; // the points less what the fit takes of them
    points.forEach([&](const ReadPoint& p, std::size_t flank, double distance) {
        const Gradient gradient = tangent.gradient(p, points.plane(flank));
        const std::size_t kind = kindOf(flank);
        addProduct(normal[kind], gradient, gradient);
        const Gradient pull = solution.inverse * gradient;
        squares[kind] += distance * distance;
        freedom[kind] += 1.0 - std::inner_product(gradient.begin(), gradient.end(), pull.begin(), 0.0);
    });
    Matrix<Pose::kCount> sum{};
    for (std::size_t kind = 0; kind < kKindCount; ++kind) {
        for (std::size_t row = 0; row < Pose::kCount && freedom[kind] > 0.0; ++row) {
            for (std::size_t column = 0; column < Pose::kCount; ++column) {
                sum[row][column] += squares[kind] / freedom[kind] * normal[kind][row][column];
            }
        }
    }
    Matrix<Pose::kCount> covariance = solution.inverse * sum * solution.inverse;
    scale(covariance, correlation);
    return covariance;
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

/// Finds the misfit. Flanks that deviate by more than noise make the pose less certain than the noise alone: by the
/// ratio of their chi squared to what noise gives (R. T. Birge, The calculation of errors by the method of least squares,
/// 1932), where it is certainly above 1.
void judge(const FlankPoints& points, const Pose& pose, double correlation, ObjectFit& fit) {
    const Tangent tangent(pose);
    FlankDeviation deviations[kFlankCount];
    points.forEach([&](const ReadPoint& p, std::size_t flank, double distance) {
        deviations[flank].add(p.x, distance * tangent.perY(points.plane(flank)));
    });
    constexpr double kFewest = 5.0;
    constexpr double kFreedom = 2.0 * kFlankCount - static_cast<double>(Pose::kCount);
    const double limit = 1.0 + 4.0 * std::sqrt(2.0 / kFreedom); // four standard deviations
    double chiSquared = 0.0;
    fit.hasAllFlanks = true;
    for (const FlankDeviation& deviation : deviations) {
        chiSquared += deviation.chiSquared();
        fit.misfit = std::max(fit.misfit, deviation.beyondNoise());
        fit.hasAllFlanks = fit.hasAllFlanks && deviation.n >= kFewest; // else the misfit is NaN
    }
    const double ratio = chiSquared / kFreedom / correlation;
    scale(fit.covariance, ratio > limit ? ratio : 1.0);
}

std::optional<ObjectFit> fitPose(const std::vector<ReadPoint>& points, const CalibrationObject& object,
                                 const Pose& start, double slopeFactor) {
    constexpr int kRounds = 40;
    constexpr double kSmall = 1e-3; // standard deviations
    constexpr double kAlmost = 0.3; // a point more or less among the outliers moves the values by about so much
    FlankPoints onFlanks(points, object, slopeFactor);
    Pose pose = start;
    double largest = 0.0;
    for (int round = 0; round < kRounds; ++round) {
        onFlanks.look(pose);
        const auto solution = solve(onFlanks, pose);
        if (!solution) {
            return std::nullopt;
        }
        largest = 0.0;
        for (std::size_t i = 0; i < Pose::kCount; ++i) {
            pose.values[i] += solution->step[i];
            const double variance = std::max(solution->variance, kResolution * kResolution);
            const double deviation = std::sqrt(variance * solution->inverse[i][i]);
            largest = std::max(largest, std::abs(solution->step[i]) / deviation);
        }
        if (!(largest > kSmall)) {
            break;
        }
    }
    onFlanks.look(pose);
    const auto solution = solve(onFlanks, pose);
    if (!solution || largest > kAlmost) {
        return std::nullopt;
    }
    ObjectFit fit;
    fit.pose = pose;
    const double correlation = correlationFactor(onFlanks);
    fit.covariance = covarianceOf(onFlanks, pose, *solution, correlation);
    fit.noise = std::sqrt(solution->variance);
    fit.areOutliers = onFlanks.areOutliers();
    judge(onFlanks, pose, correlation, fit);
    return fit;
}

} // namespace

Vec3 ObjectPose::alongX() const {
    const double sinA = std::sin(values[kAlpha]);
    const double sinB = std::sin(values[kBeta]);
    const double cosB = std::cos(values[kBeta]);
    const double sinC = std::sin(values[kGamma]);
    const double cosC = std::cos(values[kGamma]);
    return {sinA * cosB * cosC + sinB * sinC, sinA * sinB * cosC - sinC * cosB, std::cos(values[kAlpha]) * cosC};
}

Vec3 ObjectPose::alongY() const {
    const double cosA = std::cos(values[kAlpha]);
    return {cosA * std::cos(values[kBeta]), cosA * std::sin(values[kBeta]), -std::sin(values[kAlpha])};
}

Vec3 ObjectPose::at(const ReadPoint& point) const {
    const Vec3 u = alongX();
    const Vec3 v = alongY();
    return {values[kX] + point.x * u[0] + point.y * v[0], values[kY] + point.x * u[1] + point.y * v[1],
            values[kZ] + point.x * u[2] + point.y * v[2]};
}

std::optional<ObjectPose> poseFromLines(const FlankLines& lines, const CalibrationObject& object) {
    const CrossSection s = crossSection(lines, object);
    const PartsAlongX onX = partsAlongX(s);
    const FlankLine& before = lines[2 * kObliqueRidge];
    const FlankLine& behind = lines[2 * kObliqueRidge + 1];
    const double crestX = (before.intercept - behind.intercept) / (behind.slope - before.slope);
    const double crestY = before.intercept + before.slope * crestX;
    const double crestZ = s.onX[1] * crestX + s.onY[1] * crestY + s.offset[1];
    // Mirrored in X the sensor sees the straight flanks alike; the oblique ones decide.
    const auto poseWith = [&](double side) {
        const double x = (crestZ - ridgesOf(object)[kObliqueRidge + 1].crest) / object.obliqueness -
                         side * (onX.ofX * crestX + onX.ofY * crestY);
        return poseFrom({side * onX.ofX, s.onX[0], s.onX[1]}, {side * onX.ofY, s.onY[0], s.onY[1]},
                        {x, s.offset[0], s.offset[1]});
    };
    const auto slopeError = [&](const Pose& pose) {
        double error = 0.0;
        for (const std::size_t flank : {2 * kObliqueRidge, 2 * kObliqueRidge + 1}) {
            const FlankPlane plane = planeOf(object, flank, 1.0);
            const Vec3 u = pose.alongX();
            const Vec3 v = pose.alongY();
            const double slope =
                -(u[1] + plane.onX * u[0] + plane.onZ * u[2]) / (v[1] + plane.onX * v[0] + plane.onZ * v[2]);
            error += std::abs(slope - lines[flank].slope);
        }
        return error;
    };
    const Pose one = poseWith(1.0);
    const Pose other = poseWith(-1.0);
    const Pose best = slopeError(other) < slopeError(one) ? other : one;
    const bool isFinite =
        std::all_of(best.values.begin(), best.values.end(), [](double v) { return std::isfinite(v); });
    return isFinite ? std::optional(best) : std::nullopt;
}

std::optional<ObjectFit> fitObjectPose(const std::vector<ReadPoint>& points, const CalibrationObject& object,
                                       const ObjectPose& start) {
    // The oblique ridge may have the slope of the others along Z or across the ridge.
    std::optional<ObjectFit> best;
    for (const double factor : {1.0, std::hypot(1.0, object.obliqueness)}) {
        auto fit = fitPose(points, object, start, factor);
        if (fit && (!best || fit->noise < best->noise)) {
            best = std::move(fit);
        }
    }
    return best;
}

} // namespace KxInspect::detail
