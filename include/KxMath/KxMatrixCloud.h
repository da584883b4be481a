// A height map on a regular grid.
#pragma once

#include "KxMathExport.h"
#include "KxPointCloud.h"

namespace KxMath {

/// A height map: rows along z, columns along x, both `step` apart, and a height y in each cell. NaN marks an empty
/// cell.
///
/// **Assignment shares the cells**, deliberately: both matrices then refer to the same storage, which only one of them
/// may release, by clear(), initMatrix() or its destructor. The previous cells of the target are not released. To avoid
/// both a double release and a leak, move the storage from one matrix to the other:
/// @code
/// target.clear();
/// target = source;
/// source = KxMath::KxMatrixCloud(); // forgets the cells without releasing them
/// @endcode
/// There is no copy constructor.
///
/// **The caller's part.** Indices of rows and columns are trusted, except by the trim() with a band of heights; one
/// outside the grid reads or writes foreign memory.
///
/// No member works on a const matrix, and temporaries do not bind to parameters that are non-const references.
/// Different matrices that share no cells may be used by different threads at the same time; size() and toPointCloud()
/// only read and may run together on one matrix, each with a cloud of its own.
class KXMATH_EXPORT KxMatrixCloud {
public:
    float** cells; ///< `rows` pointers to `columns` heights each; null when there is no grid
    int columns; ///< number of columns, -1 when there is no grid
    int rows; ///< number of rows, -1 when there is no grid
    float step; ///< pitch of the grid, along both axes; NaN when there is no grid
    float minX, maxX; ///< range of x of the source data; the ranges are only stored
    float minY, maxY; ///< range of the heights of the source data
    float minZ, maxZ; ///< range of z of the source data

    /// A matrix without a grid; step and ranges are NaN.
    KxMatrixCloud();
    KxMatrixCloud(const KxMatrixCloud&) = delete;
    /// clear().
    ~KxMatrixCloud();
    /// Copies all fields as they are, so that both matrices share their cells.
    KxMatrixCloud& operator=(const KxMatrixCloud& other);

    /// Releases the cells, `step` becomes NaN. The ranges stay.
    void clear();

    /// Releases the cells and allocates a new grid. The cells are not initialised.
    /// @return true when the grid was allocated
    /// @return false when memory does not suffice, when its rows would not fit in 4 GiB, and for negative numbers.
    ///         There is no grid then, and the ranges stay; rows that were allocated before memory ran out stay in
    ///         `cells`, followed by a null, until clear()
    bool initMatrix(int columns, int rows, float step, float minX, float maxX, float minY, float maxY, float minZ,
                    float maxZ);

    /// The number of cells that are not empty.
    int size();

    /// Empties the cells outside a range of columns and rows or a band of heights, all inclusive. An index of 0 or
    /// below is no bound, and neither is a height of NaN.
    /// @return the number of cells emptied
    int trim(int firstColumn, int lastColumn, float minValue, float maxValue, int firstRow, int lastRow);
    /// Empties the cells inside a rectangle, bounds included, unlike the other trim(). The bounds are trusted.
    /// @return the number of cells in the rectangle, empty ones included
    int trim(int firstColumn, int lastColumn, int firstRow, int lastRow);

    /// Changes the sign of all heights.
    void reflect();

    /// Empties the ends of each column, beyond the lowest cells before and after its highest one. To cut the edges of a
    /// scanned object use KxMatrixWithHistos::cutEdgeEffects(); the functions called clearEdgeEffect() of the cloud and
    /// of the set do something else again.
    ///
    /// The highest cell is the last one with the largest height, at least 0, from row rows / 5 on; without one, row 0
    /// is used. On each side of it the low cell is the one with the smallest height, at most that of the highest cell;
    /// of equal ones the nearest. Without a low cell before the highest one nothing is emptied there. Deliberately,
    /// without a low cell after it the rows beyond the *number of columns* are emptied.
    void clearEdgeEffect();

    /// Replaces the points of `cloud` by the cells that are not empty, row by row: x = column * step, y = height,
    /// z = row * step. The origin of the grid is not added.
    /// @return the size of `cloud`
    int toPointCloud(KxPointCloud<KxPointXYZ>& cloud);
    /// Appends to `cloud` the cells of a rectangle that are not empty, as toPointCloud() does; with `takeOut` they are
    /// emptied. The rectangle is trusted.
    /// @return the size of `cloud`
    int extractToPointCloud(KxPointCloud<KxPointXYZ>& cloud, int firstColumn, int firstRow, int columnCount,
                            int rowCount, bool takeOut);
};

} // namespace KxMath
