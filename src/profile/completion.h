// Results that are written by index into a profile of the caller.
#pragma once

#include "KxMath/KxPoints.h"

#include <QtCore/QList>

namespace KxMath::detail {

/// Makes `out` long enough for the first `written` points: one that is too short gets all points of the profile that it
/// lacks, in their places.
inline void complete(QList<KxPointXY>& out, const QList<KxPointXY>& profile, qsizetype written) {
    if (out.size() < written) {
        out.append(profile.cbegin() + out.size(), profile.cend());
    }
}

} // namespace KxMath::detail
