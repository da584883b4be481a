// What pages draw of a wheel pair.
#pragma once

#include "inspect/train/measuredSide.h"

#include <KxInspect/PassResult.h>

namespace KxInspect::detail {

/// @param number of the pair in `result`, from 1 on
PairPicture pairPicture(const PassResult& result, int number, const std::vector<MeasuredSide>& sides);

/// The pictures of the sides on which no wheel was found.
std::vector<RawPicture> rawPictures(const PassResult& result, const std::vector<MeasuredSide>& sides);

} // namespace KxInspect::detail
