// A profile sensor looking at a passing train.
#pragma once

#include "simulator/parameters.h"
#include "simulator/pose.h"
#include "simulator/train.h"

#include <KxMath/KxProfileZ.h>

#include <vector>

namespace kxsim {

/// The pose of a sensor: the first one sees the left wheels, the second one is its mirror image.
Pose makePose(const Parameters& parameters, int sensor);

/// What one profile saw.
struct View {
    bool hasTrain = false; ///< anything of the train
    int pair = 0; ///< the wheel pair of which the profile shows a wheel, from 1; 0 for none
};

class Sensor {
public:
    Sensor(const Parameters& parameters, const Train& train, int sensor);

    /// True when something of the train is within `margin` of what the sensor can see along the track.
    bool isNearTrain(double trainX, double margin) const;

    /// Takes a profile with the first axle at `trainX`; random numbers are those of profile `number`.
    View measure(double trainX, std::uint64_t number, KxMath::KxProfile& profile) const;

private:
    /// A part of the train that the sensor may see, with its extent along the track.
    struct Target {
        double from;
        double to;
        int pair; ///< 0 for equipment
        const Wheel* wheel;
        const Box* box;
    };

    struct Direction {
        double along; ///< part of x, of a unit vector
        double away; ///< part of y
        Vec3 inTrack;
        double range; ///< distance up to which the sensor measures
        double staticHit; ///< distance of what stands beside the track, at most `range`
    };

    void addTargets(const Train& train);
    void addDirections();
    double hitTarget(const Target& target, const Ray& ray, double trainX, double end) const;
    bool isHiddenFromCamera(const Vec3& point, const std::vector<const Target*>& targets, double trainX) const;

    const Parameters& parameters;
    const int sensor;
    const Pose pose;
    const Vec3 camera;
    double reachFrom = 0.0; ///< along the track
    double reachTo = 0.0;
    std::vector<Target> targets;
    std::vector<TrackBody> surroundings;
    std::vector<Direction> directions;
};

} // namespace kxsim
