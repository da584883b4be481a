// Simulated passes measured with the settings of their simulation, for the tables of roundness.
#pragma once

#include "simulator/parameters.h"

#include <KxInspect/PassResult.h>

#include <string>
#include <vector>

/// The parameters of a pass of one car.
/// @param options as of kxmath simulate, numbers alone: "--noise 0.1 --speed 30"
kxsim::Parameters carWith(const std::string& options, std::uint64_t seed);

/// The pass as measured, treads judged.
KxInspect::PassResult measured(const kxsim::Parameters& parameters);

/// A wheel of a pair; null where its side has none.
const KxInspect::PassWheel* wheelOf(const KxInspect::PassResult& pass, int pair, int side);

/// What was said of wheels.
struct Tally {
    int wheels = 0;
    int out = 0; ///< of round
    int defective = 0;
    int notCompared = 0;
    int treadsNotJudged = 0;
    float farthest = 0.0f; ///< off the circle, mm
    float limit = 0.0f; ///< the largest, mm

    void add(const KxInspect::PassWheel& wheel);
    void add(const KxInspect::PassResult& pass);
    void add(const Tally& other);
};
