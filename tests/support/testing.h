// What tests of clouds and profiles share: limits, marked ranges, rounds of nasty input, the order by exchanges.
#pragma once

#include "support/comparison.h"
#include "support/nasty.h"

#include <KxMath/KxMath.h>

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

namespace testing_support {

using namespace KxMath; // also for those who use this one

using Points = QList<KxPointXY>;
using SpacePoints = QList<KxPointXYZ>;
using PointTypes = testing::Types<KxPointXY, KxPointXYZ, KxPointXYZRGB>;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

/// A point whose coordinates are rounded once.
inline KxPointXY at(double x, double y) {
    return {static_cast<float>(x), static_cast<float>(y)};
}

inline KxPointXYZ at(double x, double y, double z) {
    return {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
}

/// The points that `make` makes of 0, 1, ... up to, not including, `count`.
template <typename Make>
auto pointsFor(int count, Make make) {
    QList<decltype(make(0))> points;
    for (int i = 0; i < count; ++i) {
        points.append(make(i));
    }
    return points;
}

/// Calls `check` with nasty input round by round, until one of them fails, and shows the input of that one.
template <typename Check>
void forNasty(unsigned seed, int rounds, Check check) {
    Nasty nasty(seed);
    for (int round = 0; round < rounds && !testing::Test::HasFailure(); ++round) {
        nasty.nextCase();
        const RoundReport report(seed, round, nasty.input());
        check(nasty);
    }
}

/// The cached range of a cloud or profile.
template <typename Cloud>
std::array<float*, 6> boundsOf(Cloud& cloud) {
    return {&cloud.minX, &cloud.maxX, &cloud.minY, &cloud.maxY, &cloud.minZ, &cloud.maxZ};
}

/// Sets the cached range to first, first + 1, ..., so that a change shows.
template <typename Cloud>
void setRange(Cloud& cloud, float first) {
    for (float* const bound : boundsOf(cloud)) {
        *bound = first++;
    }
}

/// The points from `first` to `last` in the order of a key: passes that exchange neighbours until none is wrong.
template <typename Point>
void sortByExchanges(QList<Point>& points, float Point::*key, bool isAscending, qsizetype first, qsizetype last) {
    for (bool isChanged = true; isChanged;) {
        isChanged = false;
        for (qsizetype j = last; j > first; --j) {
            const float earlier = points[j - 1].*key, later = points[j].*key;
            if (isAscending ? earlier > later : earlier < later) {
                points.swapItemsAt(j - 1, j);
                isChanged = true;
            }
        }
    }
}

template <typename Point>
void sortByExchanges(QList<Point>& points, float Point::*key = &Point::x, bool isAscending = true) {
    sortByExchanges(points, key, isAscending, 0, points.size() - 1);
}

} // namespace testing_support
