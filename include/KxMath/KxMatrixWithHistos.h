// Flat patches of a height map, found on the grid of its block means.
#pragma once

#include "KxMathExport.h"
#include "KxMatrixCloud.h"
#include "KxPointCloud.h"

#include <QtCore/QList>
#include <QtCore/QPoint>

namespace KxMath {

/// The mean height of a block of matrix cells, from `firstColumn` and `firstRow` up to, not including, `column` and
/// `row`.
struct HistoCell {
    float mean; ///< mean of the cells that are not empty, 0 when all are empty, NaN after cutting
    int firstColumn; ///< first matrix column of the block
    int column; ///< the matrix column after the block
    int firstRow; ///< first matrix row of the block
    int row; ///< the matrix row after the block
    bool visited; ///< a region has reached the cell
    bool taken; ///< the block was moved to a seed or cut away
};

/// The block means of a height map and the seeds found on them: connected patches without steps.
///
/// Use a new object for each matrix, and pass the matrix of calcFromMatrixCloud() to all other calls: indices into
/// another one are not checked. The flags of the cells are set but never reset.
///
/// No member works on a const object, and temporaries do not bind to parameters that are non-const references.
/// Different objects may be used by different threads at the same time when neither their matrices nor `pendingSeeds`
/// are shared; toPointCloud() only reads.
///
/// **Copies share `pendingSeeds`**, deliberately: the pointer is copied, and each destructor deletes it. A copy becomes
/// independent when it gets a list of its own; the block means share their memory only until one side writes:
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
    QList<QPoint>* pendingSeeds; ///< cells (x = row, y = column) from which a region will still be grown; owned

    KxMatrixWithHistos();
    KxMatrixWithHistos(const KxMatrixWithHistos& other);
    ~KxMatrixWithHistos();
    KxMatrixWithHistos& operator=(const KxMatrixWithHistos& other);

    /// Calculates a block mean for each matrix cell, over at most `blockSize` rows and columns before it, from a
    /// single-precision sum row by row. Blocks of the first row and column are empty, and so are all blocks for a
    /// `blockSize` of 0 or below. Deliberately, the rows are appended to those of an earlier call, while `minMean` and
    /// `maxMean` are calculated from this call alone.
    /// @param matrix is only read
    /// @param blockSize edge of a block, in cells
    /// @param reserved has no effect
    /// @param minMeanOut null, or receives `minMean`
    /// @param maxMeanOut null, or receives `maxMean`
    /// @return the number of rows in `histoRows`
    int calcFromMatrixCloud(KxMatrixCloud& matrix, int blockSize, int reserved, float* minMeanOut, float* maxMeanOut);

    /// Replaces the points of `cloud` by the means that are neither NaN nor exactly 0, row by row: x = column * step,
    /// y = mean, z = row * step. The range is not calculated.
    /// @return the size of `cloud`
    int toPointCloud(KxPointCloud<KxPointXYZ>& cloud, float step);

    /// Moves seeds out of the matrix, each to a new cloud. For levels from `startLevel` down to `endLevel`, `levelStep`
    /// apart by a running sum, a region is grown (gatherSeed()) from each cell, row by row, that no region has reached
    /// and whose mean differs by less than `tolerance` from the level. The first level is always searched; it is the
    /// only one for a `levelStep` of NaN, 0 or below, and the levels end where the step is too small to advance.
    /// @param matrix that of calcFromMatrixCloud(); its cells are moved
    /// @param seeds null for no search; new clouds are appended and belong to the caller, see freePointCloudList()
    /// @param startLevel highest level, in the unit of the heights
    /// @param endLevel lowest level
    /// @param levelStep distance of the levels, positive
    /// @param tolerance largest difference from the level, and between neighbours in a region
    /// @param minCount least number of cells of a region and of points of a cloud; smaller regions are not searched
    ///        again
    /// @param maxDrop see gatherSeed()
    /// @return the number of clouds in `seeds`, 0 for null
    int extractSeeds(KxMatrixCloud& matrix, QList<KxPointCloud<KxPointXYZ>*>* seeds, float startLevel, float endLevel,
                     float levelStep, float tolerance, int minCount, float maxDrop);

    /// Grows the region of a cell: neighbours in a row or column belong together when their means differ by less than
    /// `maxStep`. From a cell that is `maxDrop` or more below the first one the region only grows downwards (NaN:
    /// it always grows both ways). The blocks of the region are moved from the matrix to the end of `cloud`, in the
    /// order in which their cells were reached. `row` and `column` are trusted.
    /// @return the size of `cloud`
    /// @return 0 when the region has fewer than `minCount` cells; these are marked as reached nevertheless
    int gatherSeed(KxMatrixCloud& matrix, KxPointCloud<KxPointXYZ>& cloud, int row, int column, float maxStep,
                   int minCount, float maxDrop);

    /// Cuts the edges of a scanned object: empties the matrix at steep steps near its borders, and makes the means
    /// there NaN so that no seed starts or grows there. (The three functions called clearEdgeEffect(), of the cloud,
    /// the set and the matrix, do something else.)
    ///
    /// A step is the mean of a cell minus that of its neighbour towards the border, in the outer thirds of the columns
    /// (at the first rows only when a third has at least 2), then of the rows. Where it is less than `threshold`, both
    /// means become NaN and the blocks of both, with their own row and column, are emptied. One of the two is marked as
    /// reached and taken: for the columns the inner one, for the rows the outer one.
    /// @param matrix that of calcFromMatrixCloud()
    /// @param threshold negative to cut where the heights fall inwards by more than its magnitude
    /// @return the number of matrix cells emptied, a cell counted each time, and deliberately 1 more for each step
    ///         except at the first rows; limited to the largest int
    int cutEdgeEffects(KxMatrixCloud& matrix, float threshold);

    /// Deletes all clouds of the list. The list is a copy: the caller's own then holds dangling pointers and must be
    /// cleared.
    /// @return the number of clouds deleted; null pointers are skipped
    static int freePointCloudList(QList<KxPointCloud<KxPointXYZ>*> list);

protected:
    /// Grows `region` from a cell, depth first: the cell itself, then its neighbours in the previous column, the next
    /// column, the previous row and the next row. A cell that has been reached is skipped. One at a depth of more than
    /// 201 is added to `pendingSeeds`, unless it is there already, and not marked.
    /// @param region receives the cells, x = row and y = column
    /// @param row index of the cell, trusted
    /// @param column likewise
    /// @param refMean the mean that `maxDrop` refers to, see gatherSeed()
    /// @param maxStep see gatherSeed()
    /// @param maxDrop see gatherSeed()
    /// @param depth the number of cells on the way from the start, 0 for the start itself
    void recFindNeighbours(QList<QPoint>& region, int row, int column, float refMean, float maxStep, float maxDrop,
                           int depth);
};

} // namespace KxMath
