// Chains of operations on 2-D and 3-D clouds and primitives with arbitrary arguments.
#include "input.h"

#include <KxMath/KxLevelHistogram.h>
#include <KxMath/KxPrimitives.h>

using namespace KxMath;
using kxfuzz::Input;

namespace {

constexpr int kMaxPoints = 200;
constexpr int kMaxOperations = 16;

QList<int> positions(Input& in) {
    QList<int> list;
    for (int n = in.byte() % 20; n > 0; --n) {
        list.append(in.count());
    }
    return list;
}

/// A density filter visits its cells one by one, which is slow for small cells.
bool isLongFilter(const KxPointCloud<KxPointXYZ>& cloud, float cell) {
    return kxfuzz::isLongWalk(kxfuzz::extentOf(cloud.points, &KxPointXYZ::x), cell) ||
           kxfuzz::isLongWalk(kxfuzz::extentOf(cloud.points, &KxPointXYZ::y), cell) ||
           kxfuzz::isLongWalk(kxfuzz::extentOf(cloud.points, &KxPointXYZ::z), cell);
}

void filter(KxPointCloud<KxPointXYZ>& cloud, Input& in) {
    // Outdated cached ranges may also cause long loops, so only some of these are tried.
    const float cell = in.number();
    const float maxDistance = in.number();
    const int minCount = in.count();
    if (in.byte() % 64 != 0) {
        if (isLongFilter(cloud, cell)) {
            return;
        }
        cloud.calcRange();
    }
    switch (in.byte() % 3) {
    case 0:
        cloud.cubicFilter(cell, minCount);
        break;
    case 1:
        cloud.cubicFilter2(cell, maxDistance, minCount, in.yes());
        break;
    default:
        cloud.sphericalFilter2(cell, maxDistance, minCount);
        break;
    }
}

template <typename Point>
void count(KxPointCloud<Point>& cloud, float step) {
    if (kxfuzz::isLongWalk(kxfuzz::extentOf(cloud.points, &Point::y), step)) {
        return;
    }
    cloud.calcRange();
    KxLevelHistogram<Point> histogram;
    kxfuzz::require(histogram.calcFromPointCloud(cloud, step) == histogram.count());
    histogram.calcMassCenter();
}

/// Extracts part of a cloud, also into the cloud itself.
void select(KxPointCloud<KxPointXYZ>& cloud, KxPointCloud<KxPointXYZ>& other, Input& in) {
    KxPointCloud<KxPointXYZ>& out = in.yes() ? cloud : other;
    float n[6];
    for (float& v : n) {
        v = in.number();
    }
    QList<int> list;
    switch (in.byte() % 8) {
    case 0:
        cloud.getRangeIndeces(list, n[0], n[1], n[2], n[3], n[4], n[5]);
        kxfuzz::require(cloud.removeIndeces(list) == list.size());
        break;
    case 1:
        cloud.getRangeIndeces(list, in.pointXYZ(), n[0]);
        break;
    case 2:
        list = positions(in);
        cloud.removeIndeces(list);
        break;
    case 3:
        cloud.trim(n[0], n[1], n[2], n[3], n[4], n[5]);
        break;
    case 4:
        cloud.extract(out, n[0], n[1], n[2], n[3], n[4], n[5], in.yes());
        break;
    case 5:
        cloud.calcSection(out, n[0], n[1]);
        break;
    case 6:
        cloud.removePointsByYLevel(n[0], in.yes());
        break;
    default:
        if (!kxfuzz::isLongWalk(kxfuzz::extentOf(cloud.points, &KxPointXYZ::z), n[0])) {
            cloud.extractInsulatingTape(out, n[0], n[1], n[2]);
        }
        break;
    }
}

void change(KxPointCloud<KxPointXYZ>& cloud, KxPointCloud<KxPointXYZ>& other, Input& in) {
    const float a = in.number();
    const float b = in.number();
    const float c = in.number();
    KxPointXYZ point(a, b, c);
    switch (in.byte() % 16) {
    case 0:
        cloud.sort(in.order(), in.order());
        break;
    case 1:
        cloud.buildZIndex();
        break;
    case 2:
        filter(cloud, in);
        break;
    case 3:
        if (!kxfuzz::isLongWalk(kxfuzz::extentOf(cloud.points, &KxPointXYZ::z), a)) {
            cloud.clearEdgeEffect(a);
        }
        break;
    case 4:
        cloud.rotate(a, b, c);
        break;
    case 5:
        cloud.shift(a, b, c);
        break;
    case 6:
        cloud += in.yes() && cloud.size() < 2 * kMaxPoints ? cloud : other;
        break;
    case 7:
        cloud = in.yes() ? cloud : other;
        break;
    case 8:
        cloud.calcRange();
        break;
    case 9:
        cloud.calcCenterPoint(point);
        cloud.caclCenterMassPoint(point);
        cloud.calcAverageY();
        break;
    case 10:
        cloud.points.append(point);
        break;
    case 11:
        cloud.clear();
        break;
    case 12:
        cloud.getIndexX(a);
        cloud.getIndexY(a);
        cloud.getIndexZ(a);
        break;
    case 13:
        count(cloud, a);
        break;
    default:
        select(cloud, other, in);
        break;
    }
}

void useFlatCloud(Input& in) {
    KxPointCloud<KxPointXY> cloud;
    kxfuzz::appendPoints(cloud.points, in, 40, &Input::pointXY);
    KxLine line;
    line.calcFromPointCloud(cloud);
    KxCircle circle;
    circle.calcFromPointCloud(cloud);
    KxFreeVector vector;
    vector.calcFromPointCloud(cloud, in.count(), in.count(), in.number());
    KxFreeVector sum;
    sum.sumVectors(vector, sum);
    vector.resize(in.number());
    vector.calcAngleBetweenVectors(sum);
    cloud.resize(in.number(), in.number(), in.number());
    cloud.sort(in.order(), in.order());
    cloud.calcRange();
    QList<int> list;
    cloud.getRangeIndeces(list, in.number(), in.number(), in.number(), in.number());
    cloud.removeIndeces(list);
    cloud.getIndexX(in.number());
    cloud.getIndexY(in.number());
    count(cloud, in.number());
}

void useColouredCloud(Input& in) {
    KxPointCloud<KxPointXYZRGB> cloud;
    for (int n = in.byte() % 20; n > 0; --n) {
        const KxPointXYZ p = in.pointXYZ();
        cloud.points.append(KxPointXYZRGB(p.x, p.y, p.z, in.take<unsigned>()));
    }
    cloud.sort(in.order(), in.order());
    cloud.buildZIndex();
    QList<int> list = positions(in);
    cloud.removeIndeces(list);
    cloud.getRangeIndeces(list, in.number(), in.number(), in.number(), in.number(), in.number(), in.number());
    cloud.shift(in.number(), in.number(), in.number());
    KxPointXYZRGB point;
    cloud.calcCenterPoint(point);
    cloud.caclCenterMassPoint(point);
    count(cloud, in.number());
}

void usePlane(Input& in) {
    KxPointXYZ p[3] = {in.pointXYZ(), in.pointXYZ(), in.pointXYZ()};
    KxPlane plane;
    plane.calcFromPoints(p[0], p[1], p[2]);
    plane.calcDistance(p[1]);
    p[0].calcDistance(p[2]);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
    Input in(data, size);
    KxPointCloud<KxPointXYZ> clouds[2];
    for (KxPointCloud<KxPointXYZ>& cloud : clouds) {
        kxfuzz::appendPoints(cloud.points, in, kMaxPoints, &Input::pointXYZ);
    }
    for (int n = 0; n < kMaxOperations && !in.isEmpty(); ++n) {
        change(clouds[0], clouds[1], in);
    }
    useFlatCloud(in);
    useColouredCloud(in);
    usePlane(in);
    return 0;
}
