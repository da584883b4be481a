// The circle of a wheel that three sensors see.
#pragma once

#include <KxMath/KxPrimitives.h>

#include <QtCore/QStringList>

namespace kxtool {

/// The circle through a mark from each of three 3-D clouds, by METRO_calcWheel(): of the first cloud the point of least x, of
/// the second that of least z, of the third that of largest x, in x and y.
/// Throws an Error or a CommandError when a file cannot be read, and when the marks are on no circle.
KxMath::KxCircle circleOfMarks(const QStringList& files);

} // namespace kxtool
