// The density filters against a literal walk over all cells.
#include "support/bits.h"
#include "support/nasty.h"

#include <KxMath/KxMath.h>

#include <gtest/gtest.h>

#include <cmath>
#include <random>

using namespace KxMath;
using testing_support::exact;
using testing_support::exactRange;
using testing_support::Nasty;

namespace {

using Cloud = KxPointCloud<KxPointXYZ>;
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

struct Filter {
    float cell;
    float maxDist;
    int minCount;
    bool isSecond;
    bool isSpherical;

    int apply(Cloud& cloud) const {
        return isSecond ? cloud.cubicFilter2(cell, maxDist, minCount, isSpherical) : cloud.cubicFilter(cell, minCount);
    }
};

/// The positions to remove among those of a cell.
QList<int> picked(const Cloud& cloud, const QList<int>& found, const Filter& filter) {
    if (found.size() < filter.minCount) {
        return found;
    }
    QList<int> isolated;
    for (const int p : found) {
        float nearest = kNaN;
        for (const int q : found) {
            const float distance = KxPointXYZ::calcDistance(cloud.points[p], cloud.points[q]);
            if (p != q && (std::isnan(nearest) || distance < nearest)) {
                nearest = distance;
            }
        }
        if (filter.isSecond && nearest > filter.maxDist) {
            isolated.append(p);
        }
    }
    return isolated.isEmpty() || found.size() - isolated.size() >= filter.minCount ? isolated : found;
}

/// The starts of the cells of an axis, which ends where its sum stops rising. Far too many are cut off.
std::vector<float> cellStarts(float min, float max, float step) {
    std::vector<float> starts;
    for (float v = min; v < max && starts.size() < 10000; v += step) {
        starts.push_back(v);
        if (!(v + step > v)) {
            break;
        }
    }
    return starts;
}

/// Walks all cells and queries each anew.
int plainWalk(Cloud& cloud, const Filter& filter) {
    if (cloud.size() < (filter.isSecond ? 2 : filter.minCount)) {
        return 0;
    }
    const auto bounds = {cloud.minX, cloud.maxX, cloud.minY, cloud.maxY, cloud.minZ, cloud.maxZ};
    if (std::any_of(bounds.begin(), bounds.end(), [](float v) { return std::isnan(v); })) {
        cloud.calcRange();
    }
    const float step = filter.isSpherical ? filter.cell / 1.4142099618911743f : filter.cell;
    const auto axis = [step](float min, float max) { return cellStarts(min, max, step); };
    int removed = 0;
    QList<int> found;
    for (const float x : axis(cloud.minX, cloud.maxX)) {
        for (const float y : axis(cloud.minY, cloud.maxY)) {
            for (const float z : axis(cloud.minZ, cloud.maxZ)) {
                const float cell = filter.cell;
                if (filter.isSpherical) {
                    const float half = cell / 2.0f;
                    cloud.getRangeIndeces(found, KxPointXYZ(x + half, y + half, z + half), cell);
                } else {
                    cloud.getRangeIndeces(found, x, x + cell, y, y + cell, z, z + cell);
                }
                QList<int> positions = picked(cloud, found, filter);
                removed += cloud.removeIndeces(positions);
            }
        }
    }
    if (removed > 0) {
        cloud.zIndexBuilt = 0;
    }
    return removed;
}

/// A cell with which the plain walk ends soon.
float manageableCell(const Cloud& cloud, float fraction) {
    Cloud copy;
    copy = cloud;
    if (std::isnan(copy.minX)) {
        copy.calcRange();
    }
    float cell = fraction * std::min(1e37f, std::max({copy.size_x(), copy.size_y(), copy.size_z(), 1e-30f}));
    const auto cells = [&](float min, float max) { return cellStarts(min, max, cell / 1.5f).size(); };
    while (cells(copy.minX, copy.maxX) * cells(copy.minY, copy.maxY) * cells(copy.minZ, copy.maxZ) > 800) {
        cell *= 1.6f;
    }
    return cell;
}

void expectSameAsPlainWalk(const Cloud& cloud, const Filter& filter, int round) {
    Cloud plain;
    plain = cloud;
    plain.zIndexBuilt = 1;
    Cloud fast;
    fast = cloud;
    fast.zIndexBuilt = 1;
    const int removed = plainWalk(plain, filter);
    SCOPED_TRACE(::testing::Message() << "round " << round << ", " << cloud.points.size() << " points, cell "
                                      << filter.cell << ", maxDist " << filter.maxDist << ", minCount "
                                      << filter.minCount << ", kind " << filter.isSecond << filter.isSpherical);
    ASSERT_EQ(removed, filter.apply(fast));
    ASSERT_EQ(exact(plain.points), exact(fast.points));
    ASSERT_EQ(plain.zIndexBuilt, fast.zIndexBuilt);
    ASSERT_EQ(exactRange(plain), exactRange(fast));
}

} // namespace

TEST(DensityFilters, RemoveWhatThePlainWalkRemoves) {
    Nasty nasty(24);
    for (int round = 0; round < 800 && !HasFatalFailure(); ++round) {
        nasty.nextCase();
        Cloud cloud;
        cloud.points = nasty.points<KxPointXYZ>(nasty.size(120));
        for (KxPointXYZ& p : cloud.points) { // now and then a plane
            p.z = round % 11 == 0 ? 3.0f : p.z;
        }
        if (nasty.chance(30)) { // a cached range that is not that of the points
            cloud.calcRange();
            cloud.maxX -= cloud.size_x() * 0.25f;
            cloud.minZ += nasty.plain();
        }
        Filter filter;
        filter.cell = manageableCell(cloud, nasty.pick(std::array{0.11f, 0.25f, 0.5f, 0.3f, 1.7f}));
        filter.isSecond = nasty.chance(70);
        filter.isSpherical = filter.isSecond && nasty.chance(50);
        if (nasty.chance(5)) {
            filter.cell = nasty.pick(std::array{kNaN, kInf, 1e38f});
        }
        filter.maxDist = nasty.pick(std::array{0.1f, 0.3f, 0.7f, 1.5f}) * filter.cell;
        if (nasty.chance(15)) {
            filter.maxDist = nasty.pick(std::array{kNaN, kInf, 0.0f, -1.0f, 1e-24f, 1e30f});
        }
        filter.minCount = nasty.pick(std::array{0, 1, 2, 3, 8, -5, 1000000});
        expectSameAsPlainWalk(cloud, filter, round);
    }
}

// Points on the faces of small lattices, where a cell is a whole number of spacings.
TEST(DensityFilters, ShareFacesBetweenNeighbours) {
    Nasty nasty(25);
    for (int round = 0; round < 300 && !HasFatalFailure(); ++round) {
        Cloud cloud;
        for (int i = 0, count = 2 + nasty.below(200); i < count; ++i) {
            const auto coordinate = [&] { return 0.1f * static_cast<float>(nasty.below(7)) - 0.3f; };
            const float x = coordinate();
            const float y = coordinate();
            cloud.points.append(KxPointXYZ(x, y, coordinate()));
        }
        const float cell = nasty.pick(std::array{0.1f, 0.2f, 0.3f});
        const bool isSecond = nasty.chance(60);
        const Filter filter{cell, nasty.pick(std::array{0.05f, 0.1f, 0.15f}), 1 + nasty.below(6), isSecond,
                            isSecond && nasty.chance(50)};
        expectSameAsPlainWalk(cloud, filter, round);
    }
}

// More points in a cell than the comparison of all pairs takes: crowds, lone points, infinities, both kinds of limits
// of single-precision squares.
TEST(DensityFilters, FindIsolatedPointsInCrowdedCells) {
    Nasty nasty(26);
    for (int round = 0; round < 200 && !HasFatalFailure(); ++round) {
        const float scale = nasty.pick(std::array{1.0f, 1e-23f, 1e-22f, 1e19f, 3e37f});
        Cloud cloud;
        for (int i = 0, count = 40 + nasty.below(260); i < count; ++i) {
            const float spread = nasty.pick(std::array{0.02f, 0.02f, 1.0f});
            const auto coordinate = [&] {
                const float v = spread * static_cast<float>(nasty.below(1000)) * 0.001f;
                return nasty.below(200) == 0 ? (nasty.chance(50) ? kInf : -kInf) : v * scale;
            };
            const float x = coordinate();
            const float y = coordinate();
            cloud.points.append(KxPointXYZ(x, y, coordinate()));
        }
        cloud.minX = cloud.minY = cloud.minZ = -scale;
        cloud.maxX = cloud.maxY = cloud.maxZ = scale;
        const float maxDist = nasty.pick(std::array{0.0f, 1e-3f, 0.02f, 0.05f, 0.3f, 3.0f}) * scale;
        const float cell = nasty.pick(std::array{2.5f, kInf}) * scale;
        expectSameAsPlainWalk(cloud, {cell, maxDist, 1 + nasty.below(5), true, false}, round);
    }
}

// Each of these would take for ever, or all memory, if empty cells or crowded ones cost more than an addition.
TEST(DensityFilters, EndWhateverTheCell) {
    std::mt19937 random(7);
    Cloud cloud;
    for (int i = 0; i < 5000; ++i) {
        const float x = static_cast<float>(random() % 1000) * 0.1f;
        const float y = static_cast<float>(random() % 1000) * 0.1f;
        cloud.points.append(KxPointXYZ(x, y, static_cast<float>(random() % 1000) * 0.1f));
    }
    const struct {
        const char* desc;
        float cell;
        int minCount;
        int removedByCubes; ///< -1: only that it ends
    } cases[] = {
        {"zero", 0.0f, 2, 0},
        {"negative", -1.0f, 2, 0},
        {"negative infinity", -kInf, 2, 0},
        {"many empty cells", 1e-4f, 1, 0},
        {"too small to advance far", 1e-38f, 1, 0},
        {"vanishing squares", 1e-23f, 1, 0},
        {"huge count", 1.0f, std::numeric_limits<int>::max(), -1},
        {"smallest count", 1.0f, std::numeric_limits<int>::min(), 0},
        {"one cell", 1e30f, 5000, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        for (const bool isSpherical : {false, true}) {
            Cloud copy(cloud);
            copy.cubicFilter2(c.cell, 5.0f, c.minCount, isSpherical);
        }
        Cloud copy(cloud);
        const int removed = copy.cubicFilter(c.cell, c.minCount);
        if (c.removedByCubes >= 0) {
            EXPECT_EQ(c.removedByCubes, removed);
        }
        EXPECT_EQ(5000, copy.size() + removed);
    }
    Cloud crowd;
    for (int i = 0; i < 50000; ++i) { // two crowds, a tenth of the distance wide, and one point that stands apart
        crowd.points.append(KxPointXYZ(i % 2 == 0 ? 0.0f : 20.0f, 1e-5f * static_cast<float>(i), 0.0f));
    }
    crowd.points.append(KxPointXYZ(10.0f, 50.0f, 1.0f));
    EXPECT_EQ(1, crowd.cubicFilter2(100.0f, 5.0f, 1, false));
    EXPECT_EQ(crowd.size(), 50000);
}
