// EXPECT_EXACT(actual, expected): the same numbers bit by bit, or a message that shows where they begin to differ.
#pragma once

#include "support/bits.h"

#include <gtest/gtest.h>

namespace testing_support {

/// Takes numbers, points, lists and maps, whatever exact() takes.
#define EXPECT_EXACT(actual, expected)                                                                                 \
    EXPECT_PRED_FORMAT2(testing_support::compareExactly, exact(actual), exact(expected))
#define ASSERT_EXACT(actual, expected)                                                                                 \
    ASSERT_PRED_FORMAT2(testing_support::compareExactly, exact(actual), exact(expected))

/// The message of a failure holds both counts, the first index that differs, both values as hexadecimal floats, and the
/// elements about that index in both lists.
testing::AssertionResult compareExactly(const char* actualText, const char* expectedText, const ExactList& actual,
                                        const ExactList& expected);
testing::AssertionResult compareExactly(const char* actualText, const char* expectedText, const Exact& actual,
                                        const Exact& expected);

/// Where the first comparison of lists that failed since forgetDifference() found the difference, as the index of an
/// element; -1 when none failed.
int firstDifference();
void forgetDifference();

/// How many elements are shown on either side of a difference.
inline constexpr int kShownBeside = 4;

} // namespace testing_support
