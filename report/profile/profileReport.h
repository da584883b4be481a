// The page of a profile before and after a chain of operations.
#pragma once

#include "report/elements/pageOrigin.h"

#include <KxInspect/ProfileChain.h>

#include <QtCore/QByteArray>

namespace kxreport {

/// Before and after on one plot, with cursors, and what was fitted drawn over them; on two plots where the chain has changed
/// what x and y are. Beside them the values that were found and the steps.
QByteArray profileReport(const KxInspect::ProfileResult& result, const PageOrigin& origin = {});

} // namespace kxreport
