// The comparison that all tests lean on: what is equal, and what a failure shows.
#include "support/testing.h"

#include <bit>

using namespace testing_support;

namespace {

/// The message of the comparison of `a` with `b`; empty when they are the same.
template <typename A, typename B>
std::string difference(const A& a, const B& b) {
    return compareExactly("exact(a)", "exact(b)", exact(a), exact(b)).message();
}

TEST(Comparison, DistinguishesEveryBitButThoseOfNaN) {
    const float otherNaN = std::bit_cast<float>(0xffc00123u);
    EXPECT_EQ(difference(kNaN, otherNaN), "");
    EXPECT_EQ(difference(Points{{kNaN, 1}}, Points{{otherNaN, 1}}), "");
    EXPECT_NE(difference(0.0f, -0.0f), "");
    EXPECT_NE(difference(QList<float>{0.0f}, QList<float>{-0.0f}), "");
    EXPECT_NE(difference(1.0f, std::nextafter(1.0f, 2.0f)), "");
    EXPECT_NE(difference(QList<int>{INT_MAX}, QList<int>{INT_MAX - 1}), "") << "no float holds both";
    EXPECT_EQ(difference(Points{{1, 2}, {3, 4}}, exact(1, 2, 3, 4)), "") << "numbers are compared, not kinds";
    EXPECT_NE(difference(Points(), QList<float>{1}), "");
}

TEST(Comparison, ShowsCountsIndexHexadecimalsAndSurroundings) {
    const Points a = pointsFor(100, [](int i) { return at(i, 2 * i); });
    Points b = a;
    b[60].y = 120.5f;
    b[62].x = -0.0f;
    b.removeLast();
    EXPECT_EQ(difference(a, b), "Lists that differ, first at point 60, at 3 of 100:\n"
                                "  exact(a): 100 points, y = 0x1.ep+6 (120)\n"
                                "  exact(b): 99 points, y = 0x1.e2p+6 (120.5)\n"
                                "    point  exact(a)   exact(b)\n"
                                "       56  (56, 112)  (56, 112)\n"
                                "       57  (57, 114)  (57, 114)\n"
                                "       58  (58, 116)  (58, 116)\n"
                                "       59  (59, 118)  (59, 118)\n"
                                "  *    60  (60, 120)  (60, 120.5)\n"
                                "       61  (61, 122)  (61, 122)\n"
                                "  *    62  (62, 124)  (-0, 124)\n"
                                "       63  (63, 126)  (63, 126)\n"
                                "       64  (64, 128)  (64, 128)");
}

TEST(Comparison, ShowsEveryKindOfList) {
    const struct {
        std::string message, part;
    } cases[] = {
        {difference(Points(3), Points(2)), "first at point 2, at 1 of 3"},
        {difference(Points{{1, 2}}, Points()), "exact(a): 1 point, x = 0x1p+0 (1), y = 0x1p+1 (2)\n"
                                               "  exact(b): 0 points, none at 0\n"},
        {difference(QList<float>{1, 0.1f}, QList<float>{1, kNaN}), "value = 0x1.99999ap-4 (0.100000001)"},
        {difference(QMap<float, int>{{1.5f, 7}}, QMap<float, int>{{1.5f, 8}}), "1 entry, value = 0x1.cp+2 (7)"},
        {difference(QMap<float, int>{{1.5f, 7}}, QMap<float, int>{{1.5f, 8}}), "(1.5, 7)  (1.5, 8)"},
        {difference(QList{KxPointXYZRGB(1, 2, 3, 4)}, QList{KxPointXYZRGB(1, 2, 3, 0xffffffffu)}),
         "(1, 2, 3, 4)  (1, 2, 3, 4294967295)"},
        {difference(SpacePoints{{1, 2, 3}}, Points{{1, 2}}), "first at number 2, at 1 of 3"},
        {difference(1.0f, 2), "exact(a) = 0x1p+0 (1)\n  exact(b) = 0x1p+1 (2)"},
    };
    for (const auto& [message, part] : cases) {
        EXPECT_NE(message.find(part), std::string::npos) << message << "\n\nlacks\n\n" << part;
    }
}

} // namespace
