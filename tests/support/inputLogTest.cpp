// What a failing round shows of its input.
#include "support/testing.h"

using namespace testing_support;

namespace {

TEST(InputLog, IsCodeForATest) {
    InputLog log;
    log.add(true);
    log.add(-7);
    log.add(-0.0f);
    log.add(16777216.0f);
    log.addPoint(KxPointXY(0.1f, kNaN));
    log.addPoint(KxPointXY(-kInf, std::numeric_limits<float>::denorm_min()));
    log.add(QList{KxPointXYZRGB(1, 2, -1e20f, 0xffffffffu)});
    log.add(QByteArray("1;\xff\n"));
    EXPECT_EQ(log.text(-1), "  numbers: {true, -7, -0.0f, 16777216}\n"
                            "  2 points\n  Points{{0.100000001f, kNaN}, {-kInf, 1.40129846e-45f}}\n"
                            "  1 points\n  QList<KxPointXYZRGB>{{1, 2, -1.00000002e+20f, 4294967295u}}\n"
                            "  bytes: QByteArray::fromPercentEncoding(\"1;%FF%0A\")\n");
    log.clear();
    EXPECT_EQ(log.text(0), "");
}

TEST(InputLog, IsShortenedAndShowsThePointsAboutTheDifference) {
    InputLog log;
    log.add(pointsFor(300, [](int i) { return at(i, 1, 2); }));
    EXPECT_EQ(log.text(298, 40),
              "  300 points, from 294: {{294, 1, 2}, {295, 1, 2}, {296, 1, 2}, {297, 1, 2}} // and 2 more\n"
              "  SpacePoints{{0, 1, 2}, {1, 1, 2}, {2, 1, 2}, {3, 1, 2}} // and 296 more\n");
    EXPECT_EQ(log.text(300).find("from"), std::string::npos) << "no such point in the input";
}

TEST(Nasty, NotesWhatItGives) {
    Nasty nasty(3);
    const QList<KxPointXY> drawn = nasty.points<KxPointXY>(5);
    const int some = nasty.below(1000);
    InputLog expected;
    expected.add(drawn);
    expected.add(some);
    EXPECT_EQ(nasty.input().text(-1), expected.text(-1));
    nasty.nextCase();
    EXPECT_EQ(nasty.input().text(-1), "");
}

} // namespace
