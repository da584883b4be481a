// The slopes between neighbouring points.
#include "KxMath/KxProfile.h"

namespace KxMath {

KxProfile KxProfile::derivative() {
    KxProfile slopes;
    const QList<KxPointXY>& list = points;
    for (qsizetype i = 0; i + 1 < list.size(); ++i) {
        const float slope = (list[i + 1].y - list[i].y) / (list[i + 1].x - list[i].x);
        // Deliberately swapped: the slope is the first coordinate, the position the second.
        slopes.points.append(KxPointXY(slope, list[i].x));
    }
    return slopes;
}

} // namespace KxMath
