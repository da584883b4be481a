// Counting the points of a cloud by height.
#pragma once

#include "KxMathExport.h"
#include "KxPointCloud.h"
#include "KxPoints.h"

#include <QtCore/QMap>
#include <QtCore/QString>

namespace KxMath {

/// Counts the points of a cloud by their y, in bins of a fixed step. There is one for each of the three point types;
/// they behave alike. Copies share the table until one of them is written.
template <typename T>
class KXMATH_EXPORT KxLevelHistogram {
public:
    QMap<float, int> levels; ///< counts by key; the keys are told at calcFromPointCloud()

    /// An empty table.
    KxLevelHistogram();
    KxLevelHistogram(const KxLevelHistogram& other);
    KxLevelHistogram& operator=(const KxLevelHistogram& other);
    ~KxLevelHistogram();

    /// Replaces the table by that of `cloud`. The cached range of the cloud is calculated first when its minY or maxY
    /// is unknown.
    ///
    /// Deliberately the table has two sets of keys, which coincide only for minY = 0 and a step of 1. The levels
    /// minY + i * `step`, from minY up to the first at or above maxY, are entered with the count 0. The points are
    /// counted under the numbers 0, 1, 2, ... of their bins as floats: (y - minY) / `step`, truncated towards 0. A
    /// number outside the range of int, that of a NaN y included, is -2147483648.
    ///
    /// No step makes the table grow without end: a step that is 0 or NaN, or asks for more than 1048576 levels, enters
    /// no levels, a negative one at most minY, and the points are counted all the same.
    /// @param step height of a bin, in the unit of y
    /// @return the number of entries of the table, 0 for an empty cloud
    int calcFromPointCloud(KxPointCloud<T>& cloud, float step);

    /// The number of entries of the table, not of points.
    int count();

    /// The mean rank, counted from 1 in the order of the keys, weighted by the counts. Deliberately a rank and not a
    /// level. Each product of count and rank is taken modulo 2^32, as a signed number; the sums are exact.
    /// @return NaN for an empty table and when all counts are 0
    float calcMassCenter();

    /// Empties the table.
    void clear();

    /// Writes one line "key;count" per entry, in the order of the keys, ended by CR LF: the key with 6 decimals and
    /// padded with blanks to 4 characters. An existing file is replaced.
    /// @return false when the file could not be opened. A full disk is not told: check the file where that matters
    bool writeToCSV(QString fileName);
};

extern template class KXMATH_EXPORT KxLevelHistogram<KxPointXY>;
extern template class KXMATH_EXPORT KxLevelHistogram<KxPointXYZ>;
extern template class KXMATH_EXPORT KxLevelHistogram<KxPointXYZRGB>;

} // namespace KxMath
