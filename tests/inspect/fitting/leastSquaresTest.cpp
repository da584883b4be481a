// Least squares with three unknowns.
#include "inspect/fitting/leastSquares.h"

#include <gtest/gtest.h>

using KxInspect::detail::LeastSquares3;

TEST(LeastSquares3, FindsWhatTheEquationsFix) {
    LeastSquares3 fit;
    const std::array<double, 3> c = {0.5, -2.0, 3.0};
    for (int i = 0; i < 6; ++i) {
        const std::array<double, 3> a = {i == 0 ? 0.0 : 1.0, 1.5 * i, 0.25 * i * i};
        fit.add(a, a[0] * c[0] + a[1] * c[1] + a[2] * c[2]);
    }
    fit.add({0.0, 1.0, 0.0}, 1000.0, 0.0); // of no weight
    const auto found = fit.solve();
    ASSERT_TRUE(found);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_NEAR((*found)[i], c[i], 1e-9) << i;
    }
}

TEST(LeastSquares3, FindsNothingWhereOneUnknownIsFree) {
    EXPECT_FALSE(LeastSquares3().solve());
    for (std::size_t free = 0; free < 3; ++free) {
        LeastSquares3 fit;
        for (std::size_t i = 0; i < 3; ++i) {
            std::array<double, 3> a = {};
            a[i] = i == free ? 0.0 : 2.0;
            fit.add(a, 1.0);
        }
        EXPECT_FALSE(fit.solve()) << free;
    }
}
