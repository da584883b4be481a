// A profile sensor looking at a passing train.
#include "simulator/sensor.h"

#include "simulator/calibration.h"
#include "simulator/disturbance.h"
#include "simulator/random.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kxsim {

namespace {

/// The cover of a conductor rail beyond the track, seen by part of the fan.
TrackBody makeConductorCover(double backToBack, int side) {
    const double inner = backToBack / 2.0 + 270.0;
    return {{0.0, side * (inner + 150.0), 130.0}, {0.0, side * inner, 130.0}, {0.0, side * inner, 190.0}};
}

/// The ray as the wheels of a wheelset see it: their axle stands straight across.
Ray turnedBack(const Ray& ray, const WheelPair& axle, double axleX) {
    if (axle.yaw == 0.0) {
        return ray;
    }
    const double sine = std::sin(axle.yaw);
    const double cosine = std::cos(axle.yaw);
    const auto turned = [&](const Vec3& v) { return Vec3{cosine * v.x + sine * v.y, cosine * v.y - sine * v.x, v.z}; };
    const Vec3 middle = {axleX, axle.lateralShift, 0.0};
    return {middle + turned(ray.origin - middle), turned(ray.direction)};
}

} // namespace

Sensor::Sensor(const Parameters& p, const Train& train, int sensor)
    : parameters_(p), sensor_(sensor), side_(sideOf(p, sensor)), pose_(makePose(p, sensor)),
      level_(calibrate(p, sensor).level), camera_(pose_.origin + p.baseline * cross(pose_.v(), pose_.u())),
      reachFrom_(std::min(pose_.origin.x, camera_.x)), reachTo_(std::max(pose_.origin.x, camera_.x)) {
    if (p.hasRails) {
        surroundings_.push_back(makeRailHead(p.gauge, side_));
    }
    if (p.hasBackground) {
        surroundings_.push_back(makeConductorCover(p.backToBack, side_));
    }
    addDirections();
    hideBehindDirt();
    addTargets(train);
}

void Sensor::addDirections() {
    const Parameters& p = parameters_;
    const double halfAngle = p.halfAngle * std::numbers::pi / 180.0;
    for (int i = 0; i < p.points; ++i) {
        const double share = 2.0 * i / (p.points - 1) - 1.0; // -1 to 1
        const double angle = p.hasEqualAngles ? share * halfAngle : std::atan(share * std::tan(halfAngle));
        Direction d;
        d.along = std::sin(angle);
        d.away = std::cos(angle);
        d.inTrack = d.along * pose_.u() + d.away * pose_.v();
        d.range = p.maxRange / d.away;
        if (d.along != 0.0) {
            d.range = std::min(d.range, p.maxLine / std::abs(d.along));
        }
        d.staticHit = d.range;
        for (const TrackBody& body : surroundings_) {
            d.staticHit = hitTrackBody(body, {pose_.origin, d.inTrack}, d.staticHit);
        }
        const double endX = pose_.origin.x + d.range * d.inTrack.x;
        reachFrom_ = std::min(reachFrom_, endX);
        reachTo_ = std::max(reachTo_, endX);
        directions_.push_back(d);
    }
}

void Sensor::hideBehindDirt() {
    constexpr std::uint64_t kStream = 7;
    constexpr double kNarrowest = 0.005; // of the fan
    constexpr double kWidest = 0.03;
    Random random(
        {parameters_.seed, kStream, static_cast<std::uint64_t>(sensor_), static_cast<std::uint64_t>(parameters_.pass)});
    const auto count = static_cast<double>(directions_.size());
    const auto wanted = std::llround(parameters_.windowDirt * count);
    for (long long hidden = 0; hidden < wanted;) {
        const double middle = random.uniform();
        const double half = random.uniform(kNarrowest, kWidest) / 2.0;
        const auto from = static_cast<std::size_t>(std::max(0.0, (middle - half) * count));
        const auto to = static_cast<std::size_t>(std::min(count, (middle + half) * count));
        for (std::size_t i = from; i < to && hidden < wanted; ++i) {
            hidden += directions_[i].isHidden ? 0 : 1;
            directions_[i].isHidden = true;
        }
    }
}

bool Sensor::isUnseen(int pair) const {
    const std::vector<Unseen>& unseen = parameters_.unseen;
    return std::any_of(unseen.begin(), unseen.end(),
                       [&](const Unseen& u) { return u.pair == pair && u.sensor == sensor_; });
}

void Sensor::addTargets(const Train& train) {
    constexpr double kMaxBuildUp = 10.0; // mm
    int number = 0;
    for (const WheelPair& pair : train.pairs) {
        ++number;
        if (isUnseen(number)) {
            continue;
        }
        const Wheel& wheel = pair.wheels[side_ > 0 ? 0 : 1];
        const double turned = std::abs(std::sin(pair.yaw)) * (pair.backToBack / 2.0 + kRimWidth);
        const double reach = wheel.maxRadius() + kMaxBuildUp + turned;
        targets_.push_back({-pair.behind - reach, -pair.behind + reach, number, &wheel, &pair, nullptr});
    }
    for (const Equipment& equipment : train.equipment) {
        if (side_ * (equipment.box.low.y + equipment.box.high.y) > 0.0) {
            targets_.push_back({equipment.box.low.x, equipment.box.high.x, 0, nullptr, nullptr, &equipment.box});
        }
    }
}

bool Sensor::isNearTrain(double trainX, double margin) const {
    return std::any_of(targets_.begin(), targets_.end(), [&](const Target& t) {
        return t.from + trainX <= reachTo_ + margin && t.to + trainX >= reachFrom_ - margin;
    });
}

std::vector<const Sensor::Target*> Sensor::targetsInReach(double trainX) const {
    std::vector<const Target*> inReach;
    for (const Target& target : targets_) {
        if (target.from + trainX <= reachTo_ && target.to + trainX >= reachFrom_) {
            inReach.push_back(&target);
        }
    }
    return inReach;
}

double Sensor::axleOf(const Target& target, double trainX) {
    return trainX + (target.from + target.to) / 2.0;
}

double Sensor::hitTarget(const Target& target, const Ray& ray, double trainX, double end) {
    if (target.wheel != nullptr) {
        const double axleX = axleOf(target, trainX);
        return target.wheel->hit(turnedBack(ray, *target.axle, axleX), axleX, end);
    }
    Ray inTrain = ray;
    inTrain.origin.x -= trainX;
    return hitBox(*target.box, inTrain, end);
}

Sensor::Hit Sensor::cast(const Direction& d, const std::vector<const Target*>& inReach, double trainX) const {
    Hit nearest = {d.staticHit, nullptr};
    for (const Target* target : inReach) {
        const double distance = hitTarget(*target, {pose_.origin, d.inTrack}, trainX, nearest.distance);
        if (distance < nearest.distance) {
            nearest = {distance, target};
        }
    }
    return nearest;
}

double Sensor::dirtBefore(const Hit& hit, const Direction& d, double trainX) const {
    if (hit.target == nullptr || hit.target->wheel == nullptr) {
        return 0.0;
    }
    const double axleX = axleOf(*hit.target, trainX);
    const Ray ray = turnedBack({pose_.origin, d.inTrack}, *hit.target->axle, axleX);
    return hit.target->wheel->dirtBefore(ray, axleX, hit.distance);
}

bool Sensor::isHiddenFromCamera(const Vec3& point, const std::vector<const Target*>& inReach, double trainX) const {
    constexpr double kBeforePoint = 1.0 - 1e-6;
    const Ray sight = {camera_, point - camera_};
    const auto hides = [&](const Target* t) { return hitTarget(*t, sight, trainX, kBeforePoint) < kBeforePoint; };
    return std::any_of(inReach.begin(), inReach.end(), hides);
}

View Sensor::measure(double trainX, std::uint64_t number, KxMath::KxProfile& profile) const {
    const Parameters& p = parameters_;
    const std::vector<const Target*> inReach = targetsInReach(trainX);
    Disturbance disturbance(p, sensor_, number);
    profile.points.clear();
    View view;
    for (const Direction& d : directions_) {
        const Hit hit = cast(d, inReach, trainX);
        const double dirt = dirtBefore(hit, d, trainX);
        double x = (hit.distance - dirt) * d.along;
        double y = (hit.distance - dirt) * d.away;
        const bool isBeforeLevel = y < level_.at(x);
        const bool isBlank = hit.distance >= d.range || y < p.minRange;
        const bool isPresent = disturbance.apply(x, y);
        const Vec3 point = pose_.origin + hit.distance * d.inTrack;
        if (isBlank || d.isHidden || (p.baseline > 0.0 && isHiddenFromCamera(point, inReach, trainX))) {
            continue;
        }
        view.hasTrain = view.hasTrain || hit.target != nullptr;
        if (hit.target != nullptr && isBeforeLevel) {
            view.pair = std::max(view.pair, hit.target->pair);
        }
        if (isPresent) {
            profile.points.append(KxMath::KxPointXY(static_cast<float>(x), static_cast<float>(y)));
        }
    }
    return view;
}

} // namespace kxsim
