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
    std::vector<int> order;
    order.reserve(static_cast<std::size_t>(list.size()));
    for (int i = 0; i < list.size(); ++i) {
        if (!std::isnan(list[i].x)) {
            order.push_back(i);
        }
    }
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) { return list[a].x < list[b].x; });
    std::vector<char> isRepeated(static_cast<std::size_t>(list.size()));
    for (std::size_t k = 1; k < order.size(); ++k) {
        isRepeated[static_cast<std::size_t>(order[k])] = list[order[k]].x == list[order[k - 1]].x;
    }
    auto repeated = isRepeated.cbegin();
    return detail::keepIf(points, [&](const KxPointXY&) { return *repeated++ == 0; });
}

} // namespace KxMath
