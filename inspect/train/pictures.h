// What pages draw of a wheel pair.
#pragma once

#include "inspect/train/measuredSide.h"

#include <KxInspect/PassResult.h>
#include <KxInspect/Train.h>

#include <vector>

namespace KxInspect::detail {

/// @param number of the pair in `result`, from 1 on
PairPicture pairPicture(const PassResult& result, int number, const std::vector<MeasuredSide>& sides);

/// The pairs whose pictures are wanted, ascending: those of `options`, and those with findings where it asks for them.
std::vector<int> shownPairs(const PassResult& result, const PassOptions& options);

/// The pictures of the sides on which no wheel was found.
std::vector<RawPicture> rawPictures(const PassResult& result, const std::vector<MeasuredSide>& sides);

} // namespace KxInspect::detail
