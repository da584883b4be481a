// Scans on a regular grid.
#include <KxInspect/HeightMap.h>

#include "inspect/base/points.h"
#include "inspect/fitting/median.h"
#include "inspect/scan/arguments.h"
#include "inspect/scan/rowsBetween.h"

#include <KxMath/KxMatrixCloud.h>
#include <KxMath/KxProfileZ.h>

#include <algorithm>
#include <new>

namespace KxInspect {

namespace {

using KxMath::KxPointXY;
using KxMath::KxProfileZ;
using KxMath::KxProfileZSet;

constexpr double kMostSlices = 1e6;
constexpr double kMaxCells = 4e7; ///< a block mean takes 24 bytes

/// The profiles, by their positions where that is wanted.
std::vector<const Profile*> profilesOf(const Scan& scan, bool isSorted) {
    std::vector<const Profile*> profiles;
    for (const Profile& profile : scan.profiles) {
        profiles.push_back(&profile);
    }
    if (isSorted) {
        std::stable_sort(profiles.begin(), profiles.end(),
                         [](const Profile* a, const Profile* b) { return a->z < b->z; });
    }
    return profiles;
}

/// Removes points without a position or height from the profiles: a NaN would spread to neighbouring cells and disturb
/// the sorting. @return whether points remain
bool copyProfiles(const std::vector<const Profile*>& profiles, KxProfileZSet& set) {
    bool hasPoints = false;
    for (const Profile* const profile : profiles) {
        KxProfileZ copy(profile->z);
        copy.points = detail::toList(profile->points);
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
                         .arg(static_cast<double>(pitch))
                         .arg(static_cast<double>(cloud.size_z()))
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

void checkSize(float pitch, const KxProfileZSet& set, double rows) {
    const double extent = static_cast<double>(set.maxX) - static_cast<double>(set.minX);
    const double columns = std::ceil(extent / static_cast<double>(pitch));
    const QString size = QStringLiteral("a pitch of %1 mm makes a grid of %2 rows and %3 columns")
                             .arg(static_cast<double>(pitch))
                             .arg(rows)
                             .arg(columns);
    if (!(rows >= 2) || !(columns >= 2)) {
        detail::fail(ErrorKind::NoResult, {{}, {}, "pitch"},
                     QStringLiteral("no height map: %1; at least 2 of each are needed").arg(size));
    }
    if (!(rows * columns <= kMaxCells)) {
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

std::vector<float> positionsOf(const KxProfileZSet& set) {
    std::vector<float> positions;
    std::transform(set.profiles.cbegin(), set.profiles.cend(), std::back_inserter(positions),
                   [](const KxProfileZ& profile) { return profile.z; });
    return positions;
}

/// Profiles that are further apart than the gap leave the rows between them empty.
void checkDistance(float distance, float gap, float pitch) {
    if (distance > gap) {
        detail::failArgument(
            "pitch", QStringLiteral("a pitch of %1 mm leaves rows empty: the profiles are %2 mm apart, further than "
                                    "the gap of %3 mm between which heights are interpolated; take a pitch or a "
                                    "gap of at least %2 mm")
                         .arg(static_cast<double>(pitch))
                         .arg(static_cast<double>(distance))
                         .arg(static_cast<double>(gap)));
    }
}

} // namespace

HeightMap makeHeightMap(const Scan& scan, const HeightMapOptions& options, const Progress& progress) {
    constexpr float kGapInSpacings = 2.5f; // bridges a single missing point
    detail::checkAbove0("pitch", options.pitch);
    if (options.gap) {
        detail::checkAbove0("gap", *options.gap);
    }
    const float distance = detail::profileDistance(scan);
    const bool hasRowsBetween = distance > options.pitch; // NaN: false
    KxProfileZSet set;
    if (!copyProfiles(profilesOf(scan, hasRowsBetween), set)) {
        detail::fail(ErrorKind::NoResult, {}, QStringLiteral("no height map: the scan has no points"));
    }
    set.stepZ = hasRowsBetween ? options.pitch : scan.distance;
    if (!hasRowsBetween && scan.distance != options.pitch) { // NaN: true
        slice(options.pitch, set);
    }
    set.calcRange();
    const std::vector<float> positions = positionsOf(set);
    checkSize(options.pitch, set,
              hasRowsBetween ? detail::rowsFrom(positions, options.pitch) : static_cast<double>(set.size()));
    HeightMap map;
    map.gap = options.gap ? *options.gap : kGapInSpacings * std::max(options.pitch, pointSpacing(set));
    if (hasRowsBetween) {
        checkDistance(distance, map.gap, options.pitch);
    }
    if (progress) {
        progress("making the grid", 0.0);
    }
    KxMath::KxMatrixCloud matrix;
    if (set.toMatrixCloud(matrix, map.gap, options.pitch) == 0) { // the column at the smallest x always has a height
        throw std::bad_alloc();
    }
    map.rows = matrix.rows;
    map.columns = matrix.columns;
    map.pitch = options.pitch;
    map.originX = matrix.minX;
    map.originZ = positions.front();
    map.heights = heightsOf(matrix);
    if (hasRowsBetween) {
        detail::interpolateRows(positions, map);
    }
    return map;
}

} // namespace KxInspect
