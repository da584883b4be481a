// Sets of profiles to and from clouds and grids.
#include "KxMath/KxMatrixCloud.h"
#include "KxMath/KxProfileZ.h"

#include "grid/position.h"
#include "grid/resampling.h"
#include "lists/checked.h"
#include "lists/unfilledList.h"
#include "rounding/bounds.h"
#include "rounding/conversion.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <vector>

namespace KxMath {

using detail::kNaN;

namespace {

/// From here on single precision cannot represent every integer.
constexpr int kMaxSlices = 1 << 24;

/// The number of slices `step` apart that hold an extent; 0 when it is not finite or too large.
int countSlices(float extent, float step) {
    if (!(step > 0.0f)) { // NaN: true
        return 0;
    }
    const float gaps = std::ceil(extent / step);
    return gaps >= 0.0f && gaps < static_cast<float>(kMaxSlices) ? detail::truncToInt(static_cast<double>(gaps)) + 1
                                                                 : 0; // NaN: 0
}

/// Finds the slice that takes a point. The positions of the slices do not fall.
class SliceFinder {
public:
    static constexpr int kNone = -1;

    SliceFinder(int count, float step, float origin) : positions_(static_cast<size_t>(count)), step_(step) {
        for (int k = 0; k < count; ++k) {
            positions_[static_cast<size_t>(k)] = detail::gridPosition(k, step, origin);
        }
    }

    const std::vector<float>& positions() const { return positions_; }

    /// The nearer of the first two adjacent slices about `z`, the later one when they are equally near; kNone when
    /// there are no two such slices.
    int find(float z) const {
        if (positions_.size() < 2 || std::isnan(z)) {
            return kNone;
        }
        const auto upper = std::lower_bound(positions_.begin() + 1, positions_.end(), z);
        const auto lower = upper - 1;
        if (upper == positions_.end() || *lower > z) {
            return kNone;
        }
        const float t = (z - *lower) / step_;
        return static_cast<int>((t < 0.5f ? lower : upper) - positions_.begin()); // NaN: upper
    }

private:
    std::vector<float> positions_;
    float step_;
};

/// Points of one slice that follow one another in a cloud.
struct Run {
    int slice;
    int count;
};

/// Consecutive points at one z, as those of a profile in a scan, are looked up once.
std::vector<Run> findRuns(const QList<KxPointXYZ>& points, const SliceFinder& slices) {
    constexpr int kLongest = std::numeric_limits<int>::max();
    std::vector<Run> runs;
    float z = kNaN;
    for (const KxPointXYZ& p : points) {
        if (p.z == z && runs.back().count < kLongest) { // NaN: false
            ++runs.back().count;
            continue;
        }
        z = p.z;
        runs.push_back({slices.find(z), 1});
    }
    return runs;
}

/// Fills the slices with the points of the runs. Counted first, so that each slice allocates its memory once.
void distribute(const QList<KxPointXYZ>& points, const std::vector<Run>& runs, KxProfileZ* slices, size_t sliceCount) {
    std::vector<qsizetype> sizes(sliceCount);
    for (const Run& run : runs) {
        if (run.slice != SliceFinder::kNone) {
            sizes[static_cast<size_t>(run.slice)] += run.count;
        }
    }
    for (size_t k = 0; k < sliceCount; ++k) {
        detail::UnfilledList<KxPointXY> list(sizes[k]);
        list.extend(sizes[k]);
        slices[k].points = list.take();
    }
    const KxPointXYZ* from = points.constData();
    std::fill(sizes.begin(), sizes.end(), 0); // from here on what is filled
    for (const Run& run : runs) {
        const KxPointXYZ* const end = from + run.count;
        if (run.slice != SliceFinder::kNone) {
            qsizetype& filled = sizes[static_cast<size_t>(run.slice)];
            KxPointXY* to = detail::writable(slices[run.slice].points) + filled;
            for (const KxPointXYZ* p = from; p != end; ++p, ++to) {
                std::construct_at(to, p->x, p->y);
            }
            filled += run.count;
        }
        from = end;
    }
}

} // namespace

int KxProfileZSet::toPointCloud(KxPointCloud<KxPointXYZ>& cloud, int first, int last) {
    cloud.clear();
    const QList<KxProfileZ>& list = profiles;
    qsizetype count = 0;
    for (qsizetype i = first; i <= last; ++i) {
        count += list[i].points.size();
    }
    detail::UnfilledList<KxPointXYZ> points(count);
    KxPointXYZ* to = points.extend(count);
    for (qsizetype i = first; i <= last; ++i) {
        const float z = list[i].z;
        for (const KxPointXY& p : list[i].points) {
            std::construct_at(to++, p.x, p.y, z);
        }
    }
    cloud.points = points.take();
    return cloud.size();
}

int KxProfileZSet::toPointCloud(KxPointCloud<KxPointXYZ>& cloud) {
    return toPointCloud(cloud, 0, size() - 1);
}

int KxProfileZSet::toMatrixCloud(KxMatrixCloud& matrix, float maxDistance, float step) {
    if (isEmpty() || (!std::isnan(step) && step != stepZ)) {
        return 0;
    }
    if (std::isnan(minX) || std::isnan(maxX)) {
        calcRange();
    }
    if (std::isnan(minX) || std::isnan(maxX)) {
        return 0;
    }
    const float extent = maxX - minX;
    const float steps = std::ceil(extent / stepZ);
    const int columns = detail::truncToInt(static_cast<double>(steps)); // refused below when it was not finite
    if (!matrix.initMatrix(columns, size(), stepZ, minX, maxX, minY, maxY, minZ, maxZ)) {
        return 0;
    }
    const detail::Columns grid{columns, stepZ, minX};
    float** row = matrix.cells;
    int filled = 0;
    for (KxProfileZ& profile : detail::writableSpan(profiles)) {
        profile.sort(KxSortAscending, KxSortAscending);
        filled += detail::fillRow(profile.points, grid, maxDistance, *row);
        ++row;
    }
    return filled;
}

int KxProfileZSet::calcFromPointCloud(KxPointCloud<KxPointXYZ>& cloud, float step) {
    if (std::isnan(cloud.minZ)) {
        cloud.calcRange();
    }
    clear();
    stepZ = step;
    const int count = countSlices(cloud.size_z(), step);
    profiles.reserve(count);
    if (profiles.capacity() < count) { // no memory
        return 0;
    }
    const SliceFinder slices(count, step, cloud.minZ);
    for (const float z : slices.positions()) {
        profiles.append(KxProfileZ(z));
    }
    distribute(cloud.points, findRuns(cloud.points, slices), detail::writable(profiles), slices.positions().size());
    return count;
}

} // namespace KxMath
