// Removing or collecting many points in one pass.
#pragma once

#include "lists/unfilledList.h"

#include <QtCore/QList>

#include <algorithm>
#include <memory>

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
        const bool isKept = keep(data[i]);
        data[kept] =
            data[i]; // also where it does not stay: the next one takes its place, and no branch is mispredicted
        kept += isKept;
    }
    points.resize(kept);
    return static_cast<int>(count - kept);
}

/// The values that `make(i)` gives for those of the `count` first positions that `accept(i)` takes, in order.
template <typename Value, typename Accept, typename Make>
QList<Value> collectIf(qsizetype count, Accept accept, Make make) {
    constexpr qsizetype kPortion = 4096; // memory follows what is accepted
    UnfilledList<Value> collected(std::min(count, kPortion));
    for (qsizetype start = 0; start < count; start += kPortion) {
        const qsizetype end = std::min(count, start + kPortion);
        Value* const target = collected.extend(end - start);
        qsizetype accepted = 0;
        for (qsizetype i = start; i < end; ++i) {
            std::construct_at(target + accepted, make(i)); // overwritten by the next one where it is not accepted
            accepted += accept(i) ? 1 : 0;
        }
        collected.drop(end - start - accepted);
    }
    return collected.take();
}

} // namespace KxMath::detail
