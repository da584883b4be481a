// A measured wheel as a drawing.
#pragma once

#include <KxInspect/Wheel.h>

#include <QtCore/QString>

namespace kxreport {

/// The points of a wheel, the profile from which it was measured, and the measures on it.
/// @param id unique on the page
QString wheelDrawing(const KxInspect::WheelResult& result, const QString& id);

} // namespace kxreport
