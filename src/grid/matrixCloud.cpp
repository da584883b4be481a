// Height maps: storage, trimming, conversion to clouds.
#include "KxMath/KxMatrixCloud.h"

#include "numeric/bounds.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <new>

namespace KxMath {

using detail::kNaN;

namespace {

constexpr qint64 kMaxBytes = std::numeric_limits<std::uint32_t>::max();

bool isStorable(qint64 count, qint64 size) {
    return count >= 0 && count <= kMaxBytes / size;
}

/// The rows of a grid, each with what an allocator adds to a small block.
bool areRowsStorable(int columns, int rows) {
    constexpr qint64 kRowOverhead = 32;
    return columns >= 0 && isStorable(rows, columns * qint64(sizeof(float)) + kRowOverhead);
}

void releaseTable(float** cells, int rows) {
    if (cells == nullptr) {
        return;
    }
    // A grid that was not completed has no count of its rows; the null of the one that failed ends them.
    for (int r = 0; rows >= 0 ? r < rows : cells[r] != nullptr; ++r) {
        delete[] cells[r];
    }
    delete[] cells;
}

/// Appends the cells of a row from `begin` up to, not including, `end` that are not empty.
void appendCells(KxPointCloud<KxPointXYZ>& cloud, const KxMatrixCloud& matrix, int row, int begin, int end) {
    const float z = static_cast<float>(row) * matrix.step;
    for (int c = begin; c < end; ++c) {
        const float height = matrix.cells[row][c];
        if (!std::isnan(height)) {
            cloud.points.append(KxPointXYZ(static_cast<float>(c) * matrix.step, height, z));
        }
    }
}

} // namespace

KxMatrixCloud::KxMatrixCloud()
    : cells(nullptr), columns(-1), rows(-1), step(kNaN), minX(kNaN), maxX(kNaN), minY(kNaN), maxY(kNaN), minZ(kNaN),
      maxZ(kNaN) {}

KxMatrixCloud::~KxMatrixCloud() {
    clear();
}

KxMatrixCloud& KxMatrixCloud::operator=(const KxMatrixCloud& other) = default; // deliberately shares the cells

void KxMatrixCloud::clear() {
    releaseTable(cells, rows);
    cells = nullptr;
    columns = -1;
    rows = -1;
    step = kNaN;
}

bool KxMatrixCloud::initMatrix(int columns, int rows, float step, float minX, float maxX, float minY, float maxY,
                               float minZ, float maxZ) {
    clear();
    cells = isStorable(rows, sizeof(float*)) ? new (std::nothrow) float*[static_cast<size_t>(rows)] : nullptr;
    if (cells == nullptr) {
        return false;
    }
    const bool isPossible = areRowsStorable(columns, rows);
    for (int r = 0; r < rows; ++r) {
        cells[r] = isPossible ? new (std::nothrow) float[static_cast<size_t>(columns)] : nullptr;
        if (cells[r] == nullptr) {
            return false; // deliberately without releasing the rows before
        }
    }
    this->step = step;
    this->rows = rows;
    this->columns = columns;
    this->minX = minX;
    this->maxX = maxX;
    this->minY = minY;
    this->maxY = maxY;
    this->minZ = minZ;
    this->maxZ = maxZ;
    return true;
}

int KxMatrixCloud::size() {
    int count = 0;
    for (int r = 0; r < rows; ++r) {
        const float* const row = cells[r];
        for (int c = 0; c < columns; ++c) {
            count += std::isnan(row[c]) ? 0 : 1;
        }
    }
    return count;
}

int KxMatrixCloud::trim(int firstColumn, int lastColumn, float minValue, float maxValue, int firstRow, int lastRow) {
    int count = 0;
    for (int r = 0; r < rows; ++r) {
        const bool isRowOutside = (firstRow > 0 && r < firstRow) || (lastRow > 0 && r > lastRow);
        float* const row = cells[r];
        for (int c = 0; c < columns; ++c) {
            const bool isOutside = isRowOutside || (firstColumn > 0 && c < firstColumn) ||
                                   (lastColumn > 0 && c > lastColumn) || row[c] < minValue ||
                                   row[c] > maxValue; // NaN: false
            if (isOutside && !std::isnan(row[c])) {
                row[c] = kNaN;
                ++count;
            }
        }
    }
    return count;
}

int KxMatrixCloud::trim(int firstColumn, int lastColumn, int firstRow, int lastRow) {
    int count = 0;
    for (qint64 r = firstRow; r <= lastRow; ++r) {
        for (qint64 c = firstColumn; c <= lastColumn; ++c) {
            cells[r][c] = kNaN;
            ++count;
        }
    }
    return count;
}

void KxMatrixCloud::reflect() {
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < columns; ++c) {
            if (!std::isnan(cells[r][c])) {
                cells[r][c] = -cells[r][c];
            }
        }
    }
}

int KxMatrixCloud::toPointCloud(KxPointCloud<KxPointXYZ>& cloud) {
    if (!cloud.isEmpty()) {
        cloud.clear();
    }
    cloud.points.reserve(size());
    for (int r = 0; r < rows; ++r) {
        appendCells(cloud, *this, r, 0, columns);
    }
    return cloud.size();
}

int KxMatrixCloud::extractToPointCloud(KxPointCloud<KxPointXYZ>& cloud, int firstColumn, int firstRow, int columnCount,
                                       int rowCount, bool takeOut) {
    if (columnCount < 1 || rowCount < 1) {
        return cloud.size();
    }
    const int endColumn = firstColumn + columnCount;
    const int endRow = firstRow + rowCount;
    for (int r = firstRow; r < endRow; ++r) {
        appendCells(cloud, *this, r, firstColumn, endColumn);
        if (takeOut) {
            std::fill(cells[r] + firstColumn, cells[r] + endColumn, kNaN);
        }
    }
    return cloud.size();
}

} // namespace KxMath
