// Clouds, their filters and the level histogram.
#include "golden.h"

using namespace KxMath;

namespace golden {

namespace {

using Cloud = KxPointCloud<KxPointXYZ>;

Line& operator<<(Line& line, const QMap<float, int>& map) {
    QList<float> entries;
    for (const float key : map.keys()) {
        entries << key << static_cast<float>(map[key]);
    }
    return line << entries;
}

void printRange(const char* name, const Cloud& cloud) {
    Line(name) << cloud.minX << cloud.maxX << cloud.minY << cloud.maxY << cloud.minZ << cloud.maxZ;
}

template <typename Filter>
void printFiltered(const char* name, Filter filter) {
    Cloud cloud;
    cloud.points = spacePoints(4, 3000);
    cloud.calcRange();
    const int removed = filter(cloud);
    Line(name) << removed << cloud;
}

} // namespace

void printClouds() {
    Cloud cloud;
    cloud.points = spacePoints(3, 2000);
    cloud.calcRange();
    printRange("cloud.range", cloud);
    KxPointXYZ centre, mass;
    cloud.calcCenterPoint(centre);
    cloud.caclCenterMassPoint(mass);
    Line("cloud.means") << centre << mass << cloud.calcAverageY() << cloud.size_x() << cloud.size_y() << cloud.size_z();
    QList<int> inside;
    cloud.getRangeIndeces(inside, KxPointXYZ(1, 2, 3), 40.0f);
    Line("cloud.ball") << inside;

    Cloud turned;
    turned = cloud;
    turned.shift(0.1f, 0.2f, 0.3f);
    turned.rotateXY(12.3f);
    turned.rotateXZ(-45.6f);
    turned.rotateYZ(7.89f);
    turned.rotate(1.5f, -2.5f, 3.5f);
    Line("cloud.turned") << turned;
    printRange("cloud.turnedRange", turned);

    cloud.sort(KxSortAscending, KxSortDescending);
    Line("cloud.sorted") << cloud << cloud.zIndex << cloud.getIndexX(0.5f) << cloud.getIndexY(0.5f)
                         << cloud.getIndexZ(12.0f);
    cloud.getRangeIndeces(inside, -20, 20, -5, 5, -30, 10);
    Line("cloud.box") << inside;
    Cloud section;
    cloud.calcSection(section, 3.0f, 2.5f);
    Line("cloud.section") << section;
    Cloud taken;
    cloud.extract(taken, -30, 0, -4, 4, -20, 20, true);
    Line("cloud.extracted") << taken << cloud;
    cloud.trim(-40, 40, -6, 6, -50, 50);
    Line("cloud.trimmed") << cloud << cloud.removePointsByYLevel(2.25f, true) << cloud;

    KxPointCloud<KxPointXY> flat;
    flat.points = profilePoints(5, 700, 80, true);
    flat.resize(1.1f, 0.9f, 1.0f);
    flat.shift(-0.3f, 0.7f, 0.0f);
    flat.sort(KxSortDescending, KxSortAscending);
    Line("cloud2D.sorted") << flat;

    printFiltered("cloud.cubicFilter", [](Cloud& c) { return c.cubicFilter(7.5f, 4); });
    printFiltered("cloud.cubicFilter2", [](Cloud& c) { return c.cubicFilter2(7.5f, 2.5f, 3, false); });
    printFiltered("cloud.cubicFilter2ball", [](Cloud& c) { return c.cubicFilter2(7.5f, 2.5f, 3, true); });
    printFiltered("cloud.sphericalFilter2", [](Cloud& c) { return c.sphericalFilter2(6.5f, 2.5f, 3); });
    printFiltered("cloud.clearEdgeEffect", [](Cloud& c) {
        c.points.resize(40);
        c.clearEdgeEffect(1.0f);
        return 0;
    });
    Cloud tape;
    printFiltered("cloud.tapeLeft", [&](Cloud& c) { return c.extractInsulatingTape(tape, 4.0f, 1.0f, 3.0f); });
    Line("cloud.tape") << tape;

    KxLevelHistogram<KxPointXYZ> histogram;
    const int levels = histogram.calcFromPointCloud(turned, 0.37f);
    Line("histogram") << levels << histogram.levels << histogram.count() << histogram.calcMassCenter();
}

} // namespace golden
