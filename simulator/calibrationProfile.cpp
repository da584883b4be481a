// The profile that a sensor takes of the calibration object.
#include "simulator/calibrationProfile.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

namespace kxsim {

namespace {

/// Where a ray hits, in the object's own coordinates.
struct Hit {
    double t = std::numeric_limits<double>::infinity();
    int ridge = -1;
    double fromCrest = 0.0; ///< z behind the crest
};

class Surface {
public:
    explicit Surface(const CalibrationObject& object) : slope_(object.slope), ridges_(KxInspect::ridgesOf(object)) {}

    /// The first hit of a ray that comes from before the object.
    Hit hit(const Ray& ray) const {
        Hit first;
        for (std::size_t i = 0; i < ridges_.size(); ++i) {
            const Hit candidate = hitRidge(static_cast<int>(i), ray);
            if (candidate.t < first.t) {
                first = candidate;
            }
        }
        const bool isBeyondEnd =
            (first.ridge == 0 && first.fromCrest < 0) || (first.ridge == kLast && first.fromCrest > 0);
        return isBeyondEnd ? Hit() : first;
    }

    /// The width of a flank at x, in z: from the crest to the valley before (side -1) or behind (side 1) it.
    double flankWidth(int ridge, int side, double x) const {
        return std::abs(crest(ridge + side, x) - crest(ridge, x)) / 2.0;
    }

    static constexpr int kLast = static_cast<int>(KxInspect::kRidgeCount) - 1;

private:
    double crest(int ridge, double x) const { return ridges_[static_cast<std::size_t>(ridge)].crestAt(x); }

    /// A ridge is where depth exceeds slope * |z - crest|: the part of the ray that lies behind both flanks.
    Hit hitRidge(int ridge, const Ray& ray) const {
        const double atStart = ray.origin.z - crest(ridge, ray.origin.x);
        const double perT = ray.direction.z - ridges_[static_cast<std::size_t>(ridge)].obliqueness * ray.direction.x;
        double enter = 0.0;
        double leave = std::numeric_limits<double>::infinity();
        for (const double side : {-1.0, 1.0}) {
            // Behind the flank: depth - side * slope * fromCrest >= 0.
            const double start = ray.origin.y - side * slope_ * atStart;
            const double change = ray.direction.y - side * slope_ * perT;
            if (change > 0.0) {
                enter = std::max(enter, -start / change);
            } else if (change < 0.0) {
                leave = std::min(leave, -start / change);
            } else if (start < 0.0) {
                return {};
            }
        }
        if (!(enter < leave)) {
            return {};
        }
        return {enter, ridge, atStart + enter * perT};
    }

    double slope_;
    std::array<KxInspect::CalibrationRidge, KxInspect::kRidgeCount> ridges_;
};

/// Records how much of each flank is seen.
class Coverage {
public:
    explicit Coverage(const Surface& surface) : surface_(surface) {}

    void add(const Hit& hit, double x) {
        if (hit.ridge < 1 || hit.ridge >= Surface::kLast) {
            return; // a half ridge
        }
        const int side = hit.fromCrest < 0 ? -1 : 1;
        Seen& seen = seen_[index(hit.ridge, side)];
        const double part = std::abs(hit.fromCrest) / surface_.flankWidth(hit.ridge, side, x);
        seen.from = std::min(seen.from, part);
        seen.to = std::max(seen.to, part);
        ++seen.points;
    }

    bool isComplete() const {
        for (int ridge = 1; ridge < Surface::kLast; ++ridge) {
            for (const int side : {-1, 1}) {
                const Seen& seen = seen_[index(ridge, side)];
                if (seen.points < 10 || seen.to - seen.from < 0.8) {
                    return false;
                }
            }
        }
        return true;
    }

private:
    struct Seen {
        double from = 1.0;
        double to = 0.0;
        int points = 0;
    };

    static std::size_t index(int ridge, int side) {
        return std::size_t{2} * static_cast<std::size_t>(ridge) + (side > 0 ? 1 : 0);
    }

    const Surface& surface_;
    std::array<Seen, std::size_t{2} * (Surface::kLast + 1)> seen_{};
};

} // namespace

Pose nominalCalibrationPose(int placement, const CalibrationObject& object) {
    constexpr double kStandOff = 250.0;
    const KxInspect::Placement seen = KxInspect::placementOf(placement);
    Pose pose;
    pose.beta = 45.0 + (seen.isTurned ? 180.0 : 0.0);
    pose.gamma = seen.isMirrored ? -27.0 : 27.0;
    const Vec3 middle{0.0, object.crestY, (seen.isMirrored ? -1.0 : 1.0) * object.pitch};
    pose.origin = middle - kStandOff * pose.v();
    return pose;
}

Pose offsetPose(const Pose& nominal, int placement, double alpha, double beta, double gamma, const Vec3& offset) {
    const double mirror = KxInspect::placementOf(placement).isMirrored ? -1.0 : 1.0;
    Pose pose = nominal;
    pose.alpha += mirror * alpha;
    pose.beta += beta;
    pose.gamma += mirror * gamma;
    pose.origin = nominal.origin + offset;
    return pose;
}

bool takeCalibrationProfile(const CalibrationObject& object, int placement, const Pose& pose,
                            const CalibrationSensor& sensor, Random& random, KxMath::KxProfile& profile,
                            std::vector<Vec3>* hits) {
    const double facing = pose.v().y < 0.0 ? -1.0 : 1.0;
    const double up = KxInspect::placementOf(placement).isMirrored ? -1.0 : 1.0;
    const auto toObject = [&](const Vec3& v, double crestY) { return Vec3{v.x, facing * (v.y - crestY), up * v.z}; };
    const Surface surface(object);
    Coverage coverage(surface);
    for (int i = 0; i < sensor.points; ++i) {
        const double part = sensor.points > 1 ? static_cast<double>(i) / (sensor.points - 1) - 0.5 : 0.0;
        const double angle = part * sensor.fan * std::numbers::pi / 180.0;
        const double along = std::sin(angle);
        const double away = std::cos(angle);
        const Ray ray{toObject(pose.origin, object.crestY), toObject(along * pose.u() + away * pose.v(), 0.0)};
        const Hit hit = surface.hit(ray);
        if (hit.ridge < 0 || hit.t > sensor.range) {
            continue;
        }
        coverage.add(hit, ray.at(hit.t).x);
        double py = away * hit.t + sensor.noise * random.normal();
        if (sensor.spikes > 0.0 && random.chance(sensor.spikes)) {
            py += (random.chance(0.5) ? 1.0 : -1.0) * sensor.spikeSize * random.uniform(0.3, 1.0);
        }
        profile.points.append(KxMath::KxPointXY(static_cast<float>(along * hit.t), static_cast<float>(py)));
        if (hits != nullptr) {
            hits->push_back(pose.toTrack(along * hit.t, away * hit.t));
        }
    }
    return coverage.isComplete();
}

} // namespace kxsim
