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

// KxPointCloud<KxPointXY>

KxPointCloud<KxPointXY>::KxPointCloud() {
    initialise(*this);
}

KxPointCloud<KxPointXY>::KxPointCloud(KxPointCloud& other) {
    initialise(*this);
    copyFromPointCloud(other);
}

KxPointCloud<KxPointXY>::~KxPointCloud() = default;

void KxPointCloud<KxPointXY>::operator=(const KxPointCloud& other) {
    copyFromPointCloud(other);
}

void KxPointCloud<KxPointXY>::operator+=(const KxPointCloud& other) {
    appendFromPointCloud(other);
}

int KxPointCloud<KxPointXY>::size() {
    return static_cast<int>(points.size());
}

bool KxPointCloud<KxPointXY>::isEmpty() {
    return points.isEmpty();
}

void KxPointCloud<KxPointXY>::clear() {
    clearCloud(*this);
}

void KxPointCloud<KxPointXY>::copyFromPointCloud(const KxPointCloud& src) {
    copyCloud(*this, src);
}

void KxPointCloud<KxPointXY>::appendFromPointCloud(const KxPointCloud& src) {
    appendCloud(*this, src);
}

void KxPointCloud<KxPointXY>::calcRange() {
    calcCloudRange<KxPointXY>(*this);
}

void KxPointCloud<KxPointXY>::updateRange(KxPointXY& p) {
    detail::widenRange(*this, p);
}

float KxPointCloud<KxPointXY>::size_x() {
    return maxX - minX;
}

float KxPointCloud<KxPointXY>::size_y() {
    return maxY - minY;
}

bool KxPointCloud<KxPointXY>::calcCenterPoint(KxPointXY& out) {
    return centerOfRange(*this, out);
}

bool KxPointCloud<KxPointXY>::caclCenterMassPoint(KxPointXY& out) {
    return centerOfMass(points, out);
}

float KxPointCloud<KxPointXY>::calcAverageY() {
    return averageY(points);
}

// KxPointCloud<KxPointXYZ>

KxPointCloud<KxPointXYZ>::KxPointCloud() {
    initialise(*this);
}

KxPointCloud<KxPointXYZ>::KxPointCloud(KxPointCloud& other) {
    initialise(*this);
    copyFromPointCloud(other);
}

KxPointCloud<KxPointXYZ>::~KxPointCloud() = default;

void KxPointCloud<KxPointXYZ>::operator=(const KxPointCloud& other) {
    copyFromPointCloud(other);
}

void KxPointCloud<KxPointXYZ>::operator+=(const KxPointCloud& other) {
    appendFromPointCloud(other);
}

int KxPointCloud<KxPointXYZ>::size() {
    return static_cast<int>(points.size());
}

bool KxPointCloud<KxPointXYZ>::isEmpty() {
    return points.isEmpty();
}

void KxPointCloud<KxPointXYZ>::clear() {
    clearCloud(*this);
}

void KxPointCloud<KxPointXYZ>::copyFromPointCloud(const KxPointCloud& src) {
    copyCloud(*this, src);
}

void KxPointCloud<KxPointXYZ>::appendFromPointCloud(const KxPointCloud& src) {
    appendCloud(*this, src);
}

void KxPointCloud<KxPointXYZ>::calcRange() {
    calcCloudRange<KxPointXYZ>(*this);
}

void KxPointCloud<KxPointXYZ>::updateRange(KxPointXYZ& p) {
    detail::widenRange(*this, p);
}

float KxPointCloud<KxPointXYZ>::size_x() {
    return maxX - minX;
}

float KxPointCloud<KxPointXYZ>::size_y() {
    return maxY - minY;
}

float KxPointCloud<KxPointXYZ>::size_z() {
    return maxZ - minZ;
}

bool KxPointCloud<KxPointXYZ>::calcCenterPoint(KxPointXYZ& out) {
    return centerOfRange(*this, out);
}

bool KxPointCloud<KxPointXYZ>::caclCenterMassPoint(KxPointXYZ& out) {
    return centerOfMass(points, out);
}

float KxPointCloud<KxPointXYZ>::calcAverageY() {
    return averageY(points);
}

// KxPointCloud<KxPointXYZRGB>

KxPointCloud<KxPointXYZRGB>::KxPointCloud() {
    initialise(*this);
}

KxPointCloud<KxPointXYZRGB>::KxPointCloud(KxPointCloud& other) {
    initialise(*this);
    copyFromPointCloud(other);
}

KxPointCloud<KxPointXYZRGB>::~KxPointCloud() = default;

void KxPointCloud<KxPointXYZRGB>::operator=(const KxPointCloud& other) {
    copyFromPointCloud(other);
}

void KxPointCloud<KxPointXYZRGB>::operator+=(const KxPointCloud& other) {
    appendFromPointCloud(other);
}

int KxPointCloud<KxPointXYZRGB>::size() {
    return static_cast<int>(points.size());
}

bool KxPointCloud<KxPointXYZRGB>::isEmpty() {
    return points.isEmpty();
}

void KxPointCloud<KxPointXYZRGB>::clear() {
    clearCloud(*this);
}

void KxPointCloud<KxPointXYZRGB>::copyFromPointCloud(const KxPointCloud& src) {
    copyCloud(*this, src);
}

void KxPointCloud<KxPointXYZRGB>::appendFromPointCloud(const KxPointCloud& src) {
    appendCloud(*this, src);
}

void KxPointCloud<KxPointXYZRGB>::calcRange() {
    calcCloudRange<KxPointXYZRGB>(*this);
}

void KxPointCloud<KxPointXYZRGB>::updateRange(KxPointXYZRGB& p) {
    detail::widenRange(*this, p);
}

float KxPointCloud<KxPointXYZRGB>::size_x() {
    return maxX - minX;
}

float KxPointCloud<KxPointXYZRGB>::size_y() {
    return maxY - minY;
}

float KxPointCloud<KxPointXYZRGB>::size_z() {
    return maxZ - minZ;
}

bool KxPointCloud<KxPointXYZRGB>::calcCenterPoint(KxPointXYZRGB& out) {
    return centerOfRange(*this, out);
}

bool KxPointCloud<KxPointXYZRGB>::caclCenterMassPoint(KxPointXYZRGB& out) {
    return centerOfMass(points, out);
}

float KxPointCloud<KxPointXYZRGB>::calcAverageY() {
    return averageY(points);
}

} // namespace KxMath
