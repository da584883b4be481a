// What of a profile is taken for tread.
#include "inspect/train/treadPart.h"
#include "support/testing.h"

#include <algorithm>

namespace {

using namespace testing_support;
using namespace KxInspect::detail;

/// A straight piece, from and to distances behind the back face, `down` at both ends.
struct Piece {
    double from, to;
    double downFrom, downTo;
};

/// Points each 0.1 mm; with the reference line along x, x is down and y behind the back face.
PointList points(const std::vector<Piece>& pieces, double towardsRail) {
    PointList list;
    for (const Piece& piece : pieces) {
        for (double across = piece.from + 0.05; across < piece.to; across += 0.1) {
            const double share = (across - piece.from) / (piece.to - piece.from);
            list.append(at(towardsRail * (piece.downFrom + share * (piece.downTo - piece.downFrom)), across));
        }
    }
    return list;
}

const std::vector<Piece> kFlange = {{5.0, 15.0, 18.0, 28.0}, {15.0, 30.0, 28.0, 12.0}};
const Piece kTread = {40.0, 120.0, 2.0, -2.0};

TEST(TreadPart, LeavesOutWhatIsNoTread) {
    struct Case {
        const char* desc;
        std::vector<Piece> pieces; ///< beside the flange
        double first, last, tolerance; ///< of what is left; 0: nothing
    };
    const Case cases[] = {
        {"a tread", {kTread}, 40.0, 120.0, 0.1},
        {"a rail below the flange", {{40.0, 70.0, 2.0, 0.5}, {70.0, 110.0, 30.0, 30.0}}, 40.0, 70.0, 0.1},
        {"as near the tip as no tread is", {{40.0, 90.0, 13.5, 13.2}}, 0.0, 0.0, 0.0},
        {"just far enough from it", {{40.0, 90.0, 12.0, 11.7}}, 40.0, 90.0, 0.1},
        {"part of the train far above", {kTread, {121.0, 140.0, -40.0, -40.0}}, 40.0, 120.0, 0.1},
        {"farther above than a rim reaches", {kTread, {120.0, 124.0, -7.5, -9.5}}, 40.0, 118.0, 0.2},
        {"a chamfer", {{40.0, 115.0, 2.0, -1.75}, {115.0, 120.0, -1.75, -6.75}}, 40.0, 113.0, 1.5},
        {"a slope as steep as treads are", {{40.0, 95.0, 2.0, -1.0}, {95.0, 120.0, -1.0, -4.5}}, 40.0, 120.0, 0.1},
    };
    for (const Case& c : cases) {
        for (const double towardsRail : {1.0, -1.0}) {
            SCOPED_TRACE(c.desc);
            std::vector<Piece> all = kFlange;
            all.insert(all.end(), c.pieces.begin(), c.pieces.end());
            const PointList profile = points(all, towardsRail);
            const PointList other = points({kFlange[0], kFlange[1], kTread}, towardsRail);
            const PointList part =
                treadParts({profile, other}, {points(c.pieces, towardsRail), {}}, KxLine(0.0f, 0.0f)).front();
            ASSERT_EQ(part.isEmpty(), c.last == 0.0);
            if (!part.isEmpty()) {
                const auto [first, last] = std::minmax_element(
                    part.cbegin(), part.cend(), [](const KxPointXY& a, const KxPointXY& b) { return a.y < b.y; });
                EXPECT_NEAR(first->y, c.first, c.tolerance);
                EXPECT_NEAR(last->y, c.last, c.tolerance);
            }
        }
    }
}

TEST(TreadPart, NeedsTheFlangeUnlessNoProfileShowsIt) {
    const PointList tread = points({kTread}, 1.0);
    const PointList whole = points({kFlange[0], kFlange[1], kTread}, 1.0);
    const std::vector<PointList> parts = treadParts({whole, tread}, {tread, tread}, KxLine(0.0f, 0.0f));
    EXPECT_EQ(parts[0].size(), tread.size());
    EXPECT_TRUE(parts[1].isEmpty());
    EXPECT_EQ(treadParts({tread}, {tread}, KxLine(0.0f, 0.0f)).front().size(), tread.size());
}

} // namespace
