// Filling, copying and measuring clouds.
#include "KxMath/KxPointCloud.h"

#include "cloud/pointTraits.h"
#include "cloud/rangeWidening.h"
#include "rounding/bounds.h"

namespace KxMath {

namespace {

using detail::kHasZ;
using detail::kNaN;

template <typename Cloud>
void initialise(Cloud& cloud) {
    cloud.clear();
    cloud.zIndexBuilt = 0;
}

template <typename Cloud>
void clearCloud(Cloud& cloud) {
    cloud.points.clear();
    cloud.minX = cloud.maxX = kNaN;
    cloud.minY = cloud.maxY = kNaN;
    cloud.minZ = cloud.maxZ = kNaN;
}

template <typename Cloud>
void copyCloud(Cloud& cloud, const Cloud& src) {
    if (&cloud != &src) {
        cloud.clear();
        cloud.points.append(src.points.begin(), src.points.end());
        cloud.minX = src.minX;
        cloud.maxX = src.maxX;
        cloud.minY = src.minY;
        cloud.maxY = src.maxY;
        cloud.minZ = src.minZ;
        cloud.maxZ = src.maxZ;
    }
    cloud.zIndexBuilt = 0;
}

template <typename Cloud>
void appendCloud(Cloud& cloud, const Cloud& src) {
    const auto added = src.points; // shared, so that a cloud can be appended to itself
    cloud.points.append(added);
    detail::mergeRange(cloud.minX, cloud.maxX, src.minX, src.maxX);
    detail::mergeRange(cloud.minY, cloud.maxY, src.minY, src.maxY);
    detail::mergeRange(cloud.minZ, cloud.maxZ, src.minZ, src.maxZ);
    cloud.zIndexBuilt = 0;
}

template <typename Point, typename Cloud>
void calcCloudRange(Cloud& cloud) {
    cloud.minX = cloud.maxX = kNaN;
    cloud.minY = kNaN;
    if constexpr (kHasZ<Point>) {
        // Deliberately not in the plane: there maxY survives when it is larger than every y.
        cloud.maxY = kNaN;
        cloud.minZ = cloud.maxZ = kNaN;
    }
    detail::widenRange(cloud, cloud.points.constData(), cloud.points.size());
}

template <typename Cloud, typename Point>
bool centerOfRange(Cloud& cloud, Point& out) {
    if (cloud.isEmpty()) {
        return false;
    }
    bool isKnown = !std::isnan(cloud.size_x()) && !std::isnan(cloud.size_y());
    if constexpr (kHasZ<Point>) {
        isKnown = isKnown && !std::isnan(cloud.size_z());
    }
    if (!isKnown) {
        cloud.calcRange();
    }
    out.x = (cloud.maxX + cloud.minX) * 0.5f;
    out.y = (cloud.maxY + cloud.minY) * 0.5f;
    if constexpr (kHasZ<Point>) {
        out.z = (cloud.maxZ + cloud.minZ) * 0.5f;
    }
    return true;
}

template <typename Point>
bool centerOfMass(const QList<Point>& points, Point& out) {
    if (points.isEmpty()) {
        return false;
    }
    float sumX = 0.0f;
    float sumY = 0.0f;
    [[maybe_unused]] float sumZ = 0.0f;
    for (const Point& p : points) {
        sumX += p.x;
        sumY += p.y;
        if constexpr (kHasZ<Point>) {
            sumZ += p.z;
        }
    }
    const float count = static_cast<float>(points.size());
    out.x = sumX / count;
    out.y = sumY / count;
    if constexpr (kHasZ<Point>) {
        out.z = sumZ / count;
    }
    return true;
}

template <typename Point>
float averageY(const QList<Point>& points) {
    if (points.isEmpty()) {
        return 0.0f;
    }
    float sum = 0.0f;
    for (const Point& p : points) {
        sum += p.y;
    }
    return sum / static_cast<float>(points.size());
}

} // namespace

// A full specialisation is no template: its members are defined one by one. These are those of all clouds.
// NOLINTBEGIN(bugprone-macro-parentheses): a type cannot stand in parentheses
#define KXMATH_DEFINE_CONTAINER(Point)                                                                                 \
    KxPointCloud<Point>::KxPointCloud() {                                                                              \
        initialise(*this);                                                                                             \
    }                                                                                                                  \
    KxPointCloud<Point>::KxPointCloud(KxPointCloud& other) {                                                           \
        initialise(*this);                                                                                             \
        copyFromPointCloud(other);                                                                                     \
    }                                                                                                                  \
    KxPointCloud<Point>::~KxPointCloud() = default;                                                                    \
    void KxPointCloud<Point>::operator=(const KxPointCloud& other) {                                                   \
        copyFromPointCloud(other);                                                                                     \
    }                                                                                                                  \
    void KxPointCloud<Point>::operator+=(const KxPointCloud& other) {                                                  \
        appendFromPointCloud(other);                                                                                   \
    }                                                                                                                  \
    int KxPointCloud<Point>::size() {                                                                                  \
        return static_cast<int>(points.size());                                                                        \
    }                                                                                                                  \
    bool KxPointCloud<Point>::isEmpty() {                                                                              \
        return points.isEmpty();                                                                                       \
    }                                                                                                                  \
    void KxPointCloud<Point>::clear() {                                                                                \
        clearCloud(*this);                                                                                             \
    }                                                                                                                  \
    void KxPointCloud<Point>::copyFromPointCloud(const KxPointCloud& src) {                                            \
        copyCloud(*this, src);                                                                                         \
    }                                                                                                                  \
    void KxPointCloud<Point>::appendFromPointCloud(const KxPointCloud& src) {                                          \
        appendCloud(*this, src);                                                                                       \
    }                                                                                                                  \
    void KxPointCloud<Point>::calcRange() {                                                                            \
        calcCloudRange<Point>(*this);                                                                                  \
    }                                                                                                                  \
    void KxPointCloud<Point>::updateRange(Point& p) {                                                                  \
        detail::widenRange(*this, p);                                                                                  \
    }                                                                                                                  \
    float KxPointCloud<Point>::size_x() {                                                                              \
        return maxX - minX;                                                                                            \
    }                                                                                                                  \
    float KxPointCloud<Point>::size_y() {                                                                              \
        return maxY - minY;                                                                                            \
    }                                                                                                                  \
    bool KxPointCloud<Point>::calcCenterPoint(Point& out) {                                                            \
        return centerOfRange(*this, out);                                                                              \
    }                                                                                                                  \
    bool KxPointCloud<Point>::caclCenterMassPoint(Point& out) {                                                        \
        return centerOfMass(points, out);                                                                              \
    }                                                                                                                  \
    float KxPointCloud<Point>::calcAverageY() {                                                                        \
        return averageY(points);                                                                                       \
    }
// NOLINTEND(bugprone-macro-parentheses)

KXMATH_DEFINE_CONTAINER(KxPointXY)
KXMATH_DEFINE_CONTAINER(KxPointXYZ)
KXMATH_DEFINE_CONTAINER(KxPointXYZRGB)

float KxPointCloud<KxPointXYZ>::size_z() {
    return maxZ - minZ;
}

float KxPointCloud<KxPointXYZRGB>::size_z() {
    return maxZ - minZ;
}

} // namespace KxMath
