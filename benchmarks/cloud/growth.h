// How clouds grow: point by point, and by scanned profiles that are clouds themselves.
#pragma once

#include "cloud/jobs.h"

namespace kxbench {

/// Just more than what a list of twice the room is taken for: the worst moment for memory.
constexpr int kGrownSizes[] = {88000, 700000};

constexpr const char* kGrowByPoints = "growing by points";
constexpr const char* kGrowByClouds = "growing by clouds";
constexpr int kPieces = 100;

} // namespace kxbench
