// A profile sensor looking at a passing train.
#pragma once

#include "simulator/parameters.h"
#include "simulator/pose.h"
#include "simulator/train.h"

#include <KxMath/KxProfile.h>

#include <cstdint>
#include <vector>

namespace kxsim {

/// The content of one profile.
struct View {
    bool hasTrain = false; ///< part of the train is in view
    int pair = 0; ///< the wheel pair of which the profile shows a wheel before the level line, from 1; 0 for none
};

class Sensor {
public:
    /// @param parameters,train must outlive the sensor
    Sensor(const Parameters& parameters, const Train& train, int sensor);

    /// True when part of the train is within `margin` of the sensor's range along the track.
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
        const WheelPair* axle; ///< of the wheel
        const Box* box;
    };

    /// The ray of one point.
    struct Direction {
        double along; ///< part of x, of a unit vector
        double away; ///< part of y
        Vec3 inTrack;
        double range; ///< distance up to which the sensor measures
        double staticHit; ///< distance of the nearest object beside the track, at most `range`
        bool isHidden = false; ///< by dirt on the window
    };

    struct Hit {
        double distance;
        const Target* target; ///< null for objects beside the track and without a hit
    };

    void addDirections();
    void hideBehindDirt();
    void addTargets(const Train& train);
    bool isUnseen(int pair) const;
    std::vector<const Target*> targetsInReach(double trainX) const;
    static double axleOf(const Target& target, double trainX); ///< place of the axle of a wheel along the track
    double dirtBefore(const Hit& hit, const Direction& direction, double trainX) const;
    static double hitTarget(const Target& target, const Ray& ray, double trainX, double end);
    Hit cast(const Direction& direction, const std::vector<const Target*>& inReach, double trainX) const;
    bool isHiddenFromCamera(const Vec3& point, const std::vector<const Target*>& inReach, double trainX) const;

    const Parameters& parameters_;
    const int sensor_;
    const int side_; ///< 1 for a sensor that sees the left wheels, else -1
    const Pose pose_;
    const SensorLine level_;
    const Vec3 camera_;
    double reachFrom_; ///< along the track
    double reachTo_;
    std::vector<Target> targets_;
    std::vector<TrackBody> surroundings_;
    std::vector<Direction> directions_;
};

} // namespace kxsim
