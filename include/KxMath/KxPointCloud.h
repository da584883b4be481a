// The point cloud: an ordered sequence of points with a cached bounding box and an optional index by z.
#pragma once

#include "KxMathExport.h"
#include "KxPoints.h"

#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtCore/QString>

class QFile;

namespace KxMath {

/// Order of a sort key. Every test reads: 1 is ascending, any other value is descending, except where a function says
/// that `KxSortNone` switches a key off.
enum KxSortOrder : int {
    KxSortNone = 0,
    KxSortAscending = 1,
    KxSortDescending = 2,
};

/// An ordered sequence of points of type `T`, held by value in `points`.
///
/// There are three clouds, one per point type; they share what is described here and differ in the members that make
/// sense for their points.
///
/// **Range.** `minX` ... `maxZ` are a cache. NaN means unknown. Only calcRange() makes the range from the points; other
/// operations say so where they touch it, and all others leave it as it was.
///
/// **Copies** are deep. The copy constructor takes a non-const reference and there is no move constructor: clouds are
/// passed and returned by value freely, but a const cloud cannot be copied by construction. Assign it to an empty
/// cloud instead:
/// @code
/// KxMath::KxPointCloud<KxMath::KxPointXYZ> copy;
/// copy = constCloud;
/// @endcode
///
/// **Failure** is told by results only; nothing throws on bad data. Positions that are passed in are trusted.
template <typename T>
class KxPointCloud;

/// A 2-D cloud, the base of KxProfile.
template <>
class KXMATH_EXPORT KxPointCloud<KxPointXY> {
public:
    QList<KxPointXY> points; ///< the points in their stored order
    float minX, maxX; ///< cached range of x
    float minY, maxY; ///< cached range of y
    float minZ, maxZ; ///< cached range of z; stays NaN, a 2-D cloud has no z
    QMap<float, int> zIndex; ///< unused by 2-D clouds
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
    bool isEmpty();

    /// Drops all points and makes the range unknown. `zIndex` and `zIndexBuilt` stay.
    void clear();

    /// Replaces the points by copies of those of `src` and takes over its range as it is, known or not.
    /// `zIndexBuilt` becomes 0. A cloud copied from itself keeps its points.
    void copyFromPointCloud(const KxPointCloud& src);

    /// Appends copies of the points of `src` and widens the range to that of `src`, `zIndexBuilt` becomes 0.
    /// A bound that is unknown on either side deliberately stays as it is: an empty cloud that is appended to has an
    /// unknown range until calcRange(). A cloud appended to itself doubles.
    void appendFromPointCloud(const KxPointCloud& src);

    /// Makes the range from all points. A NaN coordinate never replaces a known bound.
    /// Deliberately, `maxY` is not reset first: a value left from earlier survives when it is larger than every y.
    void calcRange();

    /// The extent in x: maxX - minX of the cached range, NaN when a bound is unknown.
    float size_x();
    /// The extent in y of the cached range, NaN when a bound is unknown.
    float size_y();

    /// Moves the points. An offset of exactly 0 leaves that coordinate untouched, NaN coordinates included; any other
    /// offset is added, NaN included. `dz` has no effect. The range is not updated.
    void shift(float dx, float dy, float dz);

    /// Scales the points about the origin. A factor of exactly 1 leaves that coordinate untouched; `sz` has no effect.
    /// The range is not updated.
    void resize(float sx, float sy, float sz);

    /// The centre of the bounding box. The range is calculated first when an extent is unknown.
    /// @return false, `out` unchanged, when the cloud is empty
    bool calcCenterPoint(KxPointXY& out);

    /// The mean of the points, from single-precision sums in stored order.
    /// (The name is written so in the interface.)
    /// @return false, `out` unchanged, when the cloud is empty
    bool caclCenterMassPoint(KxPointXY& out);

    /// The mean of y, from a single-precision sum in stored order; 0 for an empty cloud.
    float calcAverageY();

    /// Writes one section at the position of `f`: the type byte 2, the count in 2 bytes, then x and y
    /// of each point, all little-endian. Does not open, flush or close the file.
    /// The count is deliberately written modulo 65536, while every point is written.
    /// @return false when a write was short; what was written stays
    bool writeToFile(QFile& f);
    /// Writes a file with one section, replacing an existing one.
    /// @return false when the file could not be opened or when not all data reached it
    bool writeToFile(QString name);

    /// Reads one section at the position of `f`. The cloud is emptied first; its range grows with the points.
    /// A count is a claim: memory follows the bytes that are there.
    /// @return the number of points read
    /// @return -1 for another type byte or a section cut short; the position is then that before the call, and the
    ///         complete points before the cut stay in the cloud
    int readFromFile(QFile& f);
    /// Reads the section at the start of a file.
    /// @return as above, also -1 when the file could not be opened
    int readFromFile(QString name);

    /// Sorts the points by x, ascending when `first` is 1, else descending; `second` has no effect.
    /// The sort is stable. A point with NaN x stays where it is and no point passes it: each run of points between
    /// two such points is sorted on its own.
    void sort(KxSortOrder first, KxSortOrder second);

    /// The position of the first point whose x equals `v` exactly, -1 when there is none. NaN never matches.
    int getIndexX(float v);
    /// The same for y.
    int getIndexY(float v);

    /// The positions of the points inside a box, in stored order. Bounds are inclusive, a NaN bound is switched off, a
    /// NaN coordinate fails every bound that is switched on.
    /// @return the size of `out`
    int getRangeIndeces(QList<int>& out, float minX, float maxX, float minY, float maxY);

    /// Removes points by position. `positions` is sorted ascending and worked off from the largest on: an entry at or
    /// beyond the current count is skipped, a negative one removes nothing but is counted, and a repeated entry removes
    /// the point that has moved up to that position.
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
    bool isEmpty();

    /// Drops all points and makes the range unknown. `zIndex` and `zIndexBuilt` stay.
    void clear();

    /// Replaces the points by copies of those of `src` and takes over its range as it is, known or not.
    /// `zIndexBuilt` becomes 0. A cloud copied from itself keeps its points.
    void copyFromPointCloud(const KxPointCloud& src);

    /// Appends copies of the points of `src` and widens the range to that of `src`, `zIndexBuilt` becomes 0.
    /// A bound that is unknown on either side deliberately stays as it is: an empty cloud that is appended to has an
    /// unknown range until calcRange(). A cloud appended to itself doubles.
    void appendFromPointCloud(const KxPointCloud& src);

    /// Makes the range from all points. A NaN coordinate never replaces a known bound.
    void calcRange();

    /// The extent in x: maxX - minX of the cached range, NaN when a bound is unknown.
    float size_x();
    /// The extent in y of the cached range, NaN when a bound is unknown.
    float size_y();
    /// The extent in z of the cached range, NaN when a bound is unknown.
    float size_z();

    /// Moves the points. An offset of exactly 0 leaves that coordinate untouched, NaN coordinates included; any other
    /// offset is added, NaN included. The range is not updated.
    void shift(float dx, float dy, float dz);

    /// Turns the points about the z axis by `deg` degrees, from +x towards +y, by way of polar coordinates: also a
    /// turn by 0 rounds the points. The range is not updated, `zIndexBuilt` becomes 0.
    void rotateXY(float deg);
    /// The same in the plane of x and z, from +x towards +z.
    void rotateXZ(float deg);
    /// The same in the plane of y and z, from +y towards +z.
    void rotateYZ(float deg);
    /// rotateXY(), then rotateXZ(), then rotateYZ(), each only when its angle is neither 0 nor NaN.
    void rotate(float degXY, float degXZ, float degYZ);

    /// The centre of the bounding box. The range is calculated first when an extent is unknown.
    /// @return false, `out` unchanged, when the cloud is empty
    bool calcCenterPoint(KxPointXYZ& out);

    /// The mean of the points, from single-precision sums in stored order.
    /// (The name is written so in the interface.)
    /// @return false, `out` unchanged, when the cloud is empty
    bool caclCenterMassPoint(KxPointXYZ& out);

    /// The mean of y, from a single-precision sum in stored order; 0 for an empty cloud.
    float calcAverageY();

    /// Writes one section at the position of `f`: the type byte 3, the count in 4 bytes, then x, y and z
    /// of each point, all little-endian. Does not open, flush or close the file.
    /// @return false when a write was short; what was written stays
    bool writeToFile(QFile& f);
    /// Writes a file with one section, replacing an existing one.
    /// @return false when the file could not be opened or when not all data reached it
    bool writeToFile(QString name);

    /// Reads one section at the position of `f`. The cloud is emptied first; its range grows with the points.
    /// A count is a claim: memory follows the bytes that are there.
    /// @return the number of points read
    /// @return -1 for another type byte or a section cut short; the position is then that before the call, and the
    ///         complete points before the cut stay in the cloud
    int readFromFile(QFile& f);
    /// Reads the section at the start of a file.
    /// @return as above, also -1 when the file could not be opened
    int readFromFile(QString name);

    /// Writes the headerless export: x, y, z and 0.0 of each point, 16 bytes, little-endian floats.
    /// @return false when the file could not be opened or when not all data reached it
    bool compat_writeToXYZFile(QString name);

    /// Sorts the points. Each sort is stable; a point with a NaN key stays where it is and no point passes it.
    ///
    /// With `second` 0: by x only, ascending when `first` is 1, else descending; the index is not touched.
    /// Otherwise by z, ascending when `second` is 1, else descending, then buildZIndex(), and unless `first` is 0 a
    /// sort by x within stretches of the index: for neighbouring index entries, in ascending order of their keys, the
    /// positions from the value of the one to the value of the other, both included. Deliberately, such a stretch
    /// starts at the last point of the run before, the last run is never sorted by x, and after a descending z sort no
    /// stretch is. The index is not rebuilt afterwards, although points may have left their run.
    void sort(KxSortOrder first, KxSortOrder second);

    /// Makes `zIndex` anew and sets `zIndexBuilt`. The keys are the z values met; the value is 0 for the first point
    /// and, deliberately, i - 1 for a point i whose z differs from that of the point before: the last position of the
    /// run before. A z met again overwrites its entry. NaN differs from everything; what the map holds for a NaN key
    /// is what QMap::insert() leaves. An empty cloud has an empty index.
    void buildZIndex();

    /// The position of the first point whose x equals `v` exactly, -1 when there is none. NaN never matches.
    int getIndexX(float v);
    /// The same for y.
    int getIndexY(float v);
    /// The same for z. Scans the points; the z index is not used.
    int getIndexZ(float v);

    /// The positions of the points inside a box, in stored order. Bounds are inclusive, a NaN bound is switched off, a
    /// NaN coordinate fails every bound that is switched on.
    /// @return the size of `out`
    int getRangeIndeces(QList<int>& out, float minX, float maxX, float minY, float maxY, float minZ, float maxZ);
    /// The positions of the points at most diameter / 2 away from `centre`, in stored order.
    /// @return the size of `out`
    int getRangeIndeces(QList<int>& out, KxPointXYZ centre, float diameter);

    /// Removes points by position. `positions` is sorted ascending and worked off from the largest on: an entry at or
    /// beyond the current count is skipped, a negative one removes nothing but is counted, and a repeated entry removes
    /// the point that has moved up to that position.
    /// @return the number of entries counted
    int removeIndeces(QList<int>& positions);

    /// Removes the points outside a box, with the bounds of getRangeIndeces(). The range is then clamped to the box
    /// without looking at the points; a bound that is switched off makes its side of the range unknown.
    void trim(float minX, float maxX, float minY, float maxY, float minZ, float maxZ);

    /// Copies the points inside a box to `out`, in reverse stored order, and removes them from this cloud when `remove`
    /// is true. `out` is emptied first when it holds points; its range is not calculated. With `remove`, `zIndexBuilt`
    /// becomes 0. No state of the index changes which points are found.
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
    // innermost. A cell sees only what the cells before it have left, and a cloud without extent along an axis has no
    // cells. The walk along an axis ends where the step is too small to advance in single precision; a `cell` of 0 or
    // below has no cells. Points with a NaN coordinate are in no cell. Each returns the number of points removed;
    // `zIndexBuilt` becomes 0 when there are any.

    /// Removes the points of each cube that holds fewer than `minCount`. Points on a face belong to both cubes. Nothing
    /// happens to a cloud of fewer than `minCount` points.
    /// @param cell edge of the cubes; NaN makes one cube without an upper end
    int cubicFilter(float cell, int minCount);

    /// Removes the points of each cell that holds fewer than `minCount`, and of the other cells those whose nearest
    /// neighbour in the same cell is more than `maxDist` away; where they leave fewer than `minCount`, all points of
    /// the cell. A single point of a cell has no neighbour and is not removed for its distance.
    /// @param cell edge of the cubes, or diameter of the balls; NaN makes one cube without an upper end, and no ball.
    ///        Balls of a diameter below 7.5e-23, whose squares vanish in single precision, are no cells
    /// @param maxDist NaN or infinite: no point is too far away
    /// @param spherical balls about the centres of cubes instead of cubes, with a step of cell / 1.41421, so that they
    ///        overlap
    int cubicFilter2(float cell, float maxDist, int minCount, bool spherical);

    /// cubicFilter2() with balls.
    int sphericalFilter2(float cell, float maxDist, int minCount);

    /// Takes the cloud for a stack of profiles at z = minZ, minZ + `step`, ..., each 0.0001 thick, and finds in each
    /// the points beyond the lowest ones on both sides of the highest one. The range is calculated first.
    ///
    /// Deliberately, the cloud is then trimmed to each of these points with trim(): the first one leaves only the
    /// points equal to it, and another one empties the cloud; the range is clamped to them. A cloud without such points
    /// is left as it is. In a profile without y of at least 0, the highest point is looked for where it was in the one
    /// before.
    void clearEdgeEffect(float step);

    /// Finds a tape on a surface and appends its points to `tape`. In each slab of thickness `step` along z, from the
    /// smallest z on, a base line y(x) is fitted to the surface, and the longest run of points along x that stands
    /// between `minHeight` and `maxHeight` above it is taken.
    ///
    /// The base line starts from the slope of the least quantile of squares (Rousseeuw, J. Am. Stat. Assoc. 79, 1984)
    /// and the lowest of the densest thirds of the heights about it, and is a least-squares line through what lies
    /// within 2.5 standard deviations, iterated; a tape may cover somewhat less than half of a slab. A run is judged by
    /// running medians of 9 heights, and the bounds give way by the roughness of the surface, so that a rough tape
    /// stays in one piece. Slabs of fewer than 16 points and runs of fewer than 5 are passed over.
    ///
    /// This cloud is not changed. Points with a coordinate that is NaN or infinite are passed over. The points are
    /// appended slab by slab in the order of x; the range of `tape` is not updated, its `zIndexBuilt` becomes 0.
    /// @param step thickness of a slab; NaN, 0 or below finds nothing
    /// @param minHeight lower bound, inclusive, in the unit of y; NaN is no bound
    /// @param maxHeight upper bound, likewise
    /// @return the number of points appended
    int extractInsulatingTape(KxPointCloud<KxPointXYZ>& tape, float step, float minHeight, float maxHeight);

protected:
    /// Widens the range by one point. A NaN coordinate becomes a bound only while that bound is unknown.
    void updateRange(KxPointXYZ& p);
    /// Writes the byte `m`. @return true when it was written
    bool writeMarker(QFile& f, unsigned char m);
    /// Reads one byte. @return true when one was read and it equals `m`
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
    bool isEmpty();

    /// Drops all points and makes the range unknown. `zIndex` and `zIndexBuilt` stay.
    void clear();

    /// Replaces the points by copies of those of `src` and takes over its range as it is, known or not.
    /// `zIndexBuilt` becomes 0. A cloud copied from itself keeps its points.
    void copyFromPointCloud(const KxPointCloud& src);

    /// Appends copies of the points of `src` and widens the range to that of `src`, `zIndexBuilt` becomes 0.
    /// A bound that is unknown on either side deliberately stays as it is: an empty cloud that is appended to has an
    /// unknown range until calcRange(). A cloud appended to itself doubles.
    void appendFromPointCloud(const KxPointCloud& src);

    /// Makes the range from all points. A NaN coordinate never replaces a known bound.
    void calcRange();

    /// The extent in x: maxX - minX of the cached range, NaN when a bound is unknown.
    float size_x();
    /// The extent in y of the cached range, NaN when a bound is unknown.
    float size_y();
    /// The extent in z of the cached range, NaN when a bound is unknown.
    float size_z();

    /// Moves the points. An offset of exactly 0 leaves that coordinate untouched, NaN coordinates included; any other
    /// offset is added, NaN included. The range is not updated.
    void shift(float dx, float dy, float dz);

    /// The centre of the bounding box. The range is calculated first when an extent is unknown. The colour of `out` is
    /// not written.
    /// @return false, `out` unchanged, when the cloud is empty
    bool calcCenterPoint(KxPointXYZRGB& out);

    /// The mean of the points, from single-precision sums in stored order. The colour of `out` is not written.
    /// (The name is written so in the interface.)
    /// @return false, `out` unchanged, when the cloud is empty
    bool caclCenterMassPoint(KxPointXYZRGB& out);

    /// The mean of y, from a single-precision sum in stored order; 0 for an empty cloud.
    float calcAverageY();

    /// Writes one section at the position of `f`: the type byte 4, the count in 4 bytes, then x, y, z and rgb
    /// of each point, all little-endian. Does not open, flush or close the file.
    /// @return false when a write was short; what was written stays
    bool writeToFile(QFile& f);
    /// Writes a file with one section, replacing an existing one.
    /// @return false when the file could not be opened or when not all data reached it
    bool writeToFile(QString name);

    /// Reads one section at the position of `f`. The cloud is emptied first; its range grows with the points.
    /// A count is a claim: memory follows the bytes that are there.
    /// @return the number of points read
    /// @return -1 for another type byte or a section cut short; the position is then that before the call, and the
    ///         complete points before the cut stay in the cloud
    int readFromFile(QFile& f);
    /// Reads the section at the start of a file.
    /// @return as above, also -1 when the file could not be opened
    int readFromFile(QString name);

    /// Sorts the points. Each sort is stable; a point with a NaN key stays where it is and no point passes it.
    ///
    /// With `second` 0: by x only, ascending when `first` is 1, else descending; the index is not touched.
    /// Otherwise by z, ascending when `second` is 1, else descending, then buildZIndex(), and unless `first` is 0 a
    /// sort by x within stretches of the index: for neighbouring index entries, in ascending order of their keys, the
    /// positions from the value of the one to the value of the other, both included. Deliberately, such a stretch
    /// starts at the last point of the run before, the last run is never sorted by x, and after a descending z sort no
    /// stretch is. The index is not rebuilt afterwards, although points may have left their run.
    void sort(KxSortOrder first, KxSortOrder second);

    /// Makes `zIndex` anew and sets `zIndexBuilt`. The keys are the z values met; the value is 0 for the first point
    /// and, deliberately, i - 1 for a point i whose z differs from that of the point before: the last position of the
    /// run before. A z met again overwrites its entry. NaN differs from everything; what the map holds for a NaN key
    /// is what QMap::insert() leaves. An empty cloud has an empty index.
    void buildZIndex();

    /// The positions of the points inside a box, in stored order. Bounds are inclusive, a NaN bound is switched off, a
    /// NaN coordinate fails every bound that is switched on.
    /// @return the size of `out`
    int getRangeIndeces(QList<int>& out, float minX, float maxX, float minY, float maxY, float minZ, float maxZ);

    /// Removes points by position. `positions` is sorted ascending and worked off from the largest on: an entry at or
    /// beyond the current count is skipped, a negative one removes nothing but is counted, and a repeated entry removes
    /// the point that has moved up to that position.
    /// @return the number of entries counted
    int removeIndeces(QList<int>& positions);

protected:
    /// Widens the range by one point. A NaN coordinate becomes a bound only while that bound is unknown.
    void updateRange(KxPointXYZRGB& p);
    /// Writes the byte `m`. @return true when it was written
    bool writeMarker(QFile& f, unsigned char m);
    /// Reads one byte. @return true when one was read and it equals `m`
    bool readMarker(QFile& f, unsigned char m);
};

} // namespace KxMath
