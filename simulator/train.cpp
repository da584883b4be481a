// The train of a simulated pass.
#include "simulator/train.h"

#include "simulator/axles.h"
#include "simulator/random.h"

#include <algorithm>
#include <array>
#include <numbers>
#include <utility>

namespace kxsim {

namespace {

enum Stream : std::uint64_t {
    WheelStream = 1,
    EquipmentStream = 2,
    YawStream = 4,
    PassStream = 5,
    DirtStream = 6,
    TreadStream = 8
};

void addDefects(const Parameters& p, int pairNumber, WheelPair& pair) {
    for (const Defect& defect : p.defects) {
        if (defect.pair != pairNumber) {
            continue;
        }
        constexpr double kBuildUpHalfLength = 40.0; // mm
        Wheel& wheel = pair.wheels[static_cast<std::size_t>(defect.sensor - 1)];
        const double angle = defect.phase / (wheel.shape.diameter / 2.0);
        if (defect.kind == Defect::Kind::Flat) {
            wheel.addFlat({angle, 0.0, defect.size / 2.0}, p.flatShape);
        } else {
            wheel.addBuildUp({angle, defect.size, kBuildUpHalfLength});
        }
    }
}

/// Random numbers for something of a wheel pair that differs from pass to pass.
Random ofPass(const Parameters& p, Stream stream, int pairNumber) {
    const auto number = static_cast<std::uint64_t>(pairNumber);
    return p.pass == 0 ? Random({p.seed, stream, number})
                       : Random({p.seed, stream, number, static_cast<std::uint64_t>(p.pass)});
}

/// Spots where the wheels roll while the sensors see them, over a third of that part of the treads.
void addDirt(const Parameters& p, int pairNumber, WheelPair& pair) {
    constexpr double kHalfLength = 250.0; // mm, of that part
    constexpr double kShare = 1.0 / 3.0;
    constexpr double kMeanArea = std::numbers::pi * 15.0 * 15.0; // mm2
    if (p.treadDirt == 0.0) {
        return;
    }
    Random random = ofPass(p, DirtStream, pairNumber);
    for (Wheel& wheel : pair.wheels) {
        for (double area = kShare * 2.0 * kHalfLength * (kDirtTo - kDirtFrom); area > 0.0; area -= kMeanArea) {
            const double along = random.uniform(-kHalfLength, kHalfLength);
            wheel.addDirt({along / (wheel.shape.diameter / 2.0), random.uniform(kDirtFrom, kDirtTo),
                           random.uniform(5.0, 25.0), p.treadDirt * random.uniform()});
        }
    }
}

/// @param number in the order of passing, from 1
WheelPair makePair(const Parameters& p, int number, const AxlePlace& place) {
    const auto listed = static_cast<std::uint64_t>(place.listed);
    Random random({p.seed, WheelStream, listed});
    WheelPair pair{};
    pair.axle = place.axle;
    pair.bogie = place.bogie;
    pair.car = place.car;
    pair.behind = place.behind;
    pair.backToBack = p.backToBack + p.distanceSpread * random.boundedNormal();
    const double shift = random.boundedNormal();
    pair.lateralShift = p.lateralSpread * (p.pass == 0 ? shift : ofPass(p, PassStream, place.listed).boundedNormal());
    // In a sequence of its own: the same seed gives the same train, straight or askew.
    pair.yaw = (p.yaw + p.yawSpread * ofPass(p, YawStream, place.listed).boundedNormal()) / 1000.0;
    const double diameter = p.diameter - p.wear * random.uniform();
    const double rimInnerRadius = p.diameter / 2.0 - p.rimThickness;
    Random hollows({p.seed, TreadStream, listed});
    std::array<WheelShape, 2> shapes; // left, right, as listed
    for (WheelShape& shape : shapes) {
        // The wheels of a pair are reprofiled together and then wear by a little less than the same.
        const double own = std::min(p.wear, 0.3) * random.uniform();
        shape = {diameter - own, rimInnerRadius, p.flangeWear * random.uniform(), p.treadWear * hollows.uniform()};
    }
    if (p.isTurned) {
        std::swap(shapes[0], shapes[1]);
    }
    pair.wheels.reserve(2);
    for (const int side : {1, -1}) {
        pair.wheels.emplace_back(shapes[side > 0 ? 0 : 1], side, pair.backToBack / 2.0 + side * pair.lateralShift);
    }
    addDefects(p, number, pair);
    addDirt(p, place.listed, pair);
    return pair;
}

/// Collects boxes on both sides of a train.
class EquipmentMaker {
public:
    explicit EquipmentMaker(const Parameters& p) : parameters(p), random({p.seed, EquipmentStream}) {}

    /// @param ahead distance of the middle before the first axle of the train, negative behind it
    /// @param fromFace,toFace distances from the nominal back face, towards the field side
    void add(const char* kind, double ahead, double length, double fromFace, double toFace, double low, double high) {
        const double face = parameters.backToBack / 2.0;
        const double middle = ahead + random.uniform(-10.0, 10.0);
        const double raise = random.uniform(-5.0, 5.0);
        for (const double side : {1.0, -1.0}) {
            const auto [right, left] = std::minmax({side * (face + fromFace), side * (face + toFace)});
            list.push_back(
                {kind, {{middle - length / 2.0, right, low + raise}, {middle + length / 2.0, left, high + raise}}});
        }
    }

    std::vector<Equipment> list;

private:
    const Parameters& parameters;
    Random random;
};

std::vector<Equipment> makeEquipment(const Parameters& p, const std::vector<WheelPair>& pairs) {
    EquipmentMaker maker(p);
    const double radius = p.diameter / 2.0;
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        const double axle = -pairs[i].behind;
        maker.add("axle box", axle, 300.0, 190.0, 330.0, radius - 160.0, radius + 160.0);
        maker.add("brake block", axle - radius - 70.0, 60.0, 45.0, 130.0, 90.0, 520.0);
        const auto isOfBogie = [&](const WheelPair& pair) {
            return pair.car == pairs[i].car && pair.bogie == pairs[i].bogie;
        };
        if (i > 0 && isOfBogie(pairs[i - 1])) {
            continue;
        }
        if (i == 0) {
            maker.add("rail guard", axle + radius + 220.0, 25.0, 45.0, 110.0, 45.0, 400.0);
        }
        // Nearer than the level line, but passed within a few profiles.
        const auto last = std::find_if(pairs.rbegin(), pairs.rend(), isOfBogie);
        const double bogieLength = last->behind - pairs[i].behind;
        maker.add("cable bracket", axle - bogieLength - radius - 250.0, 30.0, -6.0, 5.0, -5.0, 90.0);
        maker.add("equipment case", axle - bogieLength - radius - 450.0, 250.0, 60.0, 500.0, 110.0, 600.0);
    }
    return maker.list;
}

} // namespace

Train makeTrain(const Parameters& p) {
    Train train;
    int number = 0;
    for (const AxlePlace& place : axlesOf(p)) {
        train.pairs.push_back(makePair(p, ++number, place));
    }
    if (p.hasObjects) {
        train.equipment = makeEquipment(p, train.pairs);
    }
    return train;
}

} // namespace kxsim
