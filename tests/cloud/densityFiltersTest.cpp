// The density filters against a literal loop over all cells.
#include "support/testing.h"

using namespace testing_support;

namespace {

using Cloud = KxPointCloud<KxPointXYZ>;

struct Filter {
    float cell, maxDist;
    int minCount;
    bool isSecond, isSpherical;

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
            nearest = p != q && (std::isnan(nearest) || distance < nearest) ? distance : nearest;
        }
        if (filter.isSecond && nearest > filter.maxDist) {
            isolated.append(p);
        }
    }
    return isolated.isEmpty() || found.size() - isolated.size() >= filter.minCount ? isolated : found;
}

/// The starts of the cells of an axis, up to where the sum stops rising, and up to a maximum count.
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

/// Loops over all cells with a new query for each.
int plainWalk(Cloud& cloud, const Filter& filter) {
    if (cloud.size() < (filter.isSecond ? 2 : filter.minCount)) {
        return 0;
    }
    const auto bounds = boundsOf(cloud);
    if (std::any_of(bounds.begin(), bounds.end(), [](const float* v) { return std::isnan(*v); })) {
        cloud.calcRange();
    }
    const float cell = filter.cell;
    const float step = filter.isSpherical ? cell / 1.4142099618911743f : cell;
    int removed = 0;
    QList<int> found;
    for (const float x : cellStarts(cloud.minX, cloud.maxX, step)) {
        for (const float y : cellStarts(cloud.minY, cloud.maxY, step)) {
            for (const float z : cellStarts(cloud.minZ, cloud.maxZ, step)) {
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
    cloud.zIndexBuilt = removed > 0 ? 0 : cloud.zIndexBuilt;
    return removed;
}

/// A cell size with which the plain loop ends soon.
float manageableCell(const Cloud& cloud, float fraction) {
    Cloud copy;
    copy = cloud;
    if (std::isnan(copy.size_x() + copy.size_y() + copy.size_z())) {
        copy.calcRange();
    }
    float cell = fraction * std::min(1e37f, std::max({copy.size_x(), copy.size_y(), copy.size_z(), 1e-30f}));
    const auto cells = [&](float min, float max) { return cellStarts(min, max, cell / 1.5f).size(); };
    while (cells(copy.minX, copy.maxX) * cells(copy.minY, copy.maxY) * cells(copy.minZ, copy.maxZ) > 800) {
        cell *= 1.6f;
    }
    return cell;
}

void expectSameAsPlainWalk(const Cloud& cloud, const Filter& filter) {
    Cloud plain, fast;
    plain = cloud;
    fast = cloud;
    plain.zIndexBuilt = fast.zIndexBuilt = 1;
    SCOPED_TRACE(testing::Message() << "cell " << filter.cell << ", maxDist " << filter.maxDist << ", minCount "
                                    << filter.minCount << ", kind " << filter.isSecond << filter.isSpherical);
    ASSERT_EQ(plainWalk(plain, filter), filter.apply(fast));
    ASSERT_EXACT(plain.points, fast.points);
    ASSERT_EQ(plain.zIndexBuilt, fast.zIndexBuilt);
    ASSERT_EXACT(exactRange(plain), exactRange(fast));
}

/// Points whose coordinates are what `coordinate` returns.
template <typename Coordinate>
SpacePoints pointsOf(int count, Coordinate coordinate) {
    SpacePoints points(count);
    for (KxPointXYZ& p : points) {
        for (float* v : {&p.x, &p.y, &p.z}) {
            *v = coordinate();
        }
    }
    return points;
}

TEST(DensityFilters, RemoveWhatThePlainWalkRemoves) {
    forNasty(24, 1000, [](Nasty& nasty) {
        Cloud cloud;
        cloud.points = nasty.points<KxPointXYZ>(nasty.size(120));
        const bool isLattice = nasty.chance(30); // where a cell is a whole number of spacings
        if (isLattice) {
            const int width = nasty.chance(33) ? 1 : 7, count = 2 + nasty.below(200);
            cloud.points = pointsOf(count, [&] { return 0.1f * static_cast<float>(nasty.below(width)) - 0.3f; });
        }
        if (nasty.chance(30)) { // a cached range that is not that of the points
            cloud.calcRange();
            cloud.maxX -= cloud.size_x() * 0.25f;
            cloud.minZ += nasty.plain();
        }
        if (nasty.chance(20)) { // one unknown bound makes the whole range new
            *nasty.pick(boundsOf(cloud)) = kNaN;
        }
        float cell = manageableCell(cloud, nasty.pick(std::array{0.11f, 0.25f, 0.5f, 0.3f, 1.7f}));
        cell = isLattice && cell < 0.2f ? nasty.pick(std::array{0.1f, 0.2f, 0.3f}) : cell;
        cell = nasty.chance(5) ? nasty.pick(std::array{kNaN, kInf, 1e38f}) : cell;
        const float maxDist = nasty.chance(85) ? nasty.pick(std::array{0.1f, 0.3f, 0.7f, 1.5f}) * cell
                                               : nasty.pick(std::array{kNaN, kInf, 0.0f, -1.0f, 1e-24f, 1e30f});
        const bool isSecond = nasty.chance(70);
        const int minCount = nasty.pick(std::array{0, 1, 2, 3, 5, 8, -5, 1000000});
        expectSameAsPlainWalk(cloud, {cell, maxDist, minCount, isSecond, isSecond && nasty.chance(50)});
    });
}

// Clusters and isolated points, both kinds of limits of single-precision squares, sometimes infinities.
TEST(DensityFilters, FindIsolatedPointsInCrowdedCells) {
    forNasty(26, 150, [](Nasty& nasty) {
        const float scale = nasty.pick(std::array{1.0f, 1e-23f, 1e-22f, 1e19f, 3e37f});
        const float spread = nasty.pick(std::array{0.02f, 1.0f});
        Cloud cloud;
        cloud.points = pointsOf(nasty.pick(std::array{60, 259, 500}) - nasty.below(20), [&] {
            const float v = (nasty.chance(67) ? 0.02f : spread) * static_cast<float>(nasty.below(1000)) * 0.001f;
            return nasty.below(200) == 0 ? nasty.pick(std::array{kInf, -kInf}) : v * scale;
        });
        const bool isFarAway = nasty.chance(20); // on one or two axes, so that some points have no distance
        const int axis = nasty.below(3), axes = 1 + nasty.below(2), signs = nasty.pick(std::array{0, 50, 100});
        for (KxPointXYZ& p : cloud.points) {
            float* const coordinates[] = {&p.x, &p.y, &p.z, &p.x};
            float& v = *coordinates[axis + nasty.below(axes)];
            v = !isFarAway ? v : nasty.chance(signs) ? kInf : -kInf;
        }
        cloud.minX = cloud.minY = cloud.minZ = isFarAway ? -kInf : -scale;
        cloud.maxX = cloud.maxY = cloud.maxZ = scale;
        const float maxDist = nasty.pick(std::array{0.0f, 1e-3f, 0.02f, 0.05f, 0.3f, 3.0f}) * scale;
        const float cell = isFarAway ? kInf : nasty.pick(std::array{2.5f, kInf}) * scale;
        expectSameAsPlainWalk(cloud, {cell, maxDist, 1 + nasty.below(5), true, false});
    });
}

// Two or three layers with enough points and cells for several passes of their sorting.
TEST(DensityFilters, SweepCrowdedLayersOfManyCells) {
    forNasty(27, 30, [](Nasty& nasty) {
        const float origin = nasty.pick(std::array{0.0f, -3.0f, 1000.0f});
        const bool isLattice = nasty.chance(50);
        Cloud cloud;
        cloud.points = pointsOf(400, [&] {
            const int v = nasty.chance(50) ? nasty.below(5000) : 1800 + nasty.below(300);
            return origin + 0.01f * static_cast<float>(isLattice ? v / 100 * 100 : v);
        });
        for (KxPointXYZ& p : cloud.points) {
            p.x = p.x > origin + 25.0f ? 1.0f : nasty.pick(std::array{0.0f, 0.5f, 2.0f});
        }
        const bool isSecond = nasty.chance(70), isSpherical = isSecond && nasty.chance(50);
        expectSameAsPlainWalk(cloud, {isSpherical ? 1.4f : 1.0f, 0.4f, nasty.below(5), isSecond, isSpherical});
    });
}

// These cases would take forever, or all memory, if an empty or crowded cell cost more than an addition.
TEST(DensityFilters, EndWhateverTheCell) {
    Nasty nasty(7);
    Cloud cloud;
    cloud.points = pointsOf(1500, [&] { return static_cast<float>(nasty.below(1000)) * 0.1f; });
    // No cell at all, many empty ones, a step too small to advance far, vanishing squares.
    for (const float cell : {0.0f, -1.0f, -kInf, 1e-4f, 1e-38f, 1e-23f, 1.0f, 1e30f}) {
        for (const int minCount : cell == 1.0f ? std::vector{1, INT_MIN, INT_MAX} : std::vector{1}) {
            Cloud cubes(cloud), second(cloud), balls(cloud);
            const int removed = cubes.cubicFilter(cell, minCount);
            second.cubicFilter2(cell, 5.0f, minCount, false);
            balls.cubicFilter2(cell, 5.0f, minCount, true);
            EXPECT_TRUE(removed == 0 || (cell > 0.0f && minCount > 1)) << cell;
            EXPECT_EQ(cubes.size() + removed, 1500) << cell;
        }
    }
    Cloud crowd;
    // Two clusters, a tenth of the distance wide, and one isolated point.
    crowd.points = pointsFor(50000, [](int i) { return at(i % 2 * 20, 1e-5 * i, 0); });
    crowd.points.append(KxPointXYZ(10.0f, 50.0f, 1.0f));
    EXPECT_EQ(crowd.cubicFilter2(100.0f, 5.0f, 1, false), 1);
    EXPECT_EQ(crowd.size(), 50000);
}

} // namespace
