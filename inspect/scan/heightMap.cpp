// Scans on a regular grid.
#include <KxInspect/HeightMap.h>

#include "inspect/base/points.h"
#include "inspect/fitting/median.h"
#include "inspect/scan/arguments.h"

#include <KxMath/KxMatrixCloud.h>
#include <KxMath/KxProfileZ.h>

#include <algorithm>

namespace KxInspect {

namespace {

using KxMath::KxPointXY;
using KxMath::KxProfileZ;
using KxMath::KxProfileZSet;

constexpr double kMostSlices = 1e6;
constexpr double kMaxCells = 4e7; ///< a block mean takes 24 bytes

/// Removes points without a position or height from the profiles: a NaN would spread to neighbouring cells and disturb
/// the sorting. @return whether points remain
bool copyProfiles(const Scan& scan, KxProfileZSet& set) {
    bool hasPoints = false;
    for (const Profile& profile : scan.profiles) {
        KxProfileZ copy(profile.z);
        copy.points = detail::toList(profile.points);
        copy.points.removeIf([](const KxPointXY& p) { return !std::isfinite(p.x) || !std::isfinite(p.y); });
        hasPoints |= !copy.points.isEmpty();
        set.profiles.append(copy);
    }
    return hasPoints;
}

/// Resamples the profiles to positions one pitch apart.
void slice(float pitch, KxProfileZSet& set) {
    KxMath::KxPointCloud<KxMath::KxPointXYZ> cloud;
    set.toPointCloud(cloud);
    cloud.calcRange();
    if (!(static_cast<double>(cloud.size_z()) / static_cast<double>(pitch) < kMostSlices)) {
        detail::failArgument(
            "pitch", QStringLiteral("a pitch of %1 mm cuts the scan, which is %2 mm long, into more than %3 slices")
                         .arg(pitch)
                         .arg(cloud.size_z())
                         .arg(kMostSlices, 0, 'f', 0));
    }
    set.calcFromPointCloud(cloud, pitch);
}

/// The median distance in x of neighbouring points, from a sample of the profiles.
float pointSpacing(const KxProfileZSet& set) {
    constexpr qsizetype kSampled = 100;
    const qsizetype stride = std::max<qsizetype>(1, set.profiles.size() / kSampled);
    std::vector<float> distances;
    for (qsizetype i = 0; i < set.profiles.size(); i += stride) {
        std::vector<float> xs;
        for (const KxPointXY& p : set.profiles[i].points) {
            xs.push_back(p.x);
        }
        std::sort(xs.begin(), xs.end());
        for (std::size_t k = 1; k < xs.size(); ++k) {
            distances.push_back(xs[k] - xs[k - 1]);
        }
    }
    return detail::median(distances, 0.0f);
}

void checkSize(float pitch, KxProfileZSet& set) {
    const double extent = static_cast<double>(set.maxX) - static_cast<double>(set.minX);
    const double columns = std::ceil(extent / static_cast<double>(pitch));
    const double rows = set.size();
    const QString size =
        QStringLiteral("a pitch of %1 mm makes a grid of %2 rows and %3 columns").arg(pitch).arg(rows).arg(columns);
    if (rows < 2 || !(columns >= 2)) {
        detail::fail(ErrorKind::NoResult, {{}, {}, "pitch"},
                     QStringLiteral("no height map: %1; at least 2 of each are needed").arg(size));
    }
    if (rows * columns > kMaxCells) {
        detail::failArgument("pitch",
                             QStringLiteral("%1, more than %2 million cells in all").arg(size).arg(kMaxCells / 1e6));
    }
}

std::vector<float> heightsOf(const KxMath::KxMatrixCloud& matrix) {
    std::vector<float> heights;
    heights.reserve(static_cast<std::size_t>(matrix.rows) * static_cast<std::size_t>(matrix.columns));
    for (int r = 0; r < matrix.rows; ++r) {
        heights.insert(heights.end(), matrix.cells[r], matrix.cells[r] + matrix.columns);
    }
    return heights;
}

} // namespace

HeightMap makeHeightMap(const Scan& scan, const HeightMapOptions& options, const Progress& progress) {
    constexpr float kGapInSpacings = 2.5f; // bridges a single missing point
    detail::checkAbove0("pitch", options.pitch);
    if (options.gap) {
        detail::checkAbove0("gap", *options.gap);
    }
    KxProfileZSet set;
    if (!copyProfiles(scan, set)) {
        detail::fail(ErrorKind::NoResult, {}, QStringLiteral("no height map: the scan has no points"));
    }
    set.stepZ = scan.distance;
    if (scan.distance != options.pitch) { // NaN: true
        slice(options.pitch, set);
    }
    set.calcRange();
    checkSize(options.pitch, set);
    if (progress) {
        progress("making the grid", 0.0);
    }
    HeightMap map;
    map.gap = options.gap ? *options.gap : kGapInSpacings * std::max(options.pitch, pointSpacing(set));
    KxMath::KxMatrixCloud matrix;
    if (set.toMatrixCloud(matrix, map.gap, options.pitch) == 0) { // the column at the smallest x always has a height
        detail::fail(ErrorKind::NoResult, {}, QStringLiteral("no height map: not enough memory"));
    }
    map.rows = matrix.rows;
    map.columns = matrix.columns;
    map.pitch = options.pitch;
    map.originX = matrix.minX;
    map.originZ = std::as_const(set.profiles).constFirst().z;
    map.heights = heightsOf(matrix);
    return map;
}

} // namespace KxInspect
