// The identity of a pass: what was said of it, and with which values it is measured.
#pragma once

#include <KxInspect/Train.h>

namespace KxInspect::detail {

PassIdentity identityOf(const StationSettings& settings, const PassOptions& options);

} // namespace KxInspect::detail
