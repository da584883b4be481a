// Tasks H1 to H9: height maps of scans, their blocks and patches.
#include "tasks.h"

#include <algorithm>

using namespace KxMath;

namespace {

// H1. Make a height map of a scan.
bool makeMap(KxProfileZSet& scan, float step, float maxGap, KxMatrixCloud& map) {
    scan.setZ(0.0f, step); // the profiles are one step apart, and so are the columns
    scan.calcRange();
    return scan.toMatrixCloud(map, maxGap, kNaN) > 0;
}

// H2. Walk over the cells with a height.
float highest(KxMatrixCloud& map, KxPointXYZ& place) {
    float found = kNaN;
    for (int row = 0; row < map.rows; ++row) {
        for (int column = 0; column < map.columns; ++column) {
            const float height = map.cells[row][column]; // NaN: empty
            if (std::isnan(found) || height > found) {
                found = height;
                place = KxPointXYZ(map.minX + float(column) * map.step, height, map.minZ + float(row) * map.step);
            }
        }
    }
    return found;
}

// H3. Turn a height map into a cloud where the scan was.
int toCloud(KxMatrixCloud& map, KxPointCloud<KxPointXYZ>& cloud) {
    const int count = map.toPointCloud(cloud); // x and z count from 0
    cloud.shift(map.minX, 0.0f, map.minZ);
    cloud.calcRange();
    return count;
}

// H4. Keep a rectangle and a band of heights of a height map.
int keepRectangle(KxMatrixCloud& map) {
    return map.trim(2, 7, kNaN, 5.0f, 1, 4); // columns, heights, rows; with four arguments it empties the rectangle
}

// H5. Copy a height map.
bool copyMap(KxMatrixCloud& from, KxMatrixCloud& to) {
    if (!to.initMatrix(from.columns, from.rows, from.step, from.minX, from.maxX, from.minY, from.maxY, from.minZ,
                       from.maxZ)) {
        return false;
    }
    for (int row = 0; row < from.rows; ++row) { // to = from would share the cells
        std::copy_n(from.cells[row], from.columns, to.cells[row]);
    }
    return true;
}

// H6. Get the mean height of the blocks of a height map.
float blockMean(KxMatrixCloud& map, int size, int row, int column) {
    KxMatrixWithHistos blocks; // a new one for each map
    blocks.calcFromMatrixCloud(map, size, 0, nullptr, nullptr);
    const HistoCell& block = blocks.histoRows[row + size][column + size]; // of the cells before that position
    return block.mean; // 0 without a height
}

// H7. Find flat patches.
int findPatches(KxMatrixCloud& map, QList<int>& sizes) {
    float low = kNaN, high = kNaN;
    KxMatrixWithHistos blocks;
    blocks.calcFromMatrixCloud(map, 2, 0, &low, &high);
    QList<KxPointCloud<KxPointXYZ>*> patches;
    blocks.extractSeeds(map, &patches, high, low, 0.2f, 0.2f, 10, kNaN); // takes the cells out of the map
    for (KxPointCloud<KxPointXYZ>* patch : patches) {
        sizes.append(patch->size());
    }
    const int count = KxMatrixWithHistos::freePointCloudList(patches);
    patches.clear(); // the pointers dangle
    return count;
}

// H8. Cut the falling edges of a scanned object away.
int cutEdges(KxMatrixCloud& map, float drop) {
    KxMatrixWithHistos blocks;
    blocks.calcFromMatrixCloud(map, 2, 0, nullptr, nullptr);
    const int before = map.size();
    blocks.cutEdgeEffects(map, -drop); // where heights fall inwards by more than `drop`
    return before - map.size();
}

// H9. Take a rectangle out of a height map as a cloud.
int takeRectangle(KxMatrixCloud& map, KxPointCloud<KxPointXYZ>& cloud) {
    return map.extractToPointCloud(cloud, 2, 1, 4, 3, true); // first column, first row, columns, rows; appends
}

/// 9 profiles of 12 points, 1 apart: low on the left, high on the right.
KxProfileZSet stairs() {
    KxProfileZSet scan;
    for (int i = 0; i < 9; ++i) {
        scan.profiles.append(KxProfileZ(sampled(13, 1.0f, [](float x) { return x < 6 ? 2.0f : 5.0f; })));
        scan.profiles.last().shift(30.0f, 0.0f, 0.0f);
    }
    return scan;
}

} // namespace

void tryHeightMaps() {
    KxProfileZSet scan = stairs();
    KxMatrixCloud map;
    expect(makeMap(scan, 1.0f, 1.5f, map) && map.columns == 12 && map.rows == 9 && map.size() == 108, "H1");
    KxPointXYZ place;
    expect(highest(map, place) == 5 && place.x == 36 && place.z == 0, "H2");
    KxPointCloud<KxPointXYZ> cloud;
    expect(toCloud(map, cloud) == 108 && cloud.minX == 30 && cloud.maxZ == 8, "H3");

    KxMatrixCloud copy;
    expect(copyMap(map, copy) && copy.cells != map.cells && copy.size() == 108, "H5");
    expect(keepRectangle(copy) == 108 - 6 * 4 && copy.size() == 6 * 4, "H4");
    expect(map.size() == 108, "H5: the original stays");

    expect(blockMean(map, 2, 4, 4) == 2 && blockMean(map, 2, 4, 5) == 3.5f, "H6");

    expect(copyMap(map, copy) && cutEdges(copy, 10.0f) == 0, "H8: nothing falls so far");
    for (int row = 0; row < copy.rows; ++row) {
        copy.cells[row][10] = 30;
    }
    expect(cutEdges(copy, 10.0f) > 0 && copy.size() < 108, "H8");

    KxPointCloud<KxPointXYZ> taken;
    expect(copyMap(map, copy) && takeRectangle(copy, taken) == 12 && copy.size() == 108 - 12, "H9");

    QList<int> sizes;
    expect(findPatches(map, sizes) == 2 && sizes[0] > 20 && sizes[1] > 20, "H7");
}
