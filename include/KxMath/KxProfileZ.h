// Profiles that carry their position along the scan axis, and the sets of them that make up a scan.
#pragma once

#include "KxMathExport.h"
#include "KxProfile.h"

#include <QtCore/QList>
#include <QtCore/QString>

namespace KxMath {

class KxMatrixCloud;

/// A profile with the position `z` at which it was taken.
///
/// **Assignment appends**: both operators add the points of the other profile to those already here and return nothing.
/// To replace a profile, clear it first, and calculate the range afterwards, which is still the old one otherwise:
/// @code
/// target.clear();
/// target = source;
/// target.calcRange();
/// @endcode
/// An assigned KxProfile has no position: set `z` as well. Copy construction is a plain copy.
///
/// In a QList<KxProfileZ> the calls that assign elements are therefore forbidden: `swapItemsAt`, `removeIf`, `move`,
/// `replace`, `fill`, and sorting. `append`, `insert`, `removeAt` and element access are safe.
///
/// No member works on a const profile, see KxPointCloud, also for threads.
class KXMATH_EXPORT KxProfileZ : public KxProfile {
public:
    float z; ///< position along the scan axis, NaN when none is set

    /// An empty profile without a position.
    KxProfileZ();
    /// An empty profile at `z`.
    KxProfileZ(float z);
    /// A profile at `z` with the `count` points of a sensor buffer, see KxProfile::copyFromXYPointsBuffer().
    KxProfileZ(float z, float* buffer, unsigned short count);
    /// A copy of the points and of `z`; the range is unknown.
    KxProfileZ(const KxProfileZ& other);
    /// The points of `other`, without a position.
    KxProfileZ(const KxProfile& other);
    ~KxProfileZ();

    /// Deliberately appends the points of `other` to those here, then takes its `z`.
    void operator=(const KxProfileZ& other);
    /// Deliberately appends the points of `other` to those here, then sets `z` to NaN.
    void operator=(const KxProfile& other);

    /// Removes all points and sets `z` to NaN. The range stays.
    void clear();

    /// Writes one profile record at the position of `file`: the marker 5, the count in 2 bytes, `z`, then x and y of
    /// each point, all little-endian. The count is deliberately written modulo 65536, while every point is written.
    /// Does not open, flush or close the file.
    /// @return true when all bytes were accepted by the file's buffer
    /// @return false when a write was short; what was written stays
    bool writeToFile(QFile& file);
    /// Writes a file with one record, replacing an existing one.
    /// @return true when all data reached the file
    /// @return false when the file could not be opened or written in full
    bool writeToFile(QString fileName);

    /// Reads one profile record at the position of `file`. The points are removed and `z` is set to NaN first; the
    /// range stays. The count in a file is not trusted: memory is allocated only for bytes that are present.
    /// @return the number of points read
    /// @return -1 for another marker or a record cut short; the position is then that before the call, and what was
    ///         read before the cut stays in the profile
    int readFromFile(QFile& file);
    /// Reads the first record of a file.
    /// @return as above, also -1 when the file could not be opened
    int readFromFile(QString fileName);
};

} // namespace KxMath

// Without this QList would move elements by assignment, which appends.
Q_DECLARE_TYPEINFO(KxMath::KxProfileZ, Q_RELOCATABLE_TYPE);

namespace KxMath {

/// A scan: the profiles taken at successive positions along the scan axis, in their order.
///
/// **Range.** `minX` ... `maxZ` are a cache. NaN means unknown. calcRange() calculates the range from the profiles; all
/// other functions leave it as it was, clear() included, unless they say that they calculate it first.
///
/// **Copies share** the list of profiles until one of the sets writes, which copies it first. A profile copied in this
/// way has the points and the `z` of the other; its own cached range is unknown.
///
/// Profiles are added with `profiles.append()`. The calls of the list that assign elements are forbidden, see
/// KxProfileZ: `set.profiles[0] = profile` appends the points of `profile` to those there, too.
///
/// No member works on a const set, and temporaries do not bind to parameters that are non-const references. Different
/// sets may be used by different threads at the same time, also when they share profiles. size(), isEmpty(),
/// getRange(), toPointCloud(), writeToFile() and calcAverageY() only read the set and may run together on one, each
/// with an output of its own. toMatrixCloud() does not: it sorts the profiles.
class KXMATH_EXPORT KxProfileZSet {
public:
    QList<KxProfileZ> profiles; ///< the profiles in the order in which they were taken
    float minX, maxX; ///< cached range of x over all profiles
    float minY, maxY; ///< cached range of y over all profiles
    float minZ, maxZ; ///< cached `z` of the first and of the last profile
    float stepZ; ///< distance in z between neighbouring profiles, NaN when unknown

    /// An empty set with an unknown range.
    KxProfileZSet();
    KxProfileZSet(const KxProfileZSet& other);
    ~KxProfileZSet();
    KxProfileZSet& operator=(const KxProfileZSet& other);

    /// Removes all profiles. The range and `stepZ` stay.
    void clear();
    /// True when there are no profiles.
    bool isEmpty();
    /// The number of profiles.
    int size();

    /// Copies the profiles with zMin <= `z` <= zMax to `out`, which is emptied first; a profile with NaN `z` is in no
    /// range, and a NaN bound excludes all. The range of `out` stays. A set that is its own `out` ends empty.
    /// @return the size of `out`
    int getRange(float zMin, float zMax, KxProfileZSet& out);

    /// Replaces the profiles by those of a file of profile records (KxProfileZ::writeToFile()). Records without points
    /// are left out. Reading ends at the end of the file or at a damaged record; the result does not distinguish the
    /// two. The stored positions are deliberately not kept: every `z` is NaN until setZ(). The range stays.
    /// @return the number of profiles, 0 when the file could not be opened
    int readFromFile(QString fileName);
    /// Replaces the profiles by those of a file of 2-D cloud sections (KxPointCloud::writeToFile()), the first one at
    /// `z0`. The position advances by `dz` with each section, in a single-precision sum; a section without points is
    /// left out, but the position advances. Reading ends as above. The range stays.
    ///
    /// `stepZ` becomes `dz`, also when the file could not be opened.
    /// @return the number of profiles, 0 when the file could not be opened
    int readFromFile(QString fileName, float z0, float dz);

    /// Sets the position of profile i to z0 + i * dz, rounded once, and `stepZ` to `dz`, also in an empty set. `minZ`
    /// and `maxZ` stay.
    void setZ(float z0, float dz);

    /// Writes the profiles as a file of profile records without header or count, replacing an existing one.
    /// An empty set makes an empty file.
    /// @return true when all data reached the file
    /// @return false when the file could not be opened or written in full; what was written stays
    bool writeToFile(QString fileName);

    /// Replaces `cloud` by the points of the profiles from `first` to `last`, both included, with the `z` of their
    /// profile. The indices are trusted: one outside the set reads foreign memory. With `first` > `last` the cloud ends
    /// empty. Its range is not calculated.
    /// @return the size of `cloud`
    int toPointCloud(KxPointCloud<KxPointXYZ>& cloud, int first, int last);
    /// Replaces `cloud` by the points of all profiles.
    /// @return the size of `cloud`
    int toPointCloud(KxPointCloud<KxPointXYZ>& cloud);

    /// Calculates the range from the ranges of the profiles (KxProfile::calcRange()), without those that are NaN, and
    /// from `z` of the first and of the last profile. Deliberately, `minZ` and `maxZ` are not reset first: a NaN
    /// position leaves the previous value. An empty set is not changed.
    void calcRange();

    /// Resamples the set on a regular grid: a row per profile and columns `stepZ` apart from `minX` on, so that
    /// `stepZ` is the pitch of both axes. There are ceil((maxX - minX) / stepZ) columns, in single precision; a column
    /// at j * stepZ + minX, rounded once, has the heights KxProfile::calcY() there. The range is calculated first when
    /// `minX` or `maxX` is NaN. The profiles are left sorted by x.
    /// @param matrix receives the grid and the ranges of the set
    /// @param maxDistance the largest distance over which calcY() interpolates, NaN for no limit
    /// @param step only confirms the pitch: NaN, or the value of `stepZ`. To resample at another pitch, build a
    ///        set with it: toPointCloud(), then calcFromPointCloud()
    /// @return the number of cells with a height
    /// @return 0, `matrix` unchanged, for an empty set, for another `step`, and without a range of x
    /// @return 0, `matrix` without a grid, when KxMatrixCloud::initMatrix() refuses the number of columns:
    ///         for a `stepZ` that is NaN, 0, negative or too small
    int toMatrixCloud(KxMatrixCloud& matrix, float maxDistance, float step);

    /// The mean of the mean heights of the profiles, with equal weights, from single-precision sums; a profile without
    /// points counts as 0. NaN spreads. 0 for an empty set.
    float calcAverageY();

    /// Slices a cloud into profiles `step` apart, of which the first one is at the smallest z of the cloud's range. The
    /// range of the cloud is calculated first when `minZ` is unknown; a known one is trusted.
    ///
    /// There are ceil(extent / step) + 1 profiles, in single precision, profile k at k * step + minZ, rounded once.
    /// A point goes to the nearer of the two profiles around it, to the later one at equal distances; where more than
    /// one pair is around it, the first pair is used. A point that is not between two profiles is dropped: all points
    /// when they share one z, since there is only one profile then. Within a profile the points keep their order.
    /// `stepZ` becomes `step`, the range stays.
    /// @return the number of profiles
    /// @return 0, the set empty, for a `step` that is not above 0, for a cloud without a known extent in z, and when
    ///         there would be more than 16777216 profiles (where single precision ceases to count them) or more
    ///         than memory holds
    int calcFromPointCloud(KxPointCloud<KxPointXYZ>& cloud, float step);

    /// Appends to each profile a copy of its points between a low point and its highest point, and makes its `z` NaN.
    /// This does not cut edges; KxMatrixWithHistos::cutEdgeEffects() does.
    ///
    /// The highest point is the last one with the largest y so far, the low point the last one with the smallest y, at
    /// most 0, so far before the index of the highest point. Deliberately, both, their indices included, are carried
    /// over from one profile to the next. The copy does not include the points after the index of the highest point.
    /// From its head, deliberately, only every second point is left out, the first included: as many as the index of
    /// the low point, or as there are. Deliberately, the original points stay in front of the copy.
    ///
    /// Nothing happens when the set is empty or its first profile has no points.
    void clearEdgeEffect();
};

} // namespace KxMath
