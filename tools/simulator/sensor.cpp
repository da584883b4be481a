// A profile sensor looking at a passing train.
#include "simulator/sensor.h"

#include "simulator/random.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kxsim {

namespace {

constexpr std::uint64_t kNoiseStream = 3;
constexpr double kDegree = std::numbers::pi / 180.0;

double sideOf(int sensor) {
    return sensor == 1 ? 1.0 : -1.0;
}

double quantize(double value, double step) {
    return step > 0.0 ? step * std::round(value / step) : value;
}

/// Beyond the track a cover of a conductor rail, seen by part of the fan.
TrackBody makeConductorCover(double backToBack, double side) {
    const double inner = backToBack / 2.0 + 270.0;
    return {{0.0, side * (inner + 150.0), 130.0}, {0.0, side * inner, 130.0}, {0.0, side * inner, 230.0}};
}

/// Takes the noise, the steps and the faults of a sensor from a stream of random numbers. Each point takes its share of
/// the stream whatever becomes of it, so that a change in one place does not change all points behind it.
class Disturbance {
public:
    Disturbance(const Parameters& p, int sensor, std::uint64_t profile)
        : parameters(p), random({p.seed, kNoiseStream, static_cast<std::uint64_t>(sensor), profile}) {}

    /// @return false when the point is missing
    bool apply(double& x, double& y) {
        const Parameters& p = parameters;
        const bool isMissing = random.chance(p.missing);
        const bool isSpike = random.chance(p.spikes);
        y += p.noise * random.normal();
        if (isSpike) {
            const double height = p.spikeSize * random.uniform(0.3, 1.0);
            y += random.chance(0.5) ? height : -height;
        }
        x = quantize(x, p.quantum);
        y = quantize(y, p.quantum);
        return !isMissing;
    }

private:
    const Parameters& parameters;
    Random random;
};

} // namespace

Pose makePose(const Parameters& p, int sensor) {
    Pose pose{{0.0, 0.0, 0.0}, p.alpha, p.beta, p.gamma};
    // The axis of the fan meets the nominal back face at the aim height above the sensors' line across the track.
    const Vec3 target = {0.0, p.backToBack / 2.0, p.aimHeight};
    pose.origin = target - p.standOff * pose.v();
    pose.origin.x = 0.0;
    return sensor == 1 ? pose : pose.mirrored();
}

Sensor::Sensor(const Parameters& p, const Train& train, int sensor)
    : parameters(p), sensor(sensor), pose(makePose(p, sensor)),
      camera(pose.origin + p.baseline * cross(pose.v(), pose.u())) {
    const int side = sensor == 1 ? 1 : -1;
    if (p.hasRails) {
        surroundings.push_back(makeRailHead(p.gauge, side));
    }
    if (p.hasBackground) {
        surroundings.push_back(makeConductorCover(p.backToBack, sideOf(sensor)));
    }
    addDirections();
    addTargets(train);
}

void Sensor::addDirections() {
    const Parameters& p = parameters;
    const Vec3 u = pose.u();
    const Vec3 v = pose.v();
    reachFrom = std::min(pose.origin.x, camera.x);
    reachTo = std::max(pose.origin.x, camera.x);
    for (int i = 0; i < p.points; ++i) {
        const double share = 2.0 * i / (p.points - 1) - 1.0; // -1 to 1
        const double angle =
            p.hasEqualAngles ? share * p.halfAngle * kDegree : std::atan(share * std::tan(p.halfAngle * kDegree));
        Direction d;
        d.along = std::sin(angle);
        d.away = std::cos(angle);
        d.inTrack = d.along * u + d.away * v;
        d.range = p.maxRange / d.away;
        if (d.along != 0.0) {
            d.range = std::min(d.range, p.maxLine / std::abs(d.along));
        }
        d.staticHit = d.range;
        for (const TrackBody& body : surroundings) {
            d.staticHit = hitTrackBody(body, {pose.origin, d.inTrack}, d.staticHit);
        }
        const double endX = pose.origin.x + d.range * d.inTrack.x;
        reachFrom = std::min(reachFrom, endX);
        reachTo = std::max(reachTo, endX);
        directions.push_back(d);
    }
}

void Sensor::addTargets(const Train& train) {
    const std::size_t wheelIndex = static_cast<std::size_t>(sensor - 1);
    int number = 0;
    for (const WheelPair& pair : train.pairs) {
        const Wheel& wheel = pair.wheels[wheelIndex];
        const double radius = wheel.maxRadius() + 10.0; // room for build-ups
        targets.push_back({-pair.behind - radius, -pair.behind + radius, ++number, &wheel, nullptr});
    }
    for (const Equipment& equipment : train.equipment) {
        if (sideOf(sensor) * (equipment.box.low.y + equipment.box.high.y) > 0.0) {
            targets.push_back({equipment.box.low.x, equipment.box.high.x, 0, nullptr, &equipment.box});
        }
    }
}

bool Sensor::isNearTrain(double trainX, double margin) const {
    return std::any_of(targets.begin(), targets.end(), [&](const Target& t) {
        return t.from + trainX <= reachTo + margin && t.to + trainX >= reachFrom - margin;
    });
}

double Sensor::hitTarget(const Target& target, const Ray& ray, double trainX, double end) const {
    if (target.wheel != nullptr) {
        const double axleX = trainX + (target.from + target.to) / 2.0;
        return target.wheel->hit(ray, axleX, end);
    }
    Ray inTrain = ray;
    inTrain.origin.x -= trainX;
    return hitBox(*target.box, inTrain, end);
}

bool Sensor::isHiddenFromCamera(const Vec3& point, const std::vector<const Target*>& inReach, double trainX) const {
    constexpr double kBeforePoint = 1.0 - 1e-6;
    const Ray sight = {camera, point - camera};
    const auto hides = [&](const Target* t) { return hitTarget(*t, sight, trainX, kBeforePoint) < kBeforePoint; };
    return std::any_of(inReach.begin(), inReach.end(), hides);
}

View Sensor::measure(double trainX, std::uint64_t number, KxMath::KxProfile& profile) const {
    const Parameters& p = parameters;
    std::vector<const Target*> inReach;
    for (const Target& target : targets) {
        if (target.from + trainX <= reachTo && target.to + trainX >= reachFrom) {
            inReach.push_back(&target);
        }
    }
    profile.points.clear();
    View view;
    Disturbance disturbance(p, sensor, number);
    for (const Direction& d : directions) {
        const Ray ray = {pose.origin, d.inTrack};
        double t = d.staticHit;
        const Target* met = nullptr;
        for (const Target* target : inReach) {
            const double hit = hitTarget(*target, ray, trainX, t);
            if (hit < t) {
                t = hit;
                met = target;
            }
        }
        double x = t * d.along;
        double y = t * d.away;
        const bool isPresent = disturbance.apply(x, y);
        const bool isBlank = t >= d.range || t * d.away < p.minRange;
        if (isBlank || (p.baseline > 0.0 && isHiddenFromCamera(ray.at(t), inReach, trainX))) {
            continue;
        }
        if (met != nullptr) {
            view.hasTrain = true;
            view.pair = std::max(view.pair, met->pair);
        }
        if (isPresent) {
            profile.points.append(KxMath::KxPointXY(static_cast<float>(x), static_cast<float>(y)));
        }
    }
    return view;
}

} // namespace kxsim
