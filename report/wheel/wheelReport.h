// The report of measured wheels.
#pragma once

#include "report/elements/pageOrigin.h"

#include <KxInspect/Wheel.h>

#include <QtCore/QString>

namespace kxreport {

/// A self-contained HTML page: the table of measures, coloured where there are limits, and a drawing of each wheel with
/// its measures.
QString wheelReport(const KxInspect::WheelResults& results, const PageOrigin& origin = {});

} // namespace kxreport
