// Tasks C1 to C14: point clouds.
#include "tasks.h"

#include <QtCore/QMap>

using namespace KxMath;

using Cloud = KxPointCloud<KxPointXYZ>;

namespace {

// C1. Get the range, the middle and the mean of a cloud.
bool measure(Cloud& cloud, KxPointXYZ& middle, KxPointXYZ& mean) {
    cloud.calcRange(); // minX ... maxZ
    return cloud.calcCenterPoint(middle) && cloud.caclCenterMassPoint(mean);
}

// C2. Crop a cloud to a box.
void crop(Cloud& cloud) {
    cloud.trim(-10.0f, 10.0f, kNaN, kNaN, 0.0f, 50.0f); // x, y, z; NaN: no bound
    cloud.calcRange(); // trim() only clamps it
}

// C3. Take the points of a box out of a cloud.
void takeBox(Cloud& cloud, Cloud& taken) {
    cloud.extract(taken, -10.0f, 10.0f, kNaN, kNaN, 0.0f, 50.0f, true); // in reverse order
    cloud.calcRange();
    taken.calcRange();
}

// C4. Find the points within a distance of a place.
QList<int> within(Cloud& cloud, KxPointXYZ place, float distance) {
    QList<int> positions;
    cloud.getRangeIndeces(positions, place, 2.0f * distance); // a diameter
    return positions;
}

// C5. Remove points by position.
void removeAt(Cloud& cloud, QList<int> positions) {
    cloud.removeIndeces(positions); // sorts the list; each position once, none negative
    cloud.calcRange();
}

// C6. Order a cloud by z and, where z is equal, by x.
void orderByZThenX(Cloud& cloud) {
    cloud.points.removeIf([](const KxPointXYZ& p) { return std::isnan(p.x) || std::isnan(p.z); });
    cloud.sort(KxSortAscending, KxSortNone); // by x
    cloud.sort(KxSortNone, KxSortAscending); // by z, stable
}

// C7. Remove isolated points.
int removeIsolated(Cloud& cloud) {
    cloud.calcRange(); // the cells are laid over the cached range
    return cloud.sphericalFilter2(4.0f, 1.0f, 5); // balls of 4 mm, neighbours within 1 mm, at least 5 points
}

// C8. Remove what lies in cells with few points.
int removeSparse(Cloud& cloud) {
    cloud.calcRange();
    return cloud.cubicFilter(2.0f, 4);
}

// C9. Take a slice along z.
int slice(Cloud& cloud, float z, float thickness, Cloud& out) {
    return cloud.calcSection(out, z, thickness / 2.0f); // half of it to each side
}

// C10. Count the points by height.
QMap<float, int> countsByLevel(Cloud cloud, float step) {
    cloud.calcRange();
    const float lowest = cloud.minY;
    for (KxPointXYZ& p : cloud.points) {
        p.y = (p.y - lowest) / step; // from 0 in steps of 1 the keys are the numbers of the bins
    }
    cloud.calcRange();
    KxLevelHistogram<KxPointXYZ> histogram;
    histogram.calcFromPointCloud(cloud, 1.0f);
    QMap<float, int> counts;
    for (auto bin = histogram.levels.cbegin(); bin != histogram.levels.cend(); ++bin) {
        counts[lowest + bin.key() * step] = bin.value(); // of the heights from here up to the next level
    }
    return counts;
}

// C11. Join clouds.
Cloud join(Cloud& a, Cloud& b) {
    Cloud both(a);
    both += b;
    both.calcRange();
    return both;
}

// C12. Turn a cloud about its middle.
void turn(Cloud& cloud, float degrees) {
    KxPointXYZ middle;
    cloud.calcRange();
    if (cloud.calcCenterPoint(middle)) {
        cloud.shift(-middle.x, -middle.y, -middle.z);
        cloud.rotateXZ(degrees); // from +x towards +z
        cloud.shift(middle.x, middle.y, middle.z);
        cloud.calcRange();
    }
}

// C13. Find a tape on a surface.
int findTape(Cloud& surface, Cloud& tape) {
    const int count = surface.extractInsulatingTape(tape, 1.0f, 0.3f, 1.2f); // slabs along z; 0.3 to 1.2 above it
    tape.calcRange();
    return count;
}

// C14. Get the distances of the points from a plane.
QList<float> distancesFrom(KxPointXYZ a, KxPointXYZ b, KxPointXYZ c, const Cloud& cloud) {
    KxPlane plane;
    plane.calcFromPoints(a, b, c);
    QList<float> distances;
    for (KxPointXYZ p : cloud.points) {
        distances.append(plane.calcDistance(p)); // never negative
    }
    return distances;
}

/// A plate of 20 x 20 points 1 apart from (-10, 0, 0) on, and two points alone.
Cloud plate() {
    Cloud cloud;
    for (int i = 0; i < 400; ++i) {
        const int row = i / 20;
        cloud.points.append(KxPointXYZ(float(i % 20 - 10), 0, float(row)));
    }
    cloud.points.append(KxPointXYZ(30, 1, 3));
    cloud.points.append(KxPointXYZ(3, 2, 60));
    return cloud;
}

} // namespace

void tryClouds() {
    Cloud cloud = plate();
    KxPointXYZ middle, mean;
    expect(measure(cloud, middle, mean) && middle.x == 10 && isNear(mean.x, (-200 + 33) / 402.0, 1e-5), "C1");

    Cloud cropped = plate();
    crop(cropped);
    expect(cropped.size() == 400 && cropped.maxX == 9 && cropped.maxZ == 19, "C2");
    Cloud rest = plate(), taken;
    takeBox(rest, taken);
    expect(rest.size() == 2 && taken.size() == 400 && taken.points.last().z == 0 && rest.minX == 3, "C3");

    expect(within(cloud, KxPointXYZ(30, 1, 4), 1.5f) == QList<int>{400}, "C4");
    removeAt(cloud, {401, 400});
    expect(cloud.size() == 400 && cloud.maxX == 9, "C5");

    Cloud mixed;
    mixed.points = {{2, 0, 1}, {1, 0, 1}, {5, 0, 0}, {kNaN, 0, 0}, {4, 0, 0}};
    orderByZThenX(mixed);
    expect(mixed.size() == 4 && mixed.points[0].x == 4 && mixed.points[1].x == 5 && mixed.points[2].x == 1, "C6");

    Cloud lonely = plate();
    removeIsolated(lonely);
    expect(lonely.size() > 300 && lonely.size() <= 400, "C7");
    Cloud sparse = plate();
    removeSparse(sparse);
    expect(sparse.size() > 300 && sparse.size() <= 400, "C8");
    Cloud section;
    expect(slice(cloud, 5.0f, 2.0f, section) == 60, "C9");

    Cloud heights;
    for (const float y : {-0.5f, 0.0f, 0.25f, 1.75f}) {
        heights.points.append(KxPointXYZ(0, y, 0));
    }
    const QMap<float, int> counts = countsByLevel(heights, 0.5f);
    expect(counts[-0.5f] == 1 && counts[0.0f] == 2 && counts[0.5f] == 0 && counts[1.5f] == 1, "C10");

    Cloud both = join(cloud, heights);
    expect(both.size() == 404 && both.maxY == 1.75f, "C11");
    turn(cloud, 90.0f);
    expect(isNear(cloud.size_x(), 19, 1e-3) && isNear(cloud.minZ, 0, 1e-3), "C12");

    Cloud surface, tape;
    for (int i = 0; i < 400; ++i) {
        const int row = i / 40, column = i % 40;
        surface.points.append(KxPointXYZ(float(column) / 2, column >= 10 && column < 20 ? 0.7f : 0.0f, float(row)));
    }
    expect(findTape(surface, tape) >= 90 && tape.minX == 5 && tape.maxX == 9.5f, "C13");
    expect(distancesFrom({0, 1, 0}, {1, 1, 0}, {0, 1, 1}, surface)[0] == 1, "C14");
}
