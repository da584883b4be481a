// A measured wheel as a drawing.
#pragma once

#include <KxInspect/Wheel.h>

#include <QtCore/QString>

namespace kxreport {

/// @{ The points of a wheel with the measures of railways, and with the smooth profile and the measures that come from it.
/// @param id unique on the page
/// @param name of the wheel, for readers
QString railwayDrawing(const KxInspect::WheelResult& result, const QString& name, const QString& id);
QString wheelDrawing(const KxInspect::WheelResult& result, const QString& name, const QString& id);
/// @}

} // namespace kxreport
