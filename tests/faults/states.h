// The objects on which the operations of the tables work.
#pragma once

#include "operation.h"

#include <array>
#include <cmath>

namespace faults {

using namespace KxMath;

/// A profile over `count` points: waves, steps and a few spikes. Unordered: with NaN, repeated x and the last third in
/// front.
inline QList<KxPointXY> wave(int count, bool isOrdered = true) {
    QList<KxPointXY> points;
    for (int i = 0; i < count; ++i) {
        const int place = isOrdered ? i : (i + count / 3) % count - (i % 9 == 4 ? 1 : 0);
        const float x = 0.25f * static_cast<float>(place);
        const float y = 3.0f * std::sin(0.4f * x) + (place > count / 2 ? 2.5f : 0.0f) + (place % 37 == 5 ? 6.0f : 0.0f);
        points.append(KxPointXY(!isOrdered && i % 41 == 7 ? NAN : x, y));
    }
    return points;
}

/// The same in space, in `layers` of equal z.
inline QList<KxPointXYZ> layers(int count, int layers) {
    QList<KxPointXYZ> points;
    for (const KxPointXY& p : wave(count)) {
        const qsizetype layer = points.size() * layers / count;
        points.append(KxPointXYZ(p.x, p.y, 0.5f * static_cast<float>(layer)));
    }
    return points;
}

/// Gives an object of a used state back its first values.
template <typename Cloud>
void clear(Cloud& cloud) {
    cloud.points = {};
    cloud.minX = cloud.maxX = cloud.minY = cloud.maxY = cloud.minZ = cloud.maxZ = NAN;
    cloud.zIndex.clear();
    cloud.zIndexBuilt = 0;
}

struct ProfileState {
    bool isShared = false;
    KxProfile in, mixed, out; ///< in order, unordered, empty
    KxProfile copyOfIn, copyOfMixed;
    KxPointCloud<KxPointXY> cloud;
    KxPointCloud<KxPointXYZ> space;
    KxLine line;
    KxPointXY centre;
    QList<int> positions; ///< one of them twice
    QList<int> indices; ///< empty
    std::array<float, 128> values{};
    int number = 0;

    void prepare() {
        for (KxPointCloud<KxPointXY>* const each :
             std::initializer_list<KxPointCloud<KxPointXY>*>{&in, &mixed, &out, &copyOfIn, &copyOfMixed, &cloud}) {
            clear(*each);
        }
        in.points = wave(120);
        mixed.points = wave(90, false);
        clear(space);
        space.points = layers(60, 3);
        if (isShared) {
            copyOfIn.points = in.points;
            copyOfMixed.points = mixed.points;
        }
        line = {0.1f, 1.0f};
        centre = {3, 4};
        positions = {5, 5, 2, 90, 7};
        indices = {};
        values.fill(0.0f);
        number = 0;
    }

    void addTo(Digest& digest) const {
        for (const auto* const each : {&in, &mixed, &out, &copyOfIn, &copyOfMixed}) {
            digest.add(each->points);
        }
        digest.add(cloud.points);
        digest.add(indices);
        for (const float value : values) {
            digest.add(value);
        }
        digest.add(number);
    }
};

struct CloudState {
    bool isShared = false;
    KxPointCloud<KxPointXYZ> in, out, copy;
    KxPointCloud<KxPointXYZRGB> colours;
    KxPointCloud<KxPointXY> plane;
    KxLevelHistogram<KxPointXYZ> histogram;
    QList<int> indices;
    QList<int> copyOfIndices;
    int number = 0;

    void prepare() {
        clear(in);
        clear(out);
        clear(copy);
        clear(colours);
        clear(plane);
        in.points = layers(150, 10);
        in.points.append(layers(40, 4)); // z no longer rises
        plane.points = wave(80, false);
        for (const KxPointXYZ& p : std::as_const(in.points)) {
            colours.points.append(KxPointXYZRGB(p.x, p.y, p.z, 0x102030u));
        }
        indices = {17, 3, 99, 4, 60, 61, 20, 21};
        if (isShared) {
            copy.points = in.points;
        }
        copyOfIndices = isShared ? indices : QList<int>();
        histogram.clear();
        number = 0;
    }

    void addTo(Digest& digest) const {
        for (const auto* const each : {&in, &out, &copy}) {
            digest.add(each->points);
            digest.add(each->zIndexBuilt);
            for (auto run = each->zIndex.cbegin(); run != each->zIndex.cend(); ++run) {
                digest.add(run.key());
                digest.add(run.value());
            }
        }
        digest.add(colours.points);
        digest.add(plane.points);
        for (auto level = histogram.levels.cbegin(); level != histogram.levels.cend(); ++level) {
            digest.add(level.key());
            digest.add(level.value());
        }
        digest.add(indices);
        digest.add(copyOfIndices);
        digest.add(number);
    }
};

} // namespace faults
