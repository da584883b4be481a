// The results of kxmath wheel as text.
#pragma once

#include <KxInspect/Wheel.h>

#include <QtCore/QString>

namespace kxtool {

/// A line for each wheel that was read.
QString wheelTable(const KxInspect::WheelResults& results);

/// A line for each wheel.
QString wheelCsv(const KxInspect::WheelResults& results);

} // namespace kxtool
