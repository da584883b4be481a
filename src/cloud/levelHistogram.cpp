// Counting the points of a cloud by height.
#include "KxMath/KxLevelHistogram.h"

#include "io/binaryIo.h"
#include "rounding/conversion.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace KxMath {

namespace {

/// Beyond this the empty levels would take memory that no number of points accounts for.
constexpr int kMaxLevels = 1 << 20;

/// Bin numbers below this are counted in a table.
constexpr qint64 kCounted = 65536;

/// A product as 32-bit integers give it, wrapped.
qint32 wrappedProduct(qint32 a, qint32 b) {
    return static_cast<qint32>(static_cast<quint32>(a) * static_cast<quint32>(b));
}

} // namespace

template <typename T>
KxLevelHistogram<T>::KxLevelHistogram() = default;

template <typename T>
KxLevelHistogram<T>::KxLevelHistogram(const KxLevelHistogram& other) = default;

template <typename T>
KxLevelHistogram<T>& KxLevelHistogram<T>::operator=(const KxLevelHistogram& other) = default;

template <typename T>
KxLevelHistogram<T>::~KxLevelHistogram() = default;

template <typename T>
int KxLevelHistogram<T>::calcFromPointCloud(KxPointCloud<T>& cloud, float step) {
    levels.clear();
    if (std::isnan(cloud.minY) || std::isnan(cloud.maxY)) {
        cloud.calcRange();
    }
    const float minY = cloud.minY;
    const float binCount = std::ceil(cloud.size_y() / step);
    const int levelCount = detail::truncToInt(static_cast<double>(binCount)) + 1; // far below 0 for NaN and infinities
    for (int i = 0; levelCount <= kMaxLevels && i < levelCount; ++i) {
        const float height = static_cast<float>(i) * step;
        levels.insert(height + minY, 0);
    }
    // Deliberately under the number of the bin and not under its level. Most numbers are small: these are counted in a
    // table, and go into the map once.
    std::vector<int> counts(static_cast<std::size_t>(std::clamp<qint64>(cloud.points.size(), 16, kCounted)));
    for (const T& p : std::as_const(cloud.points)) {
        const float quotient = (p.y - minY) / step;
        const int bin = detail::truncToInt(static_cast<double>(quotient));
        if (static_cast<std::size_t>(bin) < counts.size()) { // below 0: a huge one
            ++counts[static_cast<std::size_t>(bin)];
        } else {
            ++levels[static_cast<float>(bin)];
        }
    }
    for (std::size_t bin = 0; bin < counts.size(); ++bin) {
        if (counts[bin] > 0) {
            levels[static_cast<float>(bin)] += counts[bin];
        }
    }
    return count();
}

template <typename T>
int KxLevelHistogram<T>::count() {
    return static_cast<int>(levels.size());
}

template <typename T>
float KxLevelHistogram<T>::calcMassCenter() {
    qint64 weightedSum = 0;
    qint64 sum = 0;
    qint32 rank = 0;
    for (const int count : std::as_const(levels)) {
        ++rank;
        weightedSum += wrappedProduct(count, rank);
        sum += count;
    }
    return static_cast<float>(static_cast<double>(weightedSum) / static_cast<double>(sum));
}

template <typename T>
void KxLevelHistogram<T>::clear() {
    levels.clear();
}

template <typename T>
bool KxLevelHistogram<T>::writeToCSV(QString fileName) {
    QFile file(fileName);
    if (!detail::openForWriting(file)) {
        return false;
    }
    for (auto level = levels.cbegin(); level != levels.cend(); ++level) {
        const QString line =
            QStringLiteral("%1;%2\r\n").arg(static_cast<double>(level.key()), 4, 'f').arg(level.value());
        file.write(line.toUtf8());
    }
    file.close();
    return true;
}

template class KxLevelHistogram<KxPointXY>;
template class KxLevelHistogram<KxPointXYZ>;
template class KxLevelHistogram<KxPointXYZRGB>;

} // namespace KxMath
