// What the caller may say of a pass.
#pragma once

#include "inspect/base/paths.h"

#include <KxInspect/PassIdentity.h>

namespace KxInspect::detail {

inline constexpr float kMostSpeed = 1000.0f; // km/h

/// Throws an Error (BadArgument) for labels that a result may not hold.
void checkLabels(const PassLabels& labels);

} // namespace KxInspect::detail
