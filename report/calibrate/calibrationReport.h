// The page of a calibration.
#pragma once

#include "report/elements/pageOrigin.h"

#include <KxInspect/Calibration.h>

#include <QtCore/QString>

namespace kxreport {

/// A self-contained HTML page: the pose, its quality, the profiles and their residuals.
QString calibrationReport(const KxInspect::CalibrationResult& result, const PageOrigin& origin = {});

} // namespace kxreport
