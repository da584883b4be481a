// How clouds grow: point by point, and by scanned profiles that are clouds themselves.
#pragma once

#include "cloud/jobs.h"

namespace kxbench {

/// One more than a capacity at which lists grow to twice the size: the worst case for memory.
constexpr int kGrownSizes[] = {88000, 700000};

constexpr const char* kGrowByPoints = "growing by points";
constexpr const char* kGrowByClouds = "growing by clouds";
constexpr int kPieces = 100;

} // namespace kxbench
