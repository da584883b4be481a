// The correlation of x and y over a range of points.
#pragma once

#include "KxMath/KxPoints.h"

#include <QtCore/QList>

namespace KxMath::detail {

/// Pearson's correlation coefficient, from sums in double precision. Not guarded: no points, or a constant coordinate,
/// give NaN or an infinity.
float correlation(QList<KxPointXY>::const_iterator begin, QList<KxPointXY>::const_iterator end);

} // namespace KxMath::detail
