// The result of kxmath calibrate as text.
#pragma once

#include <KxInspect/Calibration.h>

#include <QtCore/QString>

namespace kxtool {

/// The tables of the pose and of the flanks.
QString calibrationText(const KxInspect::CalibrationResult& result);

} // namespace kxtool
