// The train of a simulated pass.
#include "simulator/train.h"

#include "simulator/random.h"

#include <algorithm>
#include <numbers>

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

WheelPair makePair(const Parameters& p, int number, double behind) {
    Random random({p.seed, WheelStream, static_cast<std::uint64_t>(number)});
    WheelPair pair{};
    pair.axle = (number - 1) % p.axles + 1;
    pair.bogie = (number - 1) / p.axles % p.bogies + 1;
    pair.car = (number - 1) / p.axles / p.bogies + 1;
    pair.behind = behind;
    pair.backToBack = p.backToBack + p.distanceSpread * random.boundedNormal();
    const double shift = random.boundedNormal();
    pair.lateralShift = p.lateralSpread * (p.pass == 0 ? shift : ofPass(p, PassStream, number).boundedNormal());
    // In a sequence of its own: the same seed gives the same train, straight or askew.
    pair.yaw = (p.yaw + p.yawSpread * ofPass(p, YawStream, number).boundedNormal()) / 1000.0;
    const double diameter = p.diameter - p.wear * random.uniform();
    const double rimInnerRadius = p.diameter / 2.0 - p.rimThickness;
    Random hollows({p.seed, TreadStream, static_cast<std::uint64_t>(number)});
    pair.wheels.reserve(2);
    for (const int side : {1, -1}) {
        // The wheels of a pair are reprofiled together and then wear by a little less than the same.
        const double own = std::min(p.wear, 0.3) * random.uniform();
        const WheelShape shape = {diameter - own, rimInnerRadius, p.flangeWear * random.uniform(),
                                  p.treadWear * hollows.uniform()};
        pair.wheels.emplace_back(shape, side, pair.backToBack / 2.0 + side * pair.lateralShift);
    }
    addDefects(p, number, pair);
    addDirt(p, number, pair);
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
    for (const WheelPair& pair : pairs) {
        const double axle = -pair.behind;
        maker.add("axle box", axle, 300.0, 190.0, 330.0, radius - 160.0, radius + 160.0);
        maker.add("brake block", axle - radius - 70.0, 60.0, 45.0, 130.0, 90.0, 520.0);
        if (pair.axle != 1) {
            continue;
        }
        const bool isFirst = pair.car == 1 && pair.bogie == 1;
        if (isFirst) {
            maker.add("rail guard", axle + radius + 220.0, 25.0, 45.0, 110.0, 45.0, 400.0);
        }
        // Nearer than the level line, but passed within a few profiles.
        const double bogieLength = (p.axles - 1) * p.axleSpacing;
        maker.add("cable bracket", axle - bogieLength - radius - 250.0, 30.0, -6.0, 5.0, -5.0, 90.0);
        maker.add("equipment case", axle - bogieLength - radius - 450.0, 250.0, 60.0, 500.0, 110.0, 600.0);
    }
    return maker.list;
}

} // namespace

Train makeTrain(const Parameters& p) {
    Train train;
    int number = 0;
    for (int car = 0; car < p.cars; ++car) {
        for (int bogie = 0; bogie < p.bogies; ++bogie) {
            for (int axle = 0; axle < p.axles; ++axle) {
                const double behind = car * p.carLength + bogie * p.bogieSpacing + axle * p.axleSpacing;
                train.pairs.push_back(makePair(p, ++number, behind));
            }
        }
    }
    if (p.hasObjects) {
        train.equipment = makeEquipment(p, train.pairs);
    }
    return train;
}

} // namespace kxsim
