// The page of a calibration.
#pragma once

#include <KxInspect/Calibration.h>

#include <QtCore/QString>

namespace kxreport {

/// A self-contained HTML page: the pose, what is to be thought of it, the profiles and their residuals.
QString calibrationReport(const KxInspect::CalibrationResult& result);

} // namespace kxreport
