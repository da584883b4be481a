// A height map on a regular grid.
#pragma once

#include "KxMathExport.h"
#include "KxPointCloud.h"

namespace KxMath {

/// A height map: rows along z, columns along x, both `step` apart, and a height y in each cell. NaN marks an empty
/// cell.
///
/// **Assignment shares the cells**, deliberately: both matrices then refer to the same storage, which only one of them
/// may release, by clear(), initMatrix() or its end. What the target of an assignment held before is not released. Hand
/// the storage over, and nothing is freed twice or lost:
/// @code
/// target.clear();
/// target = source;
/// source = KxMath::KxMatrixCloud(); // forgets the cells without releasing them
/// @endcode
/// There is no copy constructor.
///
/// Positions that are passed in are trusted.
class KXMATH_EXPORT KxMatrixCloud {
public:
    float** cells; ///< `rows` pointers to `columns` heights each; null when there is no grid
    int columns; ///< number of columns, -1 when there is no grid
    int rows; ///< number of rows, -1 when there is no grid
    float step; ///< pitch of the grid, along both axes
    float minX, maxX; ///< range of x of the source data; the ranges are stored only
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
    /// @return false when there is no memory for it, when its rows would not fit in 4 GiB, and for negative numbers.
    ///         There is no grid then, and the ranges stay; rows that were allocated before memory ended stay in
    ///         `cells`, a null behind them, until clear()
    bool initMatrix(int columns, int rows, float step, float minX, float maxX, float minY, float maxY, float minZ,
                    float maxZ);

    /// The number of cells that are not empty.
    int size();

    /// Empties the cells outside a range of columns and rows or a band of heights, all inclusive. A bound of 0 or below
    /// is switched off, for the heights one of NaN.
    /// @return the number of cells emptied
    int trim(int firstColumn, int lastColumn, float minValue, float maxValue, int firstRow, int lastRow);
    /// Empties the cells inside a rectangle, bounds included, unlike the other trim(). The bounds are trusted.
    /// @return the number of cells in the rectangle, empty ones included
    int trim(int firstColumn, int lastColumn, int firstRow, int lastRow);

    /// Changes the sign of all heights.
    void reflect();

    /// Empties the ends of each column, beyond the lowest cells before and behind its highest one.
    ///
    /// The highest cell is the last one of the largest height, at least 0, behind the first fifth of the rows; row 0
    /// stands for it where there is none. The low cells are those of the smallest height, at most its own, the nearest
    /// ones to it. Without a low cell before it nothing is emptied there. Deliberately, without a low cell behind it
    /// the rows beyond the *number of columns* are emptied.
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
