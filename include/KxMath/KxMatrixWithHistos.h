// Flat patches of a height map, found on the grid of its block means.
#pragma once

#include "KxMathExport.h"
#include "KxMatrixCloud.h"
#include "KxPointCloud.h"

#include <QtCore/QList>
#include <QtCore/QPoint>

namespace KxMath {

/// The mean height of a block of matrix cells: those before `column` and `row`, which are not part of it.
struct HistoCell {
    float mean; ///< mean of the cells that are not empty, 0 when there is none
    int firstColumn; ///< first matrix column of the block
    int column; ///< the matrix column behind the block
    int firstRow; ///< first matrix row of the block
    int row; ///< the matrix row behind the block
    bool visited; ///< a region has reached the cell
    bool taken; ///< the block was moved to a seed, or cut away
};

/// The block means of a height map and the seeds found on them: connected patches without steps.
///
/// Use a new object for each matrix, and pass the matrix of calcFromMatrixCloud() to all other calls; nothing checks
/// it. The flags of the cells are only ever set.
///
/// **Copies share `pendingSeeds`**, deliberately: the pointer is copied, and each object deletes it at its end. Give a
/// copy a list of its own, and it is independent; the block means share their memory only until one side writes:
/// @code
/// KxMath::KxMatrixWithHistos copy(original);
/// copy.pendingSeeds = new QList<QPoint>;
///
/// delete target.pendingSeeds; // an assignment does not release it
/// target = original;
/// target.pendingSeeds = new QList<QPoint>;
/// @endcode
class KXMATH_EXPORT KxMatrixWithHistos {
public:
    QList<QList<HistoCell>> histoRows; ///< the block means, a row for each row of the matrix
    float minMean, maxMean; ///< range of the means of the last calcFromMatrixCloud(), NaN before it
    QList<QPoint>* pendingSeeds; ///< cells (x = row, y = column) from which a region is still to be grown; owned

    KxMatrixWithHistos();
    KxMatrixWithHistos(const KxMatrixWithHistos& other);
    ~KxMatrixWithHistos();
    KxMatrixWithHistos& operator=(const KxMatrixWithHistos& other);

    /// Makes a block mean for each matrix cell, over the at most `blockSize` rows and columns before it, from a
    /// single-precision sum row by row. Blocks of the first row and column are empty, and so are all blocks for a
    /// `blockSize` of 0 or below. Deliberately, the rows are appended to those of an earlier call, while `minMean` and
    /// `maxMean` start anew.
    /// @param reserved has no effect
    /// @param minMeanOut null, or receives `minMean`
    /// @param maxMeanOut null, or receives `maxMean`
    /// @return the number of rows
    int calcFromMatrixCloud(KxMatrixCloud& matrix, int blockSize, int reserved, float* minMeanOut, float* maxMeanOut);

    /// Replaces the points of `cloud` by the means that are neither NaN nor exactly 0, row by row: x = column * step,
    /// y = mean, z = row * step.
    /// @return the size of `cloud`
    int toPointCloud(KxPointCloud<KxPointXYZ>& cloud, float step);

    /// Moves seeds out of the matrix, each to a new cloud. For levels from `startLevel` down to `endLevel`, `levelStep`
    /// apart by a running sum, a region is grown (gatherSeed()) from each cell, row by row, that no region has reached
    /// and whose mean is less than `tolerance` from the level. The first level is always searched; it is the only one
    /// for a `levelStep` of NaN, 0 or below, and the levels end where the step is too small to advance.
    /// @param seeds null for no search; the clouds are appended and belong to the caller, see freePointCloudList()
    /// @param tolerance also the limit of steps within a region
    /// @param minCount least number of cells of a region and of points of a cloud; smaller regions are not offered
    ///        again
    /// @param maxDrop see gatherSeed()
    /// @return the number of clouds in `seeds`, 0 for null
    int extractSeeds(KxMatrixCloud& matrix, QList<KxPointCloud<KxPointXYZ>*>* seeds, float startLevel, float endLevel,
                     float levelStep, float tolerance, int minCount, float maxDrop);

    /// Grows the region of a cell: neighbours in a row or column belong together when their means differ by less than
    /// `maxStep`. From a cell that lies `maxDrop` or more below the first one the region only grows downwards (NaN:
    /// it always grows both ways). The blocks of the region are moved from the matrix to the end of `cloud`, in the
    /// order in which their cells were reached.
    /// @return the size of `cloud`
    /// @return 0 when the region has fewer than `minCount` cells; they count as reached all the same
    int gatherSeed(KxMatrixCloud& matrix, KxPointCloud<KxPointXYZ>& cloud, int row, int column, float maxStep,
                   int minCount, float maxDrop);

    /// Empties the matrix behind steep steps near its borders, and makes the means there NaN so that no seed starts or
    /// grows there. A step is the mean of a cell minus that of its neighbour towards the border, in the outer thirds of
    /// the columns (at the first rows only when a third has at least 2), then of the rows. Where it is less than
    /// `threshold`, both means become NaN and the blocks of both, with their own row and column, are emptied. One of
    /// the two is marked as reached and taken: for the columns the inner one, for the rows the outer one.
    /// @return the number of matrix cells emptied, as often as they were, and deliberately 1 more for each step but
    ///         those at the first rows; the largest int when there are more
    int cutEdgeEffects(KxMatrixCloud& matrix, float threshold);

    /// Deletes all clouds of the list. The list is a copy: that of the caller holds dangling pointers and must be
    /// cleared.
    /// @return the number of clouds deleted; null pointers are skipped
    static int freePointCloudList(QList<KxPointCloud<KxPointXYZ>*> list);

protected:
    /// Grows `region` from a cell, depth first: the cell itself, then its neighbours in the column before, the column
    /// behind, the row before and the row behind. A cell that has been reached is skipped. One at a depth of more than
    /// 201 is put in `pendingSeeds`, unless it is there, and not marked.
    /// @param region receives the cells, x = row and y = column
    /// @param refMean the mean that `maxDrop` refers to, see gatherSeed()
    /// @param depth the number of cells on the way from the start, 0 for the start itself
    void recFindNeighbours(QList<QPoint>& region, int row, int column, float refMean, float maxStep, float maxDrop,
                           int depth);
};

} // namespace KxMath
