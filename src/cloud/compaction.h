// Removing many points in one pass.
#pragma once

#include <QtCore/QList>

namespace KxMath::detail {

/// Keeps the points that `keep` takes, in order, and returns how many went. `keep` sees each point once, in stored
/// order. A list that loses nothing is not touched.
template <typename Point, typename Keep>
int keepIf(QList<Point>& points, Keep keep) {
    const qsizetype count = points.size();
    const Point* const source = points.constData();
    qsizetype kept = 0;
    while (kept < count && keep(source[kept])) {
        ++kept;
    }
    if (kept == count) {
        return 0;
    }
    Point* const data = points.data();
    for (qsizetype i = kept + 1; i < count; ++i) {
        if (keep(data[i])) {
            data[kept] = data[i];
            ++kept;
        }
    }
    points.resize(kept);
    return static_cast<int>(count - kept);
}

} // namespace KxMath::detail
