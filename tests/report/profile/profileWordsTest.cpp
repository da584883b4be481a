// What a profile's findings are called.
#include "report/profile/profileWords.h"

#include <gtest/gtest.h>

namespace {

using Rows = std::vector<std::pair<QString, QString>>;

TEST(ProfileWords, AllPointsOfAFindingAreNamed) {
    KxInspect::ProfileFinding cuts;
    cuts.values = {{.key = "count", .title = "number of cuts", .unit = "", .value = 3.0},
                   {.key = "width", .title = "width", .unit = "mm", .value = 12.34567891}};
    cuts.points = {{-1.25f, 2.5f}, {3.00004f, -4.0f}, {5.5f, 6.00006f}};
    const Rows expected = {{"number of cuts", "3"},
                           {"width", "12.34568 mm"},
                           {"point 1", "x -1.2500 mm, y 2.5000 mm"},
                           {"point 2", "x 3.0000 mm, y -4.0000 mm"},
                           {"point 3", "x 5.5000 mm, y 6.0001 mm"}};
    EXPECT_EQ(kxreport::findingRows(cuts), expected);

    KxInspect::ProfileFinding nothing;
    nothing.reason = "the profile has no joint";
    EXPECT_EQ(kxreport::findingRows(nothing), (Rows{{"not found", "the profile has no joint"}}));
}

} // namespace
