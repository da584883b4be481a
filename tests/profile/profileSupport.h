// Profiles for tests, and what their plain definitions share.
#pragma once

#include "support/bits.h"
#include "support/nasty.h"

#include <KxMath/KxProfile.h>

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <limits>

namespace testing_support {

using Points = QList<KxMath::KxPointXY>;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

/// A profile whose cached range is marked, so that a change shows.
inline KxMath::KxProfile profileOf(const Points& points) {
    KxMath::KxProfile profile;
    profile.points = points;
    profile.minX = -101.0f;
    profile.maxX = 102.0f;
    profile.minY = -103.0f;
    profile.maxY = 104.0f;
    return profile;
}

inline Points nastyPoints(Nasty& nasty, int max = 300) {
    nasty.nextCase();
    return nasty.points<KxMath::KxPointXY>(nasty.size(max));
}

/// A window that fits `count` points, or one that does not: none, negative, too long.
inline int nastyWindow(Nasty& nasty, int count) {
    const int some = 1 + nasty.below(std::max(1, count));
    return nasty.pick(std::array{some, some, 1 + some / 8, 1 + some / 8, count - 2, count - 1, count, count + 1, 0,
                                 -1, //
                                 INT_MIN, INT_MAX});
}

/// A limit as filters take them: NaN, infinite, 0, negative, or of the size of the coordinates.
inline float nastyLimit(Nasty& nasty) {
    return nasty.pick(std::array{nasty.value(), 0.0f, 0.1f, 1.0f, 30.0f, 1e3f, kNaN, kInf, -1.0f});
}

/// Ascending by x, as the order of a profile is defined: passes that exchange neighbours until none is out of order.
inline void sortByExchanges(Points& points) {
    for (bool isChanged = true; isChanged;) {
        isChanged = false;
        for (qsizetype j = points.size() - 1; j >= 1; --j) {
            if (points[j - 1].x > points[j].x) {
                points.swapItemsAt(j - 1, j);
                isChanged = true;
            }
        }
    }
}

/// Expects the points bit by bit, and the range of profileOf().
inline void expectPoints(KxMath::KxProfile& profile, const Points& expected) {
    EXPECT_EQ(exact(profile.points), exact(expected));
    EXPECT_EQ(exactRange(profile), exactRange(profileOf({})));
}

} // namespace testing_support
