// The point cloud: an ordered sequence of points with a cached bounding box and an optional index by z.
#pragma once

#include "KxMathExport.h"
#include "KxPoints.h"

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QString>

class QFile;

namespace KxMath {

/// Order of a sort key. 1 is ascending and any other value is descending, except where a function says that
/// `KxSortNone` switches a key off.
enum KxSortOrder : int {
    KxSortNone = 0,
    KxSortAscending = 1,
    KxSortDescending = 2,
};

/// An ordered sequence of points of type `T`, held by value in `points`.
///
/// There are three clouds, one per point type. The members that all of them have are described at
/// KxPointCloud<KxPointXY>.
///
/// **Range.** `minX` ... `maxZ` are a cache. NaN means unknown. calcRange() calculates the range from the points. Other
/// functions say so where they change it; all others leave it as it was, also when they add or move points.
///
/// **Copies** are deep. The copy constructor takes a non-const reference and there is no move constructor: clouds are
/// passed and returned by value freely, but a const cloud cannot be copied by construction. Assign it to an empty
/// cloud instead:
/// @code
/// KxMath::KxPointCloud<KxMath::KxPointXYZ> copy;
/// copy = constCloud;
/// @endcode
/// No member works on a const cloud, and temporaries do not bind to parameters that are non-const references.
///
/// **Threads.** Different clouds may be used by different threads at the same time, also when they share memory as
/// copies of a QList do. The following members only read their cloud and may run together on one cloud: size(),
/// isEmpty(), size_x(), size_y(), size_z(), caclCenterMassPoint(), calcAverageY(), writeToFile(),
/// compat_writeToXYZFile(), getIndexX(), getIndexY(), getIndexZ(), getRangeIndeces(), calcSection(), extract() without
/// `remove`, extractInsulatingTape(); and so may copying the cloud. All other members need it alone, calcCenterPoint()
/// and the density filters too: they calculate an unknown range. Where threads read `points` themselves, they need
/// `std::as_const(cloud.points)`: the non-const functions of a QList that shares its memory write.
///
/// **Failures** are reported only by return values; nothing throws on bad data. Pointers and files are the caller's: a
/// QFile must be open.
template <typename T>
class KxPointCloud;

// The three clouds are full specialisations, each with the declarations that all of them share. A common base class
// would hold these once, but they would belong to that base: with it, deducing `C` for `call(C&, void (C::*)())` from a
// cloud and `&KxPointCloud<KxPointXYZ>::calcRange` fails, such a member cannot be the argument of a template that takes
// pointers to members of the cloud, and the exported symbols carry the name of the base (tried with g++ 12 and clang
// 14). One template whose members are constrained does not work either: clang 14 instantiates those constrained out.
// A new member of all clouds is declared in each and described in the first.

/// A 2-D cloud, the base of KxProfile.
template <>
class KXMATH_EXPORT KxPointCloud<KxPointXY> {
public:
    QList<KxPointXY> points; ///< the points in their stored order
    float minX, maxX; ///< cached range of x
    float minY, maxY; ///< cached range of y
    float minZ, maxZ; ///< cached range of z; stays NaN, a 2-D cloud has no z
    QMap<float, int> zIndex; ///< not used by 2-D clouds
    int zIndexBuilt; ///< 0 in 2-D clouds

    /// An empty cloud with an unknown range.
    KxPointCloud();
    /// A deep copy of the points and of the range; the z index is not copied.
    KxPointCloud(KxPointCloud& other);
    ~KxPointCloud();

    /// copyFromPointCloud(). Deliberately returns nothing.
    void operator=(const KxPointCloud& other);
    /// appendFromPointCloud(). Deliberately returns nothing.
    void operator+=(const KxPointCloud& other);

    /// The number of points.
    int size();
    /// True when there are no points.
    bool isEmpty();

    /// Removes all points and makes the range unknown. `zIndex` and `zIndexBuilt` stay.
    void clear();

    /// Replaces the points by copies of those of `src` and takes over its range as it is, known or not.
    /// `zIndexBuilt` becomes 0. A cloud copied from itself keeps its points.
    void copyFromPointCloud(const KxPointCloud& src);

    /// Appends copies of the points of `src` and widens the range to that of `src`; `zIndexBuilt` becomes 0.
    /// A bound that is unknown on either side deliberately stays as it is: after appending to an empty cloud its range
    /// is unknown until calcRange(). A cloud appended to itself doubles.
    void appendFromPointCloud(const KxPointCloud& src);

    /// Calculates the range from all points. A NaN coordinate never replaces a known bound; a bound of coordinates that
    /// are all NaN is unknown.
    /// Deliberately, a 2-D cloud does not reset `maxY` first: an old value that is larger than every y survives.
    void calcRange();

    /// The extent in x: maxX - minX of the cached range, NaN when a bound is unknown.
    float size_x();
    /// The extent in y of the cached range, NaN when a bound is unknown.
    float size_y();

    /// Moves the points. An offset of exactly 0 leaves its coordinate untouched; any other offset is added, NaN
    /// included. `dz` has no effect on a 2-D cloud. The range is not updated.
    void shift(float dx, float dy, float dz);

    /// Scales the points about the origin. A factor of exactly 1 leaves its coordinate untouched; `sz` has no effect.
    /// The range is not updated.
    void resize(float sx, float sy, float sz);

    /// The centre of the bounding box. The range is calculated first when an extent is unknown. A colour is not
    /// written.
    /// @return true when `out` was written; coordinates whose range is unknown all the same are NaN
    /// @return false, `out` unchanged, when the cloud is empty
    bool calcCenterPoint(KxPointXY& out);

    /// The mean of the points, from single-precision sums in stored order; NaN spreads. A colour is not written.
    /// (The misspelling is part of the interface.)
    /// @return true when `out` was written
    /// @return false, `out` unchanged, when the cloud is empty
    bool caclCenterMassPoint(KxPointXY& out);

    /// The mean of y, from a single-precision sum in stored order; NaN spreads. 0 for an empty cloud.
    float calcAverageY();

    /// Writes one section at the position of `f`, all little-endian: a type byte, the count, then the fields of each
    /// point in the order of the point's class. The type byte is 2 for a 2-D cloud, 3 in space, 4 with colours. The
    /// count has 2 bytes in a 2-D section, else 4; that of a 2-D cloud is deliberately written modulo 65536, while
    /// every point is written. Does not open, flush or close the file.
    /// @return true when all bytes were accepted by the file's buffer
    /// @return false when a write was short; what was written stays
    bool writeToFile(QFile& f);
    /// Writes a file with one section, replacing an existing one.
    /// @return true when all data reached the file
    /// @return false when the file could not be opened or written in full
    bool writeToFile(QString name);

    /// Reads one section at the position of `f`. The cloud is emptied first; its range grows with the points.
    /// The count in a file is not trusted: memory is allocated only for bytes that are present.
    /// @return the number of points read
    /// @return -1 for another type byte or a section cut short; the position is then that before the call, and the
    ///         complete points before the cut stay in the cloud
    int readFromFile(QFile& f);
    /// Reads the section at the start of a file.
    /// @return as above, also -1 when the file could not be opened; the cloud is unchanged then
    int readFromFile(QString name);

    /// Sorts the points by x, ascending when `byX` is 1, else descending; `byZ` has no effect.
    /// The sort is stable. A point with NaN x keeps its position and no point moves across it: each run of points
    /// between two such points is sorted on its own.
    void sort(KxSortOrder byX, KxSortOrder byZ);

    /// The position of the first point whose x equals `v` exactly, -1 when no point matches. NaN never matches.
    int getIndexX(float v);
    /// The same for y.
    int getIndexY(float v);

    /// The positions of the points inside a box, in stored order. Bounds are inclusive and a NaN bound is switched off.
    /// A NaN coordinate fails every bound that is switched on. `out` is replaced.
    /// @return the size of `out`
    int getRangeIndeces(QList<int>& out, float minX, float maxX, float minY, float maxY);

    /// Removes points by position. `positions` is sorted ascending and processed from the largest on: an entry at or
    /// beyond the current count is skipped, a negative one removes nothing but is counted, and a repeated entry removes
    /// the point that has moved to that position. The range is not updated.
    /// @return the number of entries counted
    int removeIndeces(QList<int>& positions);

protected:
    /// Widens the range by one point. A NaN coordinate becomes a bound only while that bound is unknown.
    void updateRange(KxPointXY& p);
    /// Writes the byte `m`. @return true when it was written
    bool writeMarker(QFile& f, unsigned char m);
    /// Reads one byte. @return true when one was read and it equals `m`
    bool readMarker(QFile& f, unsigned char m);
};

/// A cloud in space.
template <>
class KXMATH_EXPORT KxPointCloud<KxPointXYZ> {
public:
    QList<KxPointXYZ> points; ///< the points in their stored order
    float minX, maxX; ///< cached range of x
    float minY, maxY; ///< cached range of y
    float minZ, maxZ; ///< cached range of z
    QMap<float, int> zIndex; ///< runs of equal z, see buildZIndex()
    int zIndexBuilt; ///< 1 while `zIndex` belongs to the points, else 0

    // As in KxPointCloud<KxPointXY>
    KxPointCloud();
    KxPointCloud(KxPointCloud& other);
    ~KxPointCloud();
    void operator=(const KxPointCloud& other);
    void operator+=(const KxPointCloud& other);
    int size();
    bool isEmpty();
    void clear();
    void copyFromPointCloud(const KxPointCloud& src);
    void appendFromPointCloud(const KxPointCloud& src);
    void calcRange();
    float size_x();
    float size_y();
    void shift(float dx, float dy, float dz);
    bool calcCenterPoint(KxPointXYZ& out);
    bool caclCenterMassPoint(KxPointXYZ& out);
    float calcAverageY();
    bool writeToFile(QFile& f);
    bool writeToFile(QString name);
    int readFromFile(QFile& f);
    int readFromFile(QString name);
    int removeIndeces(QList<int>& positions);

    /// The extent in z of the cached range, NaN when a bound is unknown.
    float size_z();

    /// Rotates the points about the z axis by `deg` degrees, from +x towards +y. The calculation goes through polar
    /// coordinates, so that a rotation by 0 rounds the points, too. The range is not updated, `zIndexBuilt` becomes 0.
    void rotateXY(float deg);
    /// The same in the plane of x and z, from +x towards +z.
    void rotateXZ(float deg);
    /// The same in the plane of y and z, from +y towards +z.
    void rotateYZ(float deg);
    /// rotateXY(), then rotateXZ(), then rotateYZ(), each only when its angle is neither 0 nor NaN.
    void rotate(float degXY, float degXZ, float degYZ);

    /// Writes the headerless export, replacing an existing file: x, y, z and 0.0 of each point, 16 bytes, little-endian
    /// floats.
    /// @return true when all data reached the file
    /// @return false when the file could not be opened or written in full
    bool compat_writeToXYZFile(QString name);

    /// Sorts the points. Each sort is stable; a point with a NaN key keeps its position and no point moves across it.
    ///
    /// With `byZ` 0: by x only, ascending when `byX` is 1, else descending; the index is not touched.
    /// Otherwise by z, ascending when `byZ` is 1, else descending, then buildZIndex(), and unless `byX` is 0 a sort by
    /// x within ranges of positions: for each two neighbouring entries of the index, in ascending order of their keys,
    /// from the value of the one to the value of the other, both included. Deliberately, such a range starts at the
    /// last point of the run before, the last run is never sorted by x, and after a descending z sort no range is. The
    /// index is not rebuilt afterwards, although points may have left their run.
    ///
    /// Two calls order the points fully, by z and then by x:
    /// @code
    /// cloud.sort(KxMath::KxSortAscending, KxMath::KxSortNone);
    /// cloud.sort(KxMath::KxSortNone, KxMath::KxSortAscending);
    /// @endcode
    void sort(KxSortOrder byX, KxSortOrder byZ);

    /// Rebuilds `zIndex` and sets `zIndexBuilt` to 1. The keys are the z values that occur. The value is 0 for the
    /// first point and, deliberately, i - 1 for a point i whose z differs from that of the point before: the last
    /// position of the run before. A z that occurs again overwrites its entry. NaN differs from everything; the map
    /// holds for NaN keys what QMap::insert() leaves. An empty cloud has an empty index.
    void buildZIndex();

    /// The position of the first point whose x equals `v` exactly, -1 when no point matches. NaN never matches.
    int getIndexX(float v);
    /// The same for y.
    int getIndexY(float v);
    /// The same for z. Scans the points; the z index is not used.
    int getIndexZ(float v);

    /// The positions of the points inside a box, as in KxPointCloud<KxPointXY>.
    /// @return the size of `out`
    int getRangeIndeces(QList<int>& out, float minX, float maxX, float minY, float maxY, float minZ, float maxZ);
    /// The positions of the points at most diameter / 2 away from `centre`, in stored order. `out` is replaced.
    /// @return the size of `out`
    int getRangeIndeces(QList<int>& out, KxPointXYZ centre, float diameter);

    /// Removes the points outside a box, with the bounds of getRangeIndeces(). The range is then clamped to the box
    /// without looking at the points; a bound that is switched off makes its side of the range unknown.
    void trim(float minX, float maxX, float minY, float maxY, float minZ, float maxZ);

    /// Copies the points inside a box to `out`, in reverse stored order, and removes them from this cloud when `remove`
    /// is true. `out` is emptied first when it holds points; its range is not calculated. With `remove`, `zIndexBuilt`
    /// becomes 0. The z index is not used.
    void extract(KxPointCloud& out, float minX, float maxX, float minY, float maxY, float minZ, float maxZ,
                 bool remove);

    /// Copies the points with |z - `z`| <= `halfWidth` to `out`, in stored order. `out` is emptied first; its range is
    /// not calculated.
    /// @return the size of `out`
    int calcSection(KxPointCloud& out, float z, float halfWidth);

    /// Removes the points with y <= `level`, or with `above` those with y >= `level`. Points with NaN y stay. The range
    /// is not updated.
    /// @return the number of points removed
    int removePointsByYLevel(float level, bool above);

    // Density filters. They walk a grid of cells over the cached range, which is calculated first when a bound of it is
    // unknown and not updated afterwards: along each axis from the minimum while below the maximum, x outermost and z
    // innermost. A cell contains only the points that the cells before it have left, and a cloud without extent along
    // an axis has no cells. The walk along an axis ends where the step is too small to advance in single precision;
    // with a `cell` of 0 or below there are no cells. Points with a NaN coordinate are in no cell and stay. Each filter
    // returns the number of points removed; `zIndexBuilt` becomes 0 when that is not 0.

    /// Removes the points of each cube that holds fewer than `minCount`. Points on a face belong to both cubes. Nothing
    /// happens to a cloud of fewer than `minCount` points.
    /// @param cell edge of the cubes; NaN makes one cube without an upper end
    /// @param minCount least number of points of a cube that keeps them
    /// @return the number of points removed
    int cubicFilter(float cell, int minCount);

    /// Removes the points of each cell that holds fewer than `minCount`. In the other cells it removes those whose
    /// nearest neighbour in the same cell is more than `maxDistance` away; where fewer than `minCount` are left, it
    /// removes all points of the cell. A single point of a cell has no neighbour and is not removed for its distance.
    /// @param cell edge of the cubes, or diameter of the balls; NaN makes one cube without an upper end, and no ball.
    ///        Balls of a diameter below 7.5e-23, whose squares vanish in single precision, are no cells
    /// @param maxDistance NaN or infinite: no point is too far away
    /// @param minCount least number of points of a cell that keeps them
    /// @param spherical balls about the centres of cubes instead of cubes, with a step of cell / 1.41421, so that they
    ///        overlap
    /// @return the number of points removed
    int cubicFilter2(float cell, float maxDistance, int minCount, bool spherical);

    /// cubicFilter2() with balls.
    /// @return the number of points removed
    int sphericalFilter2(float cell, float maxDistance, int minCount);

    /// Treats the cloud as a stack of profiles at z = minZ, minZ + `step`, ..., each 0.0001 thick, and finds in each
    /// the points beyond the lowest ones on both sides of the highest one. The range is calculated first.
    ///
    /// Deliberately, the cloud is then trimmed to each of these points with trim(): the first one leaves only the
    /// points equal to it, and another one empties the cloud; the range is clamped to them. This does not cut edges;
    /// KxMatrixWithHistos::cutEdgeEffects() does. A cloud without such points is left as it is. In a profile without y
    /// of at least 0, the position of the highest point is that in the profile before.
    void clearEdgeEffect(float step);

    /// Finds a tape on a surface and appends its points to `tape`. In each slab of thickness `step` along z, from the
    /// smallest z on, a base line y(x) is fitted to the surface, and the longest run of points along x that is between
    /// `minHeight` and `maxHeight` above it is taken.
    ///
    /// The base line starts from the slope of the least quantile of squares (Rousseeuw, J. Am. Stat. Assoc. 79, 1984)
    /// and the lowest of the densest thirds of the heights about it, and is a least-squares line through the points
    /// within 2.5 standard deviations, iterated; a tape may cover somewhat less than half of a slab. A run is judged by
    /// running medians of 9 heights, and the bounds are widened by the roughness of the surface, so that a rough tape
    /// stays in one piece. Slabs of fewer than 16 points and runs of fewer than 5 are skipped.
    ///
    /// This cloud is not changed. Points with a coordinate that is NaN or infinite are skipped. The points are appended
    /// slab by slab in the order of x; the range of `tape` is not updated, its `zIndexBuilt` becomes 0.
    /// @param tape receives the points
    /// @param step thickness of a slab; NaN, 0 or below finds nothing
    /// @param minHeight lower bound, inclusive, in the unit of y; NaN is no bound
    /// @param maxHeight upper bound, likewise
    /// @return the number of points appended
    int extractInsulatingTape(KxPointCloud<KxPointXYZ>& tape, float step, float minHeight, float maxHeight);

protected:
    // As in KxPointCloud<KxPointXY>
    void updateRange(KxPointXYZ& p);
    bool writeMarker(QFile& f, unsigned char m);
    bool readMarker(QFile& f, unsigned char m);
};

/// A cloud in space with colours.
template <>
class KXMATH_EXPORT KxPointCloud<KxPointXYZRGB> {
public:
    QList<KxPointXYZRGB> points; ///< the points in their stored order
    float minX, maxX; ///< cached range of x
    float minY, maxY; ///< cached range of y
    float minZ, maxZ; ///< cached range of z
    QMap<float, int> zIndex; ///< runs of equal z, see buildZIndex()
    int zIndexBuilt; ///< 1 while `zIndex` belongs to the points, else 0

    // As in KxPointCloud<KxPointXY>
    KxPointCloud();
    KxPointCloud(KxPointCloud& other);
    ~KxPointCloud();
    void operator=(const KxPointCloud& other);
    void operator+=(const KxPointCloud& other);
    int size();
    bool isEmpty();
    void clear();
    void copyFromPointCloud(const KxPointCloud& src);
    void appendFromPointCloud(const KxPointCloud& src);
    void calcRange();
    float size_x();
    float size_y();
    void shift(float dx, float dy, float dz);
    bool calcCenterPoint(KxPointXYZRGB& out);
    bool caclCenterMassPoint(KxPointXYZRGB& out);
    float calcAverageY();
    bool writeToFile(QFile& f);
    bool writeToFile(QString name);
    int readFromFile(QFile& f);
    int readFromFile(QString name);
    int removeIndeces(QList<int>& positions);

    // As in KxPointCloud<KxPointXYZ>
    float size_z();
    void sort(KxSortOrder byX, KxSortOrder byZ);
    void buildZIndex();
    int getRangeIndeces(QList<int>& out, float minX, float maxX, float minY, float maxY, float minZ, float maxZ);

protected:
    // As in KxPointCloud<KxPointXY>
    void updateRange(KxPointXYZRGB& p);
    bool writeMarker(QFile& f, unsigned char m);
    bool readMarker(QFile& f, unsigned char m);
};

} // namespace KxMath
