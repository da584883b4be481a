// Why a wheel pair has no distance.
#pragma once

#include <KxInspect/PassResult.h>

#include <string>

namespace KxInspect::detail {

/// The reason for a pair that has none, a sentence without its end.
std::string whyNoDistance(const PassResult& result, const WheelPair& pair);

} // namespace KxInspect::detail
