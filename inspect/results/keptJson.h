// What is kept of a pass in its JSON form.
#pragma once

#include "inspect/results/json.h"

#include <KxInspect/PassKept.h>

namespace KxInspect::detail {

QJsonObject keptObject(const PassKept& kept);

/// Reads what keptObject() wrote. Throws an Error for anything else.
PassKept readKept(const JsonValue& value);

} // namespace KxInspect::detail
