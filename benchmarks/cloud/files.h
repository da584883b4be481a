// The clouds for the benchmarks of files.
#pragma once

#include "cloud/jobs.h"

#include <limits>
#include <map>

namespace kxbench {

/// Points of one type, and the name of their file kind in the tables.
template <typename Point>
struct FileKind {
    std::string name;
    const QList<Point>& (*points)(int count);
};

/// The random points with grey values by height.
inline const QList<KxMath::KxPointXYZRGB>& colouredPoints(int count) {
    static std::map<int, QList<KxMath::KxPointXYZRGB>> lists;
    QList<KxMath::KxPointXYZRGB>& points = lists[count];
    if (points.isEmpty()) {
        points.reserve(count);
        for (const KxMath::KxPointXYZ& p : randomPoints(count)) {
            points.append(KxMath::KxPointXYZRGB(p.x, p.y, p.z, 0x010101u * static_cast<unsigned>(p.y)));
        }
    }
    return points;
}

inline const QList<KxMath::KxPointXY>& flatPoints(int count) {
    return orderedPoints(count, Order::Random);
}

/// Calls for each kind and size.
template <typename Work>
void forEachFileKind(Work work) {
    work(FileKind<KxMath::KxPointXY>{"2-D cloud", flatPoints},
         std::numeric_limits<quint16>::max()); // maximum of a file
    for (const int n : kCloudSizes) {
        work(FileKind<KxMath::KxPointXYZ>{"3-D cloud", randomPoints}, n);
        work(FileKind<KxMath::KxPointXYZRGB>{"coloured cloud", colouredPoints}, n);
    }
}

} // namespace kxbench
