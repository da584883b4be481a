// The operations on clouds by their plain definitions, one exchange and one removal at a time.
#pragma once

#include <KxMath/KxPointCloud.h>

#include <algorithm>
#include <cmath>

namespace plain {

/// Exchanges neighbours in the positions first ... last until a pass makes no exchange.
template <typename Point>
void bubbleSort(QList<Point>& points, qsizetype first, qsizetype last, float Point::*key, int order) {
    for (bool hasExchanged = true; hasExchanged;) {
        hasExchanged = false;
        for (qsizetype j = last; j > first; --j) {
            const float earlier = points[j - 1].*key;
            const float later = points[j].*key;
            if (order == 1 ? earlier > later : earlier < later) {
                std::swap(points[j - 1], points[j]);
                hasExchanged = true;
            }
        }
    }
}

template <typename Point>
QMap<float, int> zIndexOf(const QList<Point>& points) {
    QMap<float, int> index;
    for (qsizetype i = 0; i < points.size(); ++i) {
        if (i == 0) {
            index.insert(points[0].z, 0);
        } else if (!(points[i].z == points[i - 1].z)) {
            index.insert(points[i].z, static_cast<int>(i) - 1);
        }
    }
    return index;
}

/// Sorts the points of a cloud in space; with a z sort, `index` receives the index.
template <typename Point>
void sortInSpace(QList<Point>& points, int first, int second, QMap<float, int>& index) {
    if (second == 0) {
        bubbleSort(points, 0, points.size() - 1, &Point::x, first);
        return;
    }
    bubbleSort(points, 0, points.size() - 1, &Point::z, second);
    index = zIndexOf(points);
    if (first == 0) {
        return;
    }
    const QList<int> values = index.values();
    for (qsizetype r = 0; r + 1 < values.size(); ++r) {
        bubbleSort(points, values[r], values[r + 1], &Point::x, first);
    }
}

template <typename Point>
int removePositions(QList<Point>& points, QList<int>& positions) {
    std::sort(positions.begin(), positions.end());
    int counted = 0;
    for (qsizetype i = positions.size() - 1; i >= 0; --i) {
        if (positions[i] >= points.size()) {
            continue;
        }
        ++counted;
        if (positions[i] >= 0) {
            points.removeAt(positions[i]);
        }
    }
    return counted;
}

inline bool passes(float v, float min, float max) {
    if (!std::isnan(min) && !(min <= v)) {
        return false;
    }
    return std::isnan(max) || v <= max;
}

struct Box {
    float minX, maxX, minY, maxY, minZ, maxZ;

    template <typename Point>
    bool holds(const Point& p) const {
        if constexpr (requires { p.z; }) {
            if (!passes(p.z, minZ, maxZ)) {
                return false;
            }
        }
        return passes(p.x, minX, maxX) && passes(p.y, minY, maxY);
    }
};

/// Walks from the last point to the first and removes those that `goes` takes; returns them in that order.
template <typename Point, typename Goes>
QList<Point> removeBackwards(QList<Point>& points, Goes goes) {
    QList<Point> gone;
    for (qsizetype i = points.size() - 1; i >= 0; --i) {
        if (goes(points[i])) {
            gone.append(points[i]);
            points.removeAt(i);
        }
    }
    return gone;
}

} // namespace plain
