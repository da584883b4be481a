// Values of a pass beside their limits, in its JSON form.
#pragma once

#include "inspect/results/json.h"

#include <KxInspect/PassResult.h>

namespace KxInspect::detail {

/// "ok", "warning", "alarm", "not measured"; null for none.
QJsonValue verdictValue(const std::optional<LimitVerdict>& verdict);

/// Null without limits.
QJsonValue assessmentValue(const PassResult& result);
std::optional<PassAssessment> readAssessment(const JsonValue& value);

} // namespace KxInspect::detail
