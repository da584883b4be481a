// The results of kxmath wheel as text.
#pragma once

#include <KxInspect/Wheel.h>

#include <QtCore/QString>

namespace kxtool {

/// The measures of each wheel that was read, one per line.
QString wheelTable(const KxInspect::WheelResults& results);

/// A line for each wheel.
QString wheelCsv(const KxInspect::WheelResults& results);

} // namespace kxtool
