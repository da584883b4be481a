// Profiles for tests, and what their plain definitions share.
#pragma once

#include "support/testing.h"

namespace testing_support {

/// A profile whose cached range is marked, so that a change shows.
inline KxProfile profileOf(const Points& points) {
    KxProfile profile;
    profile.points = points;
    setRange(profile, 100.0f);
    return profile;
}

/// A profile with points at x = 0, 1, 2 ...
inline KxProfile heights(const QList<float>& ys) {
    KxProfile profile;
    profile.points =
        pointsFor(static_cast<int>(ys.size()), [&](int i) { return KxPointXY(static_cast<float>(i), ys[i]); });
    return profile;
}

inline Points nastyPoints(Nasty& nasty, int max = 300) {
    return nasty.points<KxPointXY>(nasty.size(max));
}

/// A window that fits `count` points, also a multiple of the lanes of a vector, or one that does not fit: none, negative,
/// too long.
inline int nastyWindow(Nasty& nasty, int count) {
    const int some = 1 + nasty.below(std::max(1, count)), few = 1 + some / 8;
    return nasty.pick(std::array{some, some - some % 8, some - some % 32, few, few, count - 2, count - 1, count,
                                 count + 1, 0, -1, INT_MIN, INT_MAX});
}

/// A limit as filters take them: NaN, infinite, 0, negative, of the size of the coordinates, or a difference of
/// neighbours among `points`, which then meet it exactly.
inline float nastyLimit(Nasty& nasty, const Points& points = {}) {
    if (points.size() > 1 && nasty.chance(35)) {
        const qsizetype i = 1 + nasty.below(static_cast<int>(points.size()) - 1);
        return nasty.chance(50) ? points[i].x - points[i - 1].x : points[i].y - points[i - 1].y;
    }
    return nasty.pick(std::array{nasty.value(), 0.0f, 0.1f, 1.0f, 30.0f, 1e3f, kNaN, kInf, -1.0f});
}

/// Expects the points bit by bit, and the range of profileOf().
inline void expectPoints(KxProfile& profile, const Points& expected) {
    EXPECT_EXACT(profile.points, expected);
    EXPECT_EXACT(exactRange(profile), exactRange(profileOf({})));
}

/// Compares a filter with its plain definition, both from one profile to another: to itself, a copy or a longer one.
/// Plain definitions write by index into `out`, which may be the points they read.
template <typename Filter, typename Plain>
void compareFilters(int maxPoints, Filter filter, Plain plain) {
    forNasty(31, 1500, [&](Nasty& nasty) {
        const bool isLong = nasty.chance(3); // beyond the blocks of all filters, with windows that plain code can take
        Points points = nastyPoints(nasty, isLong ? 1100 : maxPoints);
        KxProfile receiver = profileOf(points);
        const int window = isLong ? 1 + nasty.below(9) : nastyWindow(nasty, receiver.size());
        const float limit = nastyLimit(nasty, points);
        SCOPED_TRACE(testing::Message() << "window " << window << " limit " << limit);
        if (nasty.chance(40)) {
            filter(receiver, receiver, window, limit);
            plain(points, points, window, limit);
        } else {
            Points target = nasty.chance(50) ? points : nastyPoints(nasty, 3);
            target.resize(std::max(target.size(), points.size()));
            KxProfile out = profileOf(target);
            filter(receiver, out, window, limit);
            plain(points, target, window, limit);
            expectPoints(out, target);
        }
        expectPoints(receiver, points);
    });
}

} // namespace testing_support
