// Removal of points that repeat an x.
#include "KxMath/KxProfile.h"

#include "lists/filtering.h"
#include "profile/order.h"

#include <algorithm>
#include <cmath>

namespace KxMath {

int KxProfile::removeDuplicates() {
    if (detail::isStrictlyRising(points)) {
        return 0;
    }
    // Positions ordered by x, equal ones in list order: all but the first of equal ones are removed. NaN equals
    // nothing.
    const QList<KxPointXY>& list = points;
    QList<int> order;
    order.reserve(list.size());
    for (int i = 0; i < list.size(); ++i) {
        if (!std::isnan(list[i].x)) {
            order.append(i);
        }
    }
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return list[a].x < list[b].x; });
    QList<bool> isRepeated(list.size(), false);
    for (qsizetype k = 1; k < order.size(); ++k) {
        isRepeated[order[k]] = list[order[k]].x == list[order[k - 1]].x;
    }
    qsizetype at = 0;
    return detail::keepIf(points, [&](const KxPointXY&) { return !isRepeated.at(at++); });
}

} // namespace KxMath
