// One laser-line profile with its measurement operations.
#pragma once

#include "KxInterpolant.h"
#include "KxMathExport.h"
#include "KxPointCloud.h"
#include "KxPrimitives.h"

#include <QtCore/QList>
#include <QtCore/QRectF>
#include <QtCore/QString>

namespace KxMath {

/// An ordered run of 2-D points across the laser line: `x` is the position along the line, `y` the measured value.
///
/// A profile is a KxPointCloud<KxPointXY> with operations and no fields of its own. The order of the points is that of
/// the list; nothing keeps a profile sorted, and operations that need an order say so. After toPolar() a point holds
/// the radius in `x` and the angle in degrees in `y`; the caller keeps track of the form.
///
/// **Copies** are deep. A const profile cannot be copied by construction; assign it to an empty one. Profiles are
/// returned and passed by value freely, but `QList<KxProfile>` cannot append: use `std::deque<KxProfile>` with
/// emplace_back() and an assignment, or pointers. No member works on a const profile, and temporaries do not bind to
/// parameters that are non-const references.
///
/// **The caller's part.** Pointers must not be null unless a function says so, and what they point to must be as large
/// as the function says. The indices of integral() are trusted. Where a function writes into the points of `out` by
/// index, `out` must hold at least as many points as the profile, and may be the profile itself.
///
/// Windows are counted in points. A window of 0 or below, or one longer than the data, changes nothing unless a
/// function says otherwise.
///
/// **Threads**, see KxPointCloud. These members only read their profile, too, and may run together on one profile, each
/// with outputs of its own: calcRange() into variables, findNearestToX(), calcLine(), calcCircle(), calcCorrelation(),
/// calcPolynomCoeffs(), derivative(), findZeros(), integral(), calcY(), calcCutPoint(), detectCutPoints(),
/// detectWeld(), detectCircle(), detectJoint(), calcLineSegment(), calcDistance(), writeToCSVFile(), and the filters and
/// line segments that write to `out`.
class KXMATH_EXPORT KxProfile : public KxPointCloud<KxPointXY> {
public:
    /// An empty profile.
    KxProfile();
    /// A profile with the `count` points of a sensor buffer, see copyFromXYPointsBuffer().
    KxProfile(float* buffer, unsigned short count);
    /// A deep copy.
    KxProfile(KxProfile& other);
    ~KxProfile();
    /// A deep copy, see KxPointCloud::copyFromPointCloud().
    KxProfile& operator=(const KxProfile& other);

    /// Appends `count` points from interleaved pairs of floats, x then y. Points already here stay.
    /// @param buffer 2 * `count` floats, which are only read; null only with a count of 0
    /// @param count number of points
    void copyFromXYPointsBuffer(float* buffer, unsigned short count);

    // Range

    /// The smallest and largest x and y. Of equal values the first counts; the search starts with the first point, and
    /// a NaN coordinate never wins a comparison (so a NaN in the first point stays). The cached range stays.
    /// @param minX receives the smallest x
    /// @param minY receives the smallest y
    /// @param maxX receives the largest x
    /// @param maxY receives the largest y
    /// @param indices null, or an array of four that receives the positions of the smallest x, largest x,
    ///        smallest y and largest y
    /// @return true when all were written
    /// @return false, nothing written, for an empty profile
    bool calcRange(float* minX, float* minY, float* maxX, float* maxY, int* indices = nullptr);
    /// Stores the range of x and y in the cached range.
    /// @return true when it was stored
    /// @return false, the cached range unchanged, for an empty profile
    bool calcRange();
    /// The range as a y-up rectangle: its top left corner is (smallest x, largest y) and its height is smallest minus
    /// largest y, which is zero or negative.
    /// @param rect receives the rectangle
    /// @param indices as above
    /// @return true when all were written
    /// @return false, nothing written, for an empty profile
    bool calcRange(QRectF& rect, int* indices);

    // Trimming; each returns the number of points removed

    /// Removes the points outside the bounds. Points on a bound stay, a NaN bound is switched off, and a NaN coordinate
    /// fails no bound.
    int trim(float minX, float minY, float maxX, float maxY);
    /// trim() with the rectangle's x, y, x + width and y + height as they are: the y-up rectangle of calcRange() has
    /// its y bounds swapped, and removes all points whose y is not equal to both.
    int trim(QRectF rect);
    /// Removes the points with y < `level`.
    int trimLower(float level);
    /// Removes the points with y > `level`.
    int trimUpper(float level);
    /// trim() with bounds of y only.
    int trimY(float minY, float maxY);
    /// trim() with bounds of x only.
    int trimX(float minX, float maxX);

    // Coordinates, changed in place

    /// Converts each point (x, y) to (radius, angle in degrees, 0 to 360). A NaN x gives the angle 0; so does a NaN y,
    /// except with x < 0, where the angle is NaN. The radius is NaN in both cases.
    void toPolar();
    /// Converts each point (radius, angle in degrees) to (x, y).
    void toEvklid();
    /// Adds `angle` degrees to the angles of a profile in polar form, which may then be outside 0 to 360. Nothing
    /// changes when `angle` is 0.
    void rotatePolar(float angle);
    /// Rotates the profile about the origin by `angle` degrees, counter-clockwise with y up. Nothing changes when
    /// `angle` is 0.
    void rotateEvklid(float angle);
    /// Rotates the profile about `center` by `angle` degrees. Points are shifted to the origin and back, which rounds
    /// them for the angle 0, too.
    void rotateFixed(float angle, KxPointXY& center);

    // Search and clean-up

    /// The first point at or beyond `x`: from the left the first point in list order with p.x >= x, from the right the
    /// last one with p.x <= x. Deliberately not the nearest point. From the left nothing is found for an `x` above the
    /// largest x, from the right for one below the smallest; these are the x of the last and of the first point after
    /// sorting by x.
    /// @return its position
    /// @return -1 when nothing is found
    int findNearestToX(float x, bool fromRight);
    /// The same, copying the point.
    /// @return true when `point` was written
    /// @return false, `point` unchanged, when nothing is found
    bool findNearestToX(float x, KxPointXY& point, bool fromRight);

    /// Removes all points whose x equals that of an earlier point, whatever their y. NaN equals nothing.
    /// @return the number of points removed
    int removeDuplicates();

    /// The x of the centre of the bounding box, see calcCenterPoint(); NaN for an empty profile.
    float calcCenterX();
    /// The y of that centre.
    float calcCenterY();
    /// The line through all points, see KxLine::calcFromPointCloud() for results and failures.
    bool calcLine(KxLine& line);
    /// The circle through all points, see KxCircle::calcFromPointCloud() for results and failures. detectCircle() takes
    /// only the upper points.
    bool calcCircle(KxCircle& circle);

    // Filters. Some write by index into an `out` of the caller, which may be this profile: an `out` that is too short for
    // what is written first gets all points of this profile that it lacks, so that an empty one becomes a copy. Where
    // nothing is written it stays as it is.

    /// Smooths y with a causal FIR filter of 20 taps. The curve lags by 10 points; the first 20 points are copied. The
    /// tap of the current point is 0, but it is multiplied: a NaN makes its own result NaN, too. A point more than
    /// `maxStep` in x beyond the one before is not smoothed (NaN: no limit). Nothing happens for fewer than 20 points.
    /// @param out written by index, completed when it is too short
    /// @param maxStep in x
    void kihFilter20(KxProfile& out, float maxStep);
    /// kihFilter20() in place.
    void kihFilter20(float maxStep);

    /// Moving average of y in place: the mean of `window` points from i on is written to the point i + `window` / 2.5
    /// (rounded down), and later windows include it. NaN spreads. A window of 0 makes every y NaN (the mean of
    /// nothing).
    void wndFilter(int window);

    /// Writes to y of point i of `out` the y of the middle position of the `window` points from i on, ordered by x.
    /// Deliberately ordered by x and not by y: on a profile ordered by x this is a shift by half a window. The last
    /// `window` points of `out` keep their y.
    /// @param out written by index, completed when it is too short
    /// @param window number of points
    /// @param ignored has no effect
    void medFilt(KxProfile& out, int window, int ignored);

    /// Windowed slope: for each `window` points of `out`, the sum of y of the later half minus that of the earlier
    /// half, divided by the same of x, is written to y of the window's first point. `out` is both read and written,
    /// completed when it is too short; otherwise only the number of points of this profile is used, at least window + 2.
    /// A difference of 0 in x gives an infinity or NaN.
    void diffFilt(KxProfile& out, int window);

    /// Removes narrow spikes from `out`: runs that start at a second difference of y above `threshold` and are at most
    /// `maxWidth` wide in x. Works on `out` in place; **this profile is not read**. Fewer than 6 points are not
    /// changed. A run begins where the second difference does, so that deliberately the two points before a spike go
    /// with it, and ends at the next one: good points up to a next bend within `maxWidth` go, too.
    /// @return true when points were removed, else false
    bool splashFilter(KxProfile& out, float threshold, float maxWidth);

    /// splashFilter() on the radius over the angle about a circle fitted to `out`. Works on `out` in place; **this
    /// profile is not read**. `out` is ordered by angle afterwards. When no circle can be fitted, all coordinates of
    /// `out` become NaN.
    /// @param out the profile to filter
    /// @param radius nominal radius, which converts `maxWidth` to an angle
    /// @param threshold in the unit of the radius
    /// @param maxWidth an arc length
    /// @return true when points were removed, else false
    bool splashFilterPolar(KxProfile& out, float radius, float threshold, float maxWidth);

    /// Window filter on the radius about a circle fitted to `out`. Works on `out` in place; **this profile is not
    /// read**. For the window at each point: radii further than `maxDeviation` from the mean are replaced by the mean
    /// of the others, which is also written to the point `offset` further on; windows wrap around at the end, so that
    /// the points of a window that is longer than the profile count more than once.
    /// Deliberately, all points are converted back to Cartesian form after each window and the next window works on
    /// those. A window of 0 writes NaN. An index beyond the end even after wrapping once is not written.
    void wndFilterPolar(KxProfile& out, float maxDeviation, int window, int offset);

    /// Removes noisy windows: of successive windows those stay in which at most `maxJumps` neighbours differ in y by
    /// more than `threshold` (the jump after the last point of the window counts, too). The last window is removed when
    /// it is incomplete or ends at the last point. A window longer than the profile empties it. `ignored` has no
    /// effect.
    void removeNoise(int window, int maxJumps, float threshold, float ignored);

    /// Keeps the points strictly below the line; points on it and NaN points are removed.
    void removeHighLevel(KxLine line);
    /// Keeps the points strictly above the line; points on it and NaN points are removed.
    void removeLowLevel(KxLine line);

    /// Removes straight parts. The profile is sorted by x and cut where neighbours are more than `maxGap` apart, into
    /// at most `maxParts` parts; the points after these are removed, and so is the last point of the profile. Of the
    /// parts those stay that have more than `minPoints` points and an absolute correlation below `maxCorrelation`.
    /// Nothing happens for `maxParts` of 1 or below.
    void removeLineParts(int maxParts, float maxCorrelation, float maxGap, int minPoints);

    // CSV files: one point per line, "x;y", decimal comma, 6 significant digits

    /// Writes the points to a text file, replacing an existing one.
    /// @return true when the file was opened. A full disk is not reported: check the file where that matters
    /// @return false when the file could not be opened
    bool writeToCSVFile(QString fileName);
    /// Replaces the points by those of a text file: fields between semicolons, decimal comma or point, columns counted
    /// from 0. The data end at the first empty line. Lines with too few fields are skipped. Deliberately, a field that
    /// QString::toDouble() cannot read as a number becomes 0.
    /// @return the number of points afterwards
    /// @return the number of points of the unchanged profile when the file could not be opened
    int readFromCSVFile(QString fileName, int xColumn, int yColumn);

    // Calculus of y(x)

    /// The least-squares polynomial through all points: `coeffs` receives `degree` + 1 coefficients, that of x^0 first.
    /// Normal equations in double precision without pivoting; a NaN coordinate makes coefficients NaN.
    /// @param degree 0 to 50
    /// @param coeffs an array of `degree` + 1
    /// @return true when there are coefficients
    /// @return false, `coeffs` unspecified, when a pivot is below 1e-100 (an empty profile) or `degree` is out of range
    bool calcPolynomCoeffs(int degree, double* coeffs);
    /// Replaces every y by the value of that polynomial.
    /// @return true when the profile was changed
    /// @return false, nothing changed, when calcPolynomCoeffs() fails
    bool polynomFit(int degree);

    /// The slopes between neighbours, n - 1 points. Deliberately swapped: each point holds the slope in `x` and the
    /// position of the earlier neighbour in `y`.
    KxProfile derivative();

    /// The x at which y has changed its sign, that of the point after the change. A y of exactly 0 has no sign and
    /// hides the change across it.
    /// @param xs an array of as many values as the profile has points, less 1
    /// @return the number of changes
    int findZeros(float* const xs);

    /// Pearson's correlation coefficient of x and y. NaN or infinite for no points and for a constant x or y.
    float calcCorrelation();

    /// The area under y(x) between the x of two points. With `plain`, or at most 4 points between: trapezoids in list
    /// order, each of positive width. Otherwise trapezoids over Akima samples (interpolate()) with a step of 0.01 that
    /// is halved until two values differ by at most 0.005, at most 20 times; where a step is too small to advance in x,
    /// the value of the step before it is returned, NaN when there was none.
    /// @param fromIndex index of a point, trusted: one outside the profile reads foreign memory
    /// @param toIndex likewise
    /// @param plain trapezoids through the points themselves
    float integral(int fromIndex, int toIndex, bool plain);

    /// The value at `x` of a profile ordered by x, on the line through the two neighbours; beyond the ends on that
    /// through the last two, as long as its slope is at most 1.
    /// @param x the position
    /// @param maxDistance NaN is returned when the neighbours are further than this from `x` or from each other; NaN
    ///        means no limit, except for a profile of one point, for which it gives NaN
    /// @param segment null, or receives the index of the left neighbour: -1 before the first point, that of the last
    ///        point after it; not written for fewer than 2 points and when a point has exactly this x
    /// @return the value
    /// @return NaN for an empty profile, when the neighbours are too far away, and beyond the ends when the slope is
    ///         steeper than 1
    float calcY(float x, float maxDistance, int* segment);

    /// Resamples the profile with an interpolant, see KxInterpolant::generatePointCloud(). Points are sorted by x and
    /// equal x removed first; that is what stays when `step` is not positive or nothing can be built (fewer than 3
    /// different x, another type than Akima).
    /// @return the number of points afterwards
    int interpolate(float step, float from, float to, _KxInterpolantType_ type);

    // Features; the points stay as they are

    /// The first step of the level in list order: a position whose two neighbours have windowed differences (the sum of
    /// y of the `window` points after a point minus that of those before it) beyond `threshold`, with opposite signs. A
    /// ridge or a groove is such a step, a single change between two levels is not.
    /// @return the position
    /// @return -1 when nothing is found, for fewer than 2 * `window` points, and for a window below 0. A window of 0 sums
    ///         up nothing: it finds a step only for a threshold below 0
    int calcCutPoint(int window, float threshold);

    /// All steps of the level of a profile ordered by x, see calcCutPoint(). Each search starts after the step found
    /// before.
    /// @param cutPoints emptied, then receives the points. The profile itself as `cutPoints` ends empty, without steps
    /// @param indices not emptied; receives the sum of the positions found in the single searches. Deliberately, each
    ///        search starts one point after that sum, so that entries after the first are too small by 1
    /// @param window number of points on each side
    /// @param threshold of the windowed difference
    /// @return the number of steps
    int detectCutPoints(KxProfile& cutPoints, QList<int>& indices, int window, float threshold);

    /// The top of a weld: the points at most 0.9 below the highest one.
    /// @param line its `b` receives the lowest y of them, `k` is not written
    /// @param centerX receives the middle of their range of x
    /// @return true when both were written
    /// @return false, nothing written, for fewer than 5 such points
    bool detectWeld(KxLine& line, float* centerX);

    /// The circle through the points at least 1.0 above the lowest one, see KxCircle::calcFromPointCloud() for results
    /// and failures. calcCircle() takes all points.
    bool detectCircle(KxCircle& circle);

    /// The extent of the cached range, not the smallest bounding rectangle. Deliberately, the search over 180 /
    /// `angleStep` rotations reads the cached width each time, which no rotation changes: the angle is 0, or the last
    /// one tried when that width is unknown even after calculating the range (no points, NaN coordinates). Width and
    /// height are NaN when the cached range is unknown. An `angleStep` of NaN, 0 or below gives NaN for all three.
    void calcRect(float* width, float* height, float* angle, float angleStep);
    /// The corners of that rectangle around calcCenterPoint(), which calculates an unknown range: lower left, upper
    /// left, upper right, lower right. `corners` is replaced, `angle` may be null.
    void calcRect(KxPointCloud<KxPointXY>& corners, float* angle, float angleStep);

    // Derived profiles; the cached ranges of `out` are not updated unless a function says otherwise

    /// The level run of points around `x` on a profile ordered by x. From the point left of `x` (the point at `x` if
    /// one has exactly this x) one cursor goes left and one goes right; a point is taken when its y differs by at most
    /// `maxStep` from the last one taken on its side, at first from calcY() at `x`. A side ends after `maxMisses`
    /// consecutive points that were not taken.
    /// @param x the position
    /// @param maxStep largest difference in y
    /// @param maxMisses number of points
    /// @param out cleared, then receives the points, sorted by x; also those of a run that fails a bound
    /// @param minY lower bound of calcY() at `x`; NaN is no bound, and a value of NaN passes
    /// @param maxY upper bound, likewise
    /// @param minLength lower bound of the length of the run in x; NaN is no bound
    /// @param maxLength upper bound, likewise
    /// @return true when points were taken and no bound failed
    /// @return false when a bound failed or no point was taken, as for fewer than 2 points
    bool calcLineSegment(float x, float maxStep, int maxMisses, KxProfile& out, float minY, float maxY, float minLength,
                         float maxLength);

    /// Writes y minus y of `other`, point by point, to the y of `out` by index; x of `out` stays. Then every block of
    /// `window` points gets the absolute value of the sum of its y. Deliberately the sum and not the mean; the points
    /// after the last full block keep their differences. Nothing happens when one of the profiles is empty.
    /// @param other is only read
    /// @param out written by index, completed when it has fewer points than the shorter profile
    /// @param window number of points of a block
    /// @param reserved not used
    /// @param cutTail removes points of `out` beyond that number: deliberately only every second one, the first
    ///        included
    void calcDistance(KxProfile& other, KxProfile& out, int window, int reserved, bool cutTail);

    /// Writes to `out` by index, block by block of `window` points, the chord from the first point of the block to the
    /// first point of the next one. A last block that ends with the profile gets the chord to the last point; a last
    /// block of one point keeps that point. Points after the last full block are not written. Nothing is written for
    /// fewer points than `window`.
    /// @param out written by index, completed when it is too short
    /// @param window number of points of a block
    /// @param reserved not used
    void addLineSegments(KxProfile& out, int window, int reserved);

    /// The same with blocks as wide as `windowMM` in x: a block reaches from its first point to the first one at least
    /// that far away in x, where the next block begins. A missing or infinite point neither starts nor ends a block:
    /// one inside a block gets its y from the chord if it has an x, and those before the first block are copied.
    /// @param out written by index, completed when it is too short
    /// @param windowMM width of a block
    /// @return the number of points written, from the first on; 0 for a window of 0, below or NaN
    int addLineSegmentsWithMMWindow(KxProfile& out, float windowMM);

    /// Writes to `out` by index, block by block of `window` points, a straight piece of slope `slope` through the
    /// middle point of the block, that at `window` / 2. The pieces do not join. Points after the last full block are
    /// not written.
    /// @param out written by index, completed when it is too short
    /// @param window number of points of a block
    /// @param reserved not used
    /// @param slope of all pieces
    void addParallelLine(KxProfile& out, int window, int reserved, float slope);

    /// Replaces the points by those of `cloud` seen from above: x and z of the points with y of at least `level`, of
    /// all points when `level` is NaN. The cached range stays.
    /// @return the number of points
    int makeCloudTopView(KxPointCloud<KxPointXYZ> cloud, float level);

    /// Finds the joint between two plates: a gap of at least 0.5 or an offset of at least 0.3 in y; lengths are in mm.
    ///
    /// The points, ordered by x, are cut where y departs from the local slope (a running median) by more than 0.15 or
    /// five times the noise, and where points are missing. Pieces of fewer than 5 points are spikes or the bottom of a
    /// gap. Neighbouring pieces belong to one plate when the lines through their ends (by repeated medians: Siegel,
    /// Biometrika 69, 1982) meet within 0.2 and the space between them is less than 0.45 or at most one missing point.
    /// Plates are longer than 3.25; of several joints the largest is taken.
    ///
    /// This profile is not changed. Missing and infinite points are skipped.
    /// @param joint replaced by two points, the edge of the left plate and that of the right one: the x of the last
    ///        (first) point of the plate and the y of the line through its end. Its range is not calculated
    /// @return true when `joint` was written
    /// @return false, `joint` unchanged, when no joint is found
    bool detectJoint(KxPointCloud<KxPointXY>& joint);
};

} // namespace KxMath
