// A measuring station whose truth is known, drawn at random.
#include "trials/tinyStation.h"

#include "simulator/random.h"

#include <cmath>

namespace kxsim {

namespace {

enum Stream : std::uint64_t { StationStream = 101, PassStream = 102 };

/// Few points and records make a pass small; what is not a wheel is left out.
Parameters smallPass() {
    Parameters p;
    p.cars = 1;
    p.points = 160;
    p.rate = 1000.0;
    p.idleProfiles = 3;
    p.levelMargin = 12.0;
    p.hasRails = p.hasBackground = p.hasObjects = false;
    return p;
}

void drawTrain(Random& random, Parameters& p) {
    p.speed = random.uniform(6.0, 20.0);
    p.yaw = random.uniform(-4.0, 4.0);
    p.yawSpread = 1.0;
    p.lateralSpread = random.uniform(0.0, 2.0);
    p.wear = random.uniform(0.0, 40.0);
}

} // namespace

TinyStation drawStation(std::uint64_t seed) {
    Random random({seed, StationStream});
    TinyStation station{smallPass(), random.uniform(0.0, 0.08)};
    Parameters& p = station.parameters;
    p.seed = seed;
    p.alpha = random.uniform(-50.0, -32.0);
    p.standOff = random.uniform(120.0, 200.0);
    p.noise = std::exp(random.uniform(std::log(0.02), std::log(0.25)));
    p.along1 = random.uniform(-60.0, 60.0);
    p.along2 = random.uniform(-60.0, 60.0);
    p.turn1 = random.uniform(-1.5, 1.5);
    p.turn2 = random.uniform(-1.5, 1.5);
    p.baseline = random.uniform(40.0, 80.0);
    drawTrain(random, p);
    return station;
}

Parameters drawPass(const TinyStation& station, std::uint64_t seed) {
    Random random({seed, PassStream});
    Parameters p = station.parameters;
    p.seed = seed;
    p.bogies = p.axles = 1;
    drawTrain(random, p);
    return p;
}

} // namespace kxsim
