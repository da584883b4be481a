// Telling wheel profiles from others.
#pragma once

#include "KxMath/KxPrimitives.h"

#include <QtCore/QList>

namespace KxMath::detail {

/// METRO_isWheel() without a copy of the profile.
bool isWheel(const QList<KxPointXY>& points, const KxLine& level, int minPoints);
bool isWheel(const QList<KxPointXY>& points, const KxLine& level, const KxLine& low, int minPoints);

} // namespace KxMath::detail
