// The inputs that the benchmarks share: same seed, same numbers. Created on first use.
#pragma once

#include <KxMath/KxMath.h>

#include <QtCore/QList>

namespace kxbench {

constexpr int kProfilePoints = 1280;
constexpr int kRows = 2000;

/// A wheel-like profile over 80 mm: an arc with a step, noise of 0.02 mm and a spike in every 97 points.
const QList<KxMath::KxPointXY>& profilePoints(int count = kProfilePoints, unsigned seed = 1);

/// A scan: rows of profiles 0.5 mm apart in z, points 0.0625 mm apart in x, heights of a rough surface.
const QList<KxMath::KxPointXYZ>& scanPoints(int count);

/// The same points in random order.
const QList<KxMath::KxPointXYZ>& shuffledScan(int count);

/// The same points from the last one to the first.
const QList<KxMath::KxPointXYZ>& reversedScan(int count);

/// Uniformly distributed points in a cube of 100 mm.
const QList<KxMath::KxPointXYZ>& randomPoints(int count);

/// Uniformly distributed points in a cube, about one per cubic millimetre; the last 100 are far away, 50 mm apart.
const QList<KxMath::KxPointXYZ>& densePoints(int count);

/// 2-D points, x uniformly distributed over 1000 mm. Tail: the last hundredth is out of order; Swapped: a hundredth of the
/// points have changed places in pairs; Sawtooth: 16 runs in order.
enum class Order { Random, Sorted, Reversed, Tail, Swapped, Ties, Sawtooth };
/// @param list other points for each number
const QList<KxMath::KxPointXY>& orderedPoints(int count, Order order, int list = 0);

/// A set of `kRows` profiles of `kProfilePoints` points 0.0625 mm apart.
const KxMath::KxProfileZSet& profileSet();

/// A deep copy, so that nothing is copied while the time is measured.
template <typename T>
QList<T> freshCopy(const QList<T>& points) {
    QList<T> copy = points;
    copy.detach();
    return copy;
}

/// The name of a file in memory; every file of a run has the same few names.
QString memoryFile(const char* name);

} // namespace kxbench
