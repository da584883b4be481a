// Block means of a height map.
#include "grid/jobs.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace kxbench {

namespace {

/// Sums and counts of the cells above and to the left of each cell, in double precision.
struct IntegralImage {
    explicit IntegralImage(const KxMatrixCloud& matrix)
        : width(static_cast<std::size_t>(matrix.columns) + 1),
          sums(width * (static_cast<std::size_t>(matrix.rows) + 1)), counts(sums.size()) {
        for (int r = 0; r < matrix.rows; ++r) {
            double sum = 0.0;
            int count = 0;
            const std::size_t above = static_cast<std::size_t>(r) * width + 1;
            for (std::size_t c = 0; c + 1 < width; ++c) {
                const float height = matrix.cells[r][c];
                sum += std::isnan(height) ? 0.0 : static_cast<double>(height);
                count += std::isnan(height) ? 0 : 1;
                sums[above + width + c] = sums[above + c] + sum;
                counts[above + width + c] = counts[above + c] + count;
            }
        }
    }

    template <typename T>
    T inside(const std::vector<T>& of, int firstRow, int row, int firstColumn, int column) const {
        const std::size_t top = static_cast<std::size_t>(firstRow) * width;
        const std::size_t bottom = static_cast<std::size_t>(row) * width;
        return of[bottom + static_cast<std::size_t>(column)] - of[bottom + static_cast<std::size_t>(firstColumn)] -
               of[top + static_cast<std::size_t>(column)] + of[top + static_cast<std::size_t>(firstColumn)];
    }

    std::size_t width;
    std::vector<double> sums;
    std::vector<int> counts;
};

void meansByIntegralImage(GridJob& j, int block) {
    const IntegralImage image(j.matrix);
    for (int r = 0; r < j.matrix.rows; ++r) {
        std::vector<HistoCell> row;
        row.reserve(static_cast<std::size_t>(j.matrix.columns));
        const int firstRow = std::max(r - block, 0);
        for (int c = 0; c < j.matrix.columns; ++c) {
            const int firstColumn = std::max(c - block, 0);
            const double sum = image.inside(image.sums, firstRow, r, firstColumn, c);
            const int count = image.inside(image.counts, firstRow, r, firstColumn, c);
            const float mean = count == 0 ? 0.0f : static_cast<float>(sum / count);
            row.push_back({mean, firstColumn, c, firstRow, r, false, false});
        }
        j.cells.push_back(std::move(row));
    }
}

using Float4 __attribute__((vector_size(16))) = float;

/// Only the sums of the definition: 16 neighbouring blocks in parallel lanes, each row by row and column by column, over
/// heights without empty cells.
void orderedSums(GridJob& j, int block) {
    constexpr int kSideBySide = 16;
    std::vector<float> out(kGridPoints);
    float* to = out.data();
    for (int r = block; r < j.matrix.rows; ++r) {
        for (int c = 0; c + block + kSideBySide <= j.matrix.columns; c += kSideBySide, to += kSideBySide) {
            Float4 sums[4] = {};
            for (int i = r - block; i < r; ++i) {
                const float* cell = j.matrix.cells[i] + c;
                for (int k = 0; k < block; ++k, ++cell) {
                    for (int group = 0; group < 4; ++group) {
                        Float4 v = {};
                        std::memcpy(&v, cell + std::ptrdiff_t{4} * group, sizeof(v));
                        sums[group] += v;
                    }
                }
            }
            std::memcpy(to, sums, sizeof(sums));
        }
    }
    benchmark::DoNotOptimize(out.data());
}

template <typename Rows>
Digest digestMeans(const Rows& rows) {
    double sum = 0.0;
    for (const auto& row : rows) {
        for (const HistoCell& cell : row) {
            sum += static_cast<double>(cell.mean) * (cell.column - cell.firstColumn);
        }
    }
    return {sum, 1e-6};
}

[[maybe_unused]] const bool isRegistered = [] {
    for (const int block : {5, 20}) {
        const std::string operation = "block means of " + std::to_string(block);
        addOnGrid(
            operation.c_str(), "kx", fillMatrix,
            [=](GridJob& j) { j.histos.calcFromMatrixCloud(j.matrix, block, 0, nullptr, nullptr); },
            [](GridJob& j) { return digestMeans(j.histos.histoRows); });
        addOnGrid(
            operation.c_str(), "peer_integral_image", fillMatrix, [=](GridJob& j) { meansByIntegralImage(j, block); },
            [](GridJob& j) { return digestMeans(j.cells); });
        addOnGrid(
            operation.c_str(), "limit_ordered_sums", fillMatrix, [=](GridJob& j) { orderedSums(j, block); },
            nothing<GridJob>);
    }
    return true;
}();

} // namespace

} // namespace kxbench
