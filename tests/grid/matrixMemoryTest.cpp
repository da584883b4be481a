// Height maps that need more memory than available.
#include "gridSupport.h"

#include <climits>
#include <new>

namespace {

/// The number of allocations that still succeed; negative: all.
int grantedAllocations = -1;

} // namespace

// Allocates the rows of a height map, so that memory can run out at any row.
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    if (grantedAllocations == 0) {
        return nullptr;
    }
    grantedAllocations -= grantedAllocations > 0 ? 1 : 0;
    try {
        return ::operator new[](size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

using namespace testing_support;

namespace {

TEST(MatrixMemory, RowsStayInTheTableUntilCleared) {
    for (int granted = 0; granted <= 4; ++granted) {
        SCOPED_TRACE(granted);
        KxMatrixCloud matrix;
        fill(matrix, {{1, 2}, {3, 4}});
        matrix.minX = 5;
        grantedAllocations = granted;
        EXPECT_FALSE(matrix.initMatrix(10, 4, 1, 0, 0, 0, 0, 0, 0)); // the table and three of its rows at most
        grantedAllocations = -1;
        EXPECT_EXACT(exact(matrix.rows, matrix.columns, matrix.minX, matrix.size()), exact(-1, -1, 5, 0));
        EXPECT_EQ(matrix.cells != nullptr, granted > 0);
        for (int r = 0; r < granted - 1; ++r) {
            EXPECT_NE(matrix.cells[r], nullptr);
        }
        if (granted % 2 == 0) {
            matrix.clear();
            EXPECT_EQ(matrix.cells, nullptr);
        } // else released at its end
    }
}

TEST(MatrixMemory, ImpossibleNumbersAreRefused) {
    constexpr QPoint kImpossible[] = {{5, -1},      {5, INT_MIN}, {-1, 5},           {INT_MIN, 1},
                                      {1, INT_MAX}, {INT_MAX, 1}, {1 << 20, 1 << 10}};
    KxMatrixCloud matrix;
    for (const QPoint& size : kImpossible) {
        EXPECT_FALSE(matrix.initMatrix(size.x(), size.y(), 1, 0, 0, 0, 0, 0, 0)) << size.x() << " x " << size.y();
        EXPECT_EQ(matrix.rows, -1);
    }
    EXPECT_TRUE(matrix.initMatrix(-1, 0, 1, 0, 0, 0, 0, 0, 0)); // no row to fail
    EXPECT_TRUE(matrix.initMatrix(7, 5, 1, 0, 0, 0, 0, 0, 0));
}

} // namespace
