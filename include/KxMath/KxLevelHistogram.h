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
///
/// No member works on a const table. Different tables may be used by different threads at the same time; count(),
/// calcMassCenter() and writeToCSV() only read and may run together on one table.
template <typename T>
class KXMATH_EXPORT KxLevelHistogram {
public:
    QMap<float, int> levels; ///< counts by key; for the keys see calcFromPointCloud()

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
    /// counted under the index of their bin as a float, 0, 1, 2, ...: (y - minY) / `step`, truncated towards 0. An
    /// index outside the range of int becomes -2147483648; so does that of a NaN y.
    ///
    /// The size of the table is limited: a step that is 0 or NaN, or needs more than 1048576 levels, enters no levels,
    /// a negative one at most minY. The points are counted in any case.
    /// @param cloud the points
    /// @param step height of a bin, in the unit of y
    /// @return the number of entries of the table, 0 for an empty cloud
    int calcFromPointCloud(KxPointCloud<T>& cloud, float step);

    /// The number of entries of the table, not of points.
    int count();

    /// The mean rank, counted from 1 in the order of the keys, weighted by the counts. Deliberately a rank and not a
    /// level. Each product of count and rank is taken modulo 2^32, as a signed number; the sums are exact.
    /// @return the mean rank
    /// @return NaN for an empty table and when all counts are 0
    float calcMassCenter();

    /// Empties the table.
    void clear();

    /// Writes one line "key;count" per entry, in the order of the keys, ended by CR LF: the key with 6 decimals and
    /// padded with blanks to 4 characters. An existing file is replaced.
    /// @return true when the file was opened. A full disk is not reported: check the file where that matters
    /// @return false when the file could not be opened
    bool writeToCSV(QString fileName);
};

extern template class KXMATH_EXPORT KxLevelHistogram<KxPointXY>;
extern template class KXMATH_EXPORT KxLevelHistogram<KxPointXYZ>;
extern template class KXMATH_EXPORT KxLevelHistogram<KxPointXYZRGB>;

} // namespace KxMath
