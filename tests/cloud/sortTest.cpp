// Sorting and the index by z, against the plain definitions.
#include "support/testing.h"

using namespace testing_support;

namespace {

using ColourPoints = QList<KxPointXYZRGB>;
using Index = QMap<float, int>;

/// Deliberately the last position of the preceding run; a repeated z overwrites its entry.
Index zIndexOf(const ColourPoints& points) {
    Index index;
    for (int i = 0; i < points.size(); ++i) {
        if (i == 0 || !(points[i].z == points[i - 1].z)) {
            index.insert(points[i].z, std::max(0, i - 1));
        }
    }
    return index;
}

/// Sorts in space; with a z sort, `index` receives the index.
void plainSort(ColourPoints& points, int first, int second, Index& index) {
    if (second == 0) {
        sortByExchanges(points, &KxPointXYZRGB::x, first == 1);
        return;
    }
    sortByExchanges(points, &KxPointXYZRGB::z, second == 1);
    index = zIndexOf(points);
    const QList<int> values = index.values();
    for (qsizetype r = 0; first != 0 && r + 1 < values.size(); ++r) {
        sortByExchanges(points, &KxPointXYZRGB::x, first == 1, values[r], values[r + 1]);
    }
}

void expectIndex(const Index& found, const Index& expected) {
    ASSERT_EXACT(found, expected);
}

/// Compares the order by the colours, which number the points.
void expectSorted(const ColourPoints& points, int first, int second) {
    KxPointCloud<KxPointXYZRGB> cloud;
    cloud.points = points;
    cloud.zIndexBuilt = 2;
    cloud.zIndex[99] = 99;
    cloud.sort(static_cast<KxSortOrder>(first), static_cast<KxSortOrder>(second));
    ColourPoints expected = points;
    Index index{{99, 99}};
    plainSort(expected, first, second, index);
    ASSERT_TRUE(std::ranges::equal(cloud.points, expected, {}, &KxPointXYZRGB::rgb, &KxPointXYZRGB::rgb))
        << "orders " << first << ", " << second << "\n"
        << compareExactly("sorted", "expected", exact(cloud.points), exact(expected)).message();
    expectIndex(cloud.zIndex, index);
    ASSERT_EQ(cloud.zIndexBuilt, second == 0 ? 2 : 1);
}

TEST(CloudSort, NastyCloudsInSpace) {
    forNasty(1, 2000, [](Nasty& nasty) {
        KxPointCloud<KxPointXYZRGB> cloud;
        cloud.points = nasty.points<KxPointXYZRGB>(nasty.size(nasty.pick(std::array{5, 5, 5, 300})));
        expectSorted(cloud.points, nasty.pick(std::array{0, 1, 2, 7}), nasty.pick(std::array{0, 1, 1, 2, -1}));
        cloud.zIndex[99] = 99;
        cloud.buildZIndex();
        expectIndex(cloud.zIndex, zIndexOf(cloud.points));
        ASSERT_EQ(cloud.zIndexBuilt, 1) << "also of an empty cloud";
    });
}

// Rising z between points with NaN z: the runs that are sorted by x are long, many and overlap in every way.
TEST(CloudSort, InterleavedRunsBetweenNaN) {
    forNasty(2, 300, [](Nasty& nasty) {
        const int size = 1 + nasty.below(250);
        const int runLength = 1 + nasty.below(nasty.chance(33) ? size : 40);
        const int levels = nasty.chance(25) ? 30 : 3 * size;
        ColourPoints points = nasty.points<KxPointXYZRGB>(size);
        const int fixedPercent = nasty.pick(std::array{0, 3, 30});
        for (int i = 0; i < size; ++i) {
            points[i].z = i > 0 && i % runLength == 0 ? kNaN : static_cast<float>(nasty.below(levels));
            points[i].x = nasty.chance(fixedPercent) ? kNaN : points[i].x;
        }
        expectSorted(points, nasty.pick(std::array{1, 2}), 1);
    });
}

// Enough points for each way of sorting, too many for bubbles: the runs between NaN go to the standard library.
TEST(CloudSort, ByXInThePlaneWhateverTheSecondOrder) {
    Nasty nasty(4);
    for (const int size : {0, 1, 2, 3, 10, 40, 150, 199, 200, 201, 5000, 19999, 20000, 70000}) {
        for (int round = 0; round < 12; ++round) {
            nasty.nextCase();
            const RoundReport report(4, round, nasty.input());
            KxPointCloud<KxPointXY> cloud;
            const float direction = nasty.pick(std::array{1.0f, -1.0f});
            const int kind = round % 4; // values, values and few gaps, rising or falling, nearly so
            for (int i = 0; i < size; ++i) {
                const float mixed = nasty.chance(10) ? nasty.pick(std::array{0.0f, -0.0f}) : nasty.value();
                const int step = i / 3;
                const float steady = static_cast<float>(step) * direction;
                const float gap = kind == 1 && nasty.below(size) < 3 ? kNaN : mixed;
                cloud.points.append({kind < 2 ? gap : kind == 2 ? steady : steady + mixed, static_cast<float>(i)});
            }
            Points expected = cloud.points;
            const int first = nasty.below(3);
            const bool isAscending = first == 1; // deliberately no order is a descending one
            for (auto run = expected.begin(); run != expected.end();) {
                const auto end = std::find_if(run, expected.end(), [](const KxPointXY& p) { return std::isnan(p.x); });
                std::stable_sort(run, end, [&](const KxPointXY& a, const KxPointXY& b) {
                    return isAscending ? a.x < b.x : a.x > b.x;
                });
                run = end == expected.end() ? end : end + 1;
            }
            cloud.zIndexBuilt = 5;
            cloud.sort(static_cast<KxSortOrder>(first), static_cast<KxSortOrder>(nasty.below(3)));
            ASSERT_EQ(cloud.zIndexBuilt, 5);
            ASSERT_EXACT(cloud.points, expected) << size << " points, case " << round;
        }
    }
}

/// What x looks like: each takes another way of sorting.
enum class Look { Even, Uneven, FewValues, Huge, Tail, Swapped, Bursts, Sawtooth, Falling, FallingInSteps, Last };

/// x rises but for what `look` says; y numbers the points.
Points pointsThatLook(Look look, int size, Nasty& nasty) {
    const auto any = [&] { return static_cast<float>(nasty.below(1 << 20)) * 0.001f - 500.0f; };
    const int step = nasty.pick(std::array{1, 1, 3}); // ties or none
    const int teeth = nasty.pick(std::array{2, 5, 15, 16, 17, 60});
    const int length = std::max(1, size / teeth);
    Points points;
    for (int i = 0; i < size; ++i) {
        const int steps = i / step;
        const int inTooth = i % length / step;
        const int group = i / 40;
        const auto rising = static_cast<float>(steps);
        float x = 0.0f;
        switch (look) {
        case Look::Even:
            x = any();
            break;
        case Look::Uneven:
            x = nasty.chance(1) ? any() : any() * 1e-6f;
            break;
        case Look::FewValues:
            x = static_cast<float>(nasty.below(5)) * nasty.pick(std::array{1.0f, -1.0f});
            break;
        case Look::Huge:
            x = nasty.pick(std::array{any() * 1e35f, any(), -kInf, kInf});
            break;
        case Look::Tail:
            x = i < size - size / 20 ? rising : any();
            break;
        case Look::Swapped:
            x = nasty.chance(2) ? static_cast<float>(nasty.below(size)) : rising;
            break;
        case Look::Bursts:
            x = i % 97 < nasty.below(9) ? rising + static_cast<float>(size) : rising;
            break;
        case Look::Sawtooth:
            x = static_cast<float>(inTooth);
            break;
        case Look::Falling:
            x = -rising;
            break;
        default:
            x = -static_cast<float>(group) + static_cast<float>(nasty.chance(1) ? 1 : 0);
            break;
        }
        points.append({x, static_cast<float>(i)});
    }
    return points;
}

TEST(CloudSort, WhateverTheOrderLooksLike) {
    Nasty nasty(5);
    for (const int size : {2, 3, 7, 17, 64, 200, 640, 1280, 2048, 2049, 2999, 4096, 20000, 300000}) {
        const int rounds = size < 5000 ? 8 : 1;
        for (int round = 0; round < rounds * static_cast<int>(Look::Last); ++round) {
            nasty.nextCase();
            const RoundReport report(5, round, nasty.input());
            const auto look = static_cast<Look>(round % static_cast<int>(Look::Last));
            KxPointCloud<KxPointXY> cloud;
            cloud.points = pointsThatLook(look, size, nasty);
            const bool isAscending = nasty.chance(50);
            if (!isAscending && nasty.chance(70)) {
                std::for_each(cloud.points.begin(), cloud.points.end(), [](KxPointXY& p) { p.x = -p.x; });
            }
            Points expected = cloud.points;
            std::stable_sort(expected.begin(), expected.end(), [&](const KxPointXY& a, const KxPointXY& b) {
                return isAscending ? a.x < b.x : a.x > b.x;
            });
            cloud.sort(isAscending ? KxSortAscending : KxSortDescending, KxSortNone);
            ASSERT_EXACT(cloud.points, expected) << size << " points, look " << round % static_cast<int>(Look::Last);
        }
    }
}

} // namespace
