// Fewer values for a page that would be too large.
#pragma once

#include <KxInspect/HeightMap.h>
#include <KxInspect/Profile.h>

#include <cstddef>
#include <vector>

namespace kxreport {

/// A height map, or one block of its cells as one cell.
struct BlockMap {
    int size = 1; ///< rows and columns of a block
    int rows = 0;
    int columns = 0;
    std::vector<float>
        medians; ///< row by row; of an even number of heights the lower one in the middle; NaN without any
    std::vector<float> lowest; ///< empty for blocks of one cell
    std::vector<float> highest; ///< as above
};

/// Median, lowest and highest height of the cells that have one, in blocks from the first row and column on.
BlockMap blocksOf(const KxInspect::HeightMap& map, int size);

/// The positions of the points that stay where only the lowest, the median and the highest of each `block` neighbours are
/// kept, rising; all for blocks of at most 3. `heights` are those of the points; one that is not finite counts for the gap
/// that it makes: the first one of each block stays.
std::vector<std::size_t> keptPoints(const std::vector<float>& heights, std::size_t block);

} // namespace kxreport
