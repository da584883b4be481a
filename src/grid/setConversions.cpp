// Sets of profiles to and from clouds and grids.
#include "KxMath/KxMatrixCloud.h"
#include "KxMath/KxProfileZ.h"

#include "grid/position.h"
#include "numeric/conversion.h"
#include "profile/heightCursor.h"

#include <algorithm>
#include <cmath>

namespace KxMath {

namespace {

/// Where single precision ceases to count in ones.
constexpr int kMaxSlices = 1 << 24;

/// The number of slices `step` apart that hold an extent, 0 when there is no such number or it is too large.
int countSlices(float extent, float step) {
    if (!(step > 0.0f)) { // NaN: true
        return 0;
    }
    const float gaps = std::ceil(extent / step);
    return gaps >= 0.0f && gaps < static_cast<float>(kMaxSlices) ? detail::truncToInt(static_cast<double>(gaps)) + 1
                                                                 : 0; // NaN: 0
}

/// The slice that takes a point at `z`: of the first two neighbours about it the nearer one, the later one when they
/// are equally near. Null when there are none. The positions of the slices do not fall.
KxProfileZ* findSlice(KxProfileZ* begin, KxProfileZ* end, float z, float step) {
    if (end - begin < 2 || std::isnan(z)) {
        return nullptr;
    }
    const auto isBefore = [](const KxProfileZ& slice, float z) { return slice.z < z; };
    KxProfileZ* const upper = std::lower_bound(begin + 1, end, z, isBefore);
    KxProfileZ* const lower = upper - 1;
    if (upper == end || lower->z > z) {
        return nullptr;
    }
    const float t = (z - lower->z) / step;
    return t < 0.5f ? lower : upper; // NaN: upper
}

} // namespace

int KxProfileZSet::toPointCloud(KxPointCloud<KxPointXYZ>& cloud, int first, int last) {
    cloud.clear();
    for (qsizetype i = first; i <= last; ++i) {
        const KxProfileZ& profile = std::as_const(profiles)[i];
        for (const KxPointXY& p : profile.points) {
            cloud.points.append(KxPointXYZ(p.x, p.y, profile.z));
        }
    }
    return cloud.size();
}

int KxProfileZSet::toPointCloud(KxPointCloud<KxPointXYZ>& cloud) {
    return toPointCloud(cloud, 0, size() - 1);
}

int KxProfileZSet::toMatrixCloud(KxMatrixCloud& matrix, float calcYArg, float step) {
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
    const int columns = detail::truncToInt(static_cast<double>(steps)); // refused below when it is no such number
    if (!matrix.initMatrix(columns, size(), stepZ, minX, maxX, minY, maxY, minZ, maxZ)) {
        return 0;
    }
    float** row = matrix.cells;
    for (KxProfileZ& profile : profiles) {
        profile.sort(KxSortAscending, KxSortAscending);
        detail::HeightCursor height(profile.points, calcYArg);
        for (int j = 0; j < columns; ++j) {
            (*row)[j] = height.at(detail::gridPosition(j, stepZ, minX));
        }
        ++row;
    }
    return matrix.size();
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
    for (int k = 0; k < count; ++k) {
        profiles.append(KxProfileZ(detail::gridPosition(k, step, cloud.minZ)));
    }
    KxProfileZ* const slices = profiles.data();
    for (const KxPointXYZ& p : std::as_const(cloud.points)) {
        if (KxProfileZ* const slice = findSlice(slices, slices + count, p.z, step)) {
            slice->points.append(KxPointXY(p.x, p.y));
        }
    }
    return count;
}

} // namespace KxMath
