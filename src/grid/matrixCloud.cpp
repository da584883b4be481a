// Height maps: storage, trimming, conversion to clouds.
#include "KxMath/KxMatrixCloud.h"

#include "grid/cells.h"
#include "lists/unfilledList.h"
#include "rounding/bounds.h"

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
        count += detail::countFilled(cells[r], columns);
    }
    return count;
}

int KxMatrixCloud::trim(int firstColumn, int lastColumn, float minValue, float maxValue, int firstRow, int lastRow) {
    const int begin = std::clamp(firstColumn, 0, std::max(columns, 0));
    const int end = lastColumn > 0 && lastColumn < columns ? std::max(lastColumn + 1, begin) : columns;
    int count = 0;
    for (int r = 0; r < rows; ++r) {
        float* const row = cells[r];
        if ((firstRow > 0 && r < firstRow) || (lastRow > 0 && r > lastRow)) {
            count += detail::emptyAll(row, columns);
            continue;
        }
        count += detail::emptyAll(row, begin) + detail::emptyAll(row + end, columns - end) +
                 detail::emptyOutside(row + begin, end - begin, minValue, maxValue);
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
    const int count = size();
    detail::UnfilledList<KxPointXYZ> points(count + qsizetype(1));
    KxPointXYZ* const first = points.extend(count + qsizetype(1));
    KxPointXYZ* end = first;
    for (int r = 0; r < rows; ++r) {
        end = detail::writeFilled(cells[r], r, 0, columns, step, end);
    }
    points.drop(first + count + 1 - end);
    cloud.points = points.take();
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
        if (!detail::isAnyFilled(cells[r] + firstColumn, columnCount)) {
            continue;
        }
        const float z = static_cast<float>(r) * step;
        for (int c = firstColumn; c < endColumn; ++c) {
            const float height = cells[r][c];
            if (!std::isnan(height)) {
                cloud.points.append(KxPointXYZ(static_cast<float>(c) * step, height, z));
            }
        }
        if (takeOut) {
            std::fill(cells[r] + firstColumn, cells[r] + endColumn, kNaN);
        }
    }
    return cloud.size();
}

} // namespace KxMath
