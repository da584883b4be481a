#include "profileSupport.h"

#include "support/tempFiles.h"

using namespace KxMath;
using namespace testing_support;

namespace {

TEST(CsvFile, WritesSixDigitsWithADecimalComma) {
    TempFiles files;
    KxProfile profile = profileOf({{1.5f, -2}, {0.25f, 1e-7f}, {1234567, 0.1f}, {-0.0f, kNaN}, {kInf, -kInf}});
    profile.points += {{123456, 1e-5f}, {3.4028235e38f, 1e-45f}};
    files.write("a.csv", QByteArray(1000, 'x')); // replaced
    ASSERT_TRUE(profile.writeToCSVFile(files.path("a.csv")));
    EXPECT_EQ(files.read("a.csv").toStdString(), "1,5;-2\n0,25;1e-07\n1,23457e+06;0,1\n0;nan\ninf;-inf\n"
                                                 "123456;1e-05\n3,40282e+38;1,4013e-45\n");
    EXPECT_TRUE(profileOf({}).writeToCSVFile(files.path("empty.csv")));
    EXPECT_EQ(files.read("empty.csv"), QByteArray());
    EXPECT_FALSE(profile.writeToCSVFile(files.path("no folder/a.csv")));
}

TEST(CsvFile, ReadsTwoColumnsOfTheLinesBeforeTheFirstEmptyOne) {
    const struct {
        const char* desc;
        QByteArray text;
        int xColumn;
        int yColumn;
        Points points;
    } cases[] = {
        {"comma and point", "1.5;2.5\n1,5;2,5\n", 0, 1, {{1.5f, 2.5f}, {1.5f, 2.5f}}},
        {"swapped columns, a short line", "7;8;9\n7;8\n1;2;3;4", 2, 0, {{9, 7}, {3, 1}}},
        {"one column twice", "7;8", 1, 1, {{8, 8}}},
        {"empty fields", "1;;2\n;3;\n;;", 0, 2, {{1, 2}, {0, 0}, {0, 0}}},
        {"an empty line ends the data", "1;2\n3;4\n\n5;6\n", 0, 1, {{1, 2}, {3, 4}}},
        {"an empty first line", "\n1;2\n", 0, 1, {}},
        {"line ends of another system", "1;2\r\n3;4\r\n\r\n5;6", 0, 1, {{1, 2}, {3, 4}}},
        {"blanks are a line", "1;2\n  \n ;\n3;4", 0, 1, {{1, 2}, {0, 0}, {3, 4}}},
        {"no numbers", "x;y\n1.2.3;0x10\n1,234.5;- 1\n", 0, 1, {{0, 0}, {0, 0}, {0, 0}}},
        {"blanks about numbers", " 1 ;\t2\n", 0, 1, {{1, 2}}},
        {"not finite", "nan;-inf\n1e999;1e39\n1e-999;1e-46\n", 0, 1, {{kNaN, -kInf}, {kInf, kInf}, {0, 0}}},
        {"columns beyond", "1;2\n", INT_MAX, 0, {}},
        {"no text", "", 0, 1, {}},
    };
    TempFiles files;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        KxProfile profile = profileOf({{99, 99}, {98, 98}});
        EXPECT_EQ(profile.readFromCSVFile(files.path("none.csv"), 0, 1) + profile.readFromCSVFile(".", 0, 1), 4);
        expectPoints(profile, {{99, 99}, {98, 98}}); // a file that is none leaves the profile
        const QString name = files.write("in.csv", c.text);
        EXPECT_EQ(profile.readFromCSVFile(name, c.xColumn, c.yColumn), c.points.size());
        EXPECT_EQ(exact(profile.points), exact(c.points));
        EXPECT_TRUE(std::isnan(profile.minX)); // emptied with clear(), which forgets the range
    }
}

TEST(CsvFile, WriteThenReadKeepsSixDigits) {
    TempFiles files;
    forNasty(71, 50, [&](Nasty& nasty) {
        const Points points = nastyPoints(nasty);
        KxProfile profile = profileOf(points);
        ASSERT_TRUE(profile.writeToCSVFile(files.path("a.csv")));
        const QByteArray text = files.read("a.csv");
        ASSERT_EQ(profile.readFromCSVFile(files.path("a.csv"), 0, 1), points.size());
        for (qsizetype i = 0; i < points.size(); ++i) {
            const float y = points[i].y;
            const bool isNear = std::abs(profile.points[i].y - y) <= 5.1e-6f * std::abs(y) + 1e-43f;
            ASSERT_TRUE(exact(profile.points[i].y) == exact(y) || (std::isfinite(y) && isNear)) << y;
        }
        ASSERT_TRUE(profile.writeToCSVFile(files.path("a.csv")));
        ASSERT_EQ(files.read("a.csv"), text);
    });
}

} // namespace
