// Verdicts on the values of a pass.
#pragma once

#include <KxInspect/PassResult.h>

namespace KxInspect::detail {

/// Puts all values of a pass that have limits beside them.
PassAssessment assessPass(const PassResult& result, const Limits& limits);

} // namespace KxInspect::detail
