// Height maps and sets that ask for more memory than there is.
#include "gridSupport.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

#include <climits>
#include <cstdlib>
#include <new>

namespace {

/// How many allocations are still granted; negative: all of them.
int grantedAllocations = -1;

} // namespace

// The rows of a height map come from here, so that the end of memory can be put at any row.
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

using namespace KxMath;
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
        EXPECT_EQ(exact(matrix.rows, matrix.columns, matrix.minX, matrix.size()), exact(-1, -1, 5, 0));
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

#if defined(__SANITIZE_ADDRESS__)
#define KXMATH_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KXMATH_ADDRESS_SANITIZER 1
#endif
#endif

#ifndef KXMATH_ADDRESS_SANITIZER // the sanitizer itself needs more address space

/// What a process with 1 GiB of address space makes of grids and slices that need more.
bool survivesLittleMemory() {
    const rlimit limit{1u << 30, 1u << 30};
    if (setrlimit(RLIMIT_AS, &limit) != 0) {
        return false;
    }
    KxProfileZSet set;
    for (int i = 0; i < 3; ++i) {
        set.profiles.append(profileAt(0, {{0, 1}, {1e8f, 1}}));
    }
    set.stepZ = 1;
    KxMatrixCloud matrix;
    const bool isRefused =
        set.toMatrixCloud(matrix, kNaN, kNaN) == 0 && matrix.rows == -1 && matrix.cells[1] != nullptr;
    set.clear();
    // Two rows of that kind have room only when the rows of the grid that failed were released.
    const bool isReleased = matrix.initMatrix(100000000, 2, 1, 0, 0, 0, 0, 0, 0);
    matrix.clear();

    SpaceCloud cloud;
    cloud.points = {{0, 1, 0}, {0, 2, 16777000}};
    return isRefused && isReleased && set.calcFromPointCloud(cloud, 1) == 0 && set.isEmpty();
}

TEST(MatrixMemory, MoreThanMemoryHoldsIsRefused) {
    EXPECT_EXIT(std::exit(survivesLittleMemory() ? 0 : 1), testing::ExitedWithCode(0), "");
}

#endif

} // namespace
