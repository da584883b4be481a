// Texts with columns: the forms that are accepted and how they are read, what is refused and where.
#include "inspect/inspectSupport.h"
#include "support/tempFiles.h"

#include <KxInspect/PointFile.h>
#include <KxInspect/ProfileFile.h>
#include <gtest/gtest.h>

#include <limits>

using namespace KxInspect;
using namespace inspect_test;
using testing_support::TempFiles;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

class TextTable : public testing::Test, public TempFiles {
protected:
    std::string make(const QByteArray& content) const { return write("file.txt", content).toStdString(); }
};

TEST_F(TextTable, FindsTheForm) {
    const struct {
        const char* desc;
        QByteArray content;
        char separator, decimalSign;
        int titleLines, columns;
        std::vector<Point3> points;
    } cases[] = {
        {"semicolons, decimal commas", "1,5;2\n-3;4,25\n", ';', ',', 0, 2, {{1.5f, 2, kNaN}, {-3, 4.25f, kNaN}}},
        {"semicolons, decimal points", "1.5;2\n", ';', '.', 0, 2, {{1.5f, 2, kNaN}}},
        {"commas", "1.5,2,7\n", ',', '.', 0, 3, {{1.5f, 2, 7}}},
        {"commas between whole numbers", "1,2\n3,4\n", ',', '.', 0, 2, {{1, 2, kNaN}, {3, 4, kNaN}}},
        {"commas and blanks", " 1 , 2 ,3\n", ',', '.', 0, 3, {{1, 2, 3}}},
        {"a comma and a blank", "1, 2, 3\n", ',', '.', 0, 3, {{1, 2, 3}}},
        {"tabs", "1.5\t2\n", '\t', '.', 0, 2, {{1.5f, 2, kNaN}}},
        {"tabs, decimal commas", "1,5\t2\t-0,5\n", '\t', ',', 0, 3, {{1.5f, 2, -0.5f}}},
        {"blanks", "  1.5   2 \t 3  \n", ' ', '.', 0, 3, {{1.5f, 2, 3}}},
        {"blanks, decimal commas", "1,5 2,5 3\n", ' ', ',', 0, 3, {{1.5f, 2.5f, 3}}},
        {"a later decimal sign", "1;2\n3;4\n5,5;6\n", ';', ',', 0, 2, {{1, 2, kNaN}, {3, 4, kNaN}, {5.5f, 6, kNaN}}},
        {"six columns", "1;2;3;9;9;9\n", ';', '.', 0, 6, {{1, 2, 3}}},
        {"titles", "x [mm]; y [mm]\n1;2\n", ';', '.', 1, 2, {{1, 2, kNaN}}},
        {"a title of one word", "profile\n1 2\n", ' ', '.', 1, 2, {{1, 2, kNaN}}},
        {"a title with a number", "Wheel 7 left\n1;2\n", ';', '.', 1, 2, {{1, 2, kNaN}}},
        {"comments", "# 2 10.0\n% 3\n// 4 5\n1 2\n", ' ', '.', 3, 2, {{1, 2, kNaN}}},
        {"empty lines about", "\n \n1;2\n\n\t\n", ';', '.', 2, 2, {{1, 2, kNaN}}},
        {"a title and an empty line", "x,y\n\n1,2\n", ',', '.', 2, 2, {{1, 2, kNaN}}},
        {"CRLF", "x;y\r\n1,5;2\r\n", ';', ',', 1, 2, {{1.5f, 2, kNaN}}},
        {"no line end", "1;2\n3;4", ';', '.', 0, 2, {{1, 2, kNaN}, {3, 4, kNaN}}},
        {"byte order mark", QByteArray::fromHex("efbbbf313b320a"), ';', '.', 0, 2, {{1, 2, kNaN}}},
        {"UTF-16", QByteArray::fromHex("fffe31003b0032000a00"), ';', '.', 0, 2, {{1, 2, kNaN}}},
        {"UTF-16, big-endian", QByteArray::fromHex("feff0031003b0032"), ';', '.', 0, 2, {{1, 2, kNaN}}},
        {"missing values", ";2\n-;nan\n NaN ;-nan\n3;\n", ';', '.', 0, 2, {{kNaN, 2, kNaN}, {}, {}, {3, kNaN, kNaN}}},
        {"missing, tabs", "1\t\t3\n4\t5\t6\n", '\t', '.', 0, 3, {{1, kNaN, 3}, {4, 5, 6}}},
        {"infinity", "inf -Inf\n+infinity 1\n", ' ', '.', 0, 2, {{kInf, -kInf, kNaN}, {kInf, 1, kNaN}}},
        {"number forms", "+1.;.5;-1E+2\n1e-2;007;-0\n", ';', '.', 0, 3, {{1, 0.5f, -100}, {0.01f, 7, 0}}},
        {"decimal comma and exponent", "1,5e-1;2\n", ';', ',', 0, 2, {{0.15f, 2, kNaN}}},
        {"too small for a double", "1e-999;0.000001e-400\n", ';', '.', 0, 2, {{0, 0, kNaN}}},
        {"400 digits", "0." + QByteArray(397, '0') + "1;2\n", ';', '.', 0, 2, {{0, 2, kNaN}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        try {
            const PointSet set = readPoints(make(c.content), FileKind::Xyz);
            EXPECT_TRUE(areSame(set.points, c.points));
            EXPECT_EQ(set.hasZ, c.columns > 2);
            ASSERT_TRUE(set.text);
            EXPECT_EQ(set.text->separator, c.separator);
            EXPECT_EQ(set.text->decimalSign, c.decimalSign);
            EXPECT_EQ(set.text->titleLines, c.titleLines);
            EXPECT_EQ(set.text->columns, c.columns);
        } catch (const Error& error) {
            ADD_FAILURE() << error.what();
        }
    }
}

TEST_F(TextTable, ProfilesHaveTwoColumns) {
    std::optional<TextForm> form;
    EXPECT_EQ(readProfile(make("x\ty\n1\t2\n\t3\n"), {}, &form).points[0], (Point{1, 2}));
    ASSERT_TRUE(form);
    EXPECT_EQ(form->separator, '\t');
    EXPECT_EQ(form->titleLines, 1);
    EXPECT_THROW(readProfile(make("1;2;3\n")), Error);
    EXPECT_EQ(readProfile(make("1;2;3\n"), {{2, 0}, {}, {}}).points[0], (Point{3, 1}));
    EXPECT_EQ(readProfile(make("\t1\t2\n")).points[0], (Point{1, 2})) << "of three columns the first would be missing";
}

TEST_F(TextTable, OptionsSettleTheForm) {
    const struct {
        const char* desc;
        QByteArray content;
        TextOptions options;
        std::vector<Point3> points;
    } cases[] = {
        {"columns", "1;2;3;4\n", {{3, 0}, {}, {}}, {{4, 1, kNaN}}},
        {"columns with z", "1;2;3;4\n", {{3, 0, 1}, {}, {}}, {{4, 1, 2}}},
        {"the same column", "1;2\n", {{1, 1}, {}, {}}, {{2, 2, kNaN}}},
        {"tabs", "\t1\t2\n", {{}, '\t', {}}, {{kNaN, 1, 2}}},
        {"blanks", "\t1\t2\n", {{}, ' ', {}}, {{1, 2, kNaN}}},
        {"decimal point", "1;2\n", {{}, {}, '.'}, {{1, 2, kNaN}}},
        {"decimal comma, many columns", "1,2 3,4 5,6 7,8\n", {{0, 3}, {}, ','}, {{1.2f, 7.8f, kNaN}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        EXPECT_TRUE(areSame(readPoints(make(c.content), FileKind::Csv, c.options).points, c.points));
    }
    const TextOptions wrong[] = {{{-1, 0}, {}, {}}, {{1}, {}, {}}, {{0, 1, 2, 3}, {}, {}},
                                 {{}, 'x', {}},     {{}, {}, ';'}, {{}, ',', ','}};
    for (const TextOptions& options : wrong) {
        EXPECT_EQ(errorOf([&] { readPoints(make("1;2\n"), FileKind::Csv, options); }).kind(), ErrorKind::BadArgument);
    }
}

TEST_F(TextTable, RefusesWithLineColumnAndText) {
    constexpr ErrorKind kDamaged = ErrorKind::Damaged;
    constexpr ErrorKind kUnsuitable = ErrorKind::Unsuitable;
    using Place = std::optional<std::int64_t>;
    const struct {
        const char* desc;
        QByteArray content;
        ErrorKind kind;
        Place line, column;
        const char* message;
        TextOptions options = {};
    } cases[] = {
        {"a word", "1;2\n3;abc\n", kDamaged, 2, 2, "'abc'"},
        {"a word first", "abc;2\n3;4\n", kDamaged, 1, 1, "'abc'"},
        {"number and letters", "1;2mm\n", kDamaged, 1, 2, "'2mm'"},
        {"two dashes", "1 2\n-- --\n", kDamaged, 2, 1, "'--'"},
        {"half an exponent", "1;2e\n", kDamaged, 1, 2, "'2e'"},
        {"hexadecimal", "1;0x10\n", kDamaged, 1, 2, "'0x10'"},
        {"two signs", "1;+-2\n", kDamaged, 1, 2, "'+-2'"},
        {"two points", "1.2.3;2\n", kDamaged, 1, 1, "'1.2.3'"},
        {"quoted", "1;2\n\"3\";4\n", kDamaged, 2, 1, "'\"3\"'"},
        {"beyond a float", "1;1e39\n", kDamaged, 1, 2, "'1e39'"},
        {"beyond a double", "1;-1e999\n", kDamaged, 1, 2, "'-1e999'"},
        {"401 digits", "1;" + QByteArray(401, '0') + "\n", kDamaged, 1, 2,
         "'0000000000000000000000000000000000000000...'"},
        {"a comma, then a point", "1,5;2\n1.5;2\n", kDamaged, 2, 1, "'1.5'"},
        {"a point, then a comma", "1.5;2\n1,5;2\n", kDamaged, 2, 1, "'1,5'"},
        {"a point where a comma is named", "1.5;2\n", kDamaged, 1, 1, "'1.5'", {{}, {}, ','}},
        {"too few columns", "1;2;3\n4;5\n", kDamaged, 2, 2, "only 2 of 3 columns"},
        {"too many columns", "1;2\n4;5;6\n", kDamaged, 2, 3, "more than 2 columns"},
        {"a remark", "1 2\n3 4 # worn\n", kDamaged, 2, 3, "'#'"},
        {"a comment later", "1 2\n# 3\n4 5\n", kDamaged, 2, 1, "'#'"},
        {"titles later", "1;2\nx;y\n3;4\n", kDamaged, 2, 1, "'x'"},
        {"behind an empty line", "1;2\n\n3;4\n", kDamaged, 3, 1, "behind the empty line 2 in line 3, column 1: '3;4'"},
        {"behind two empty lines", "1;2\n\r\n \n3;4\n", kDamaged, 4, 1, "behind the empty line 2 in"},
        {"text behind an empty line", "1;2\n\nend\n", kDamaged, 3, 1, "'end'"},
        {"one column", "1\n2\n", kUnsuitable, 1, 1, "1 column"},
        {"four columns", "t\n1;2;3;4\n", kUnsuitable, 2, 4, "has 4 columns, not 2, 3 or 6 (--columns"},
        {"a height map", QByteArray("1.5\t").repeated(255) + "1\n", kUnsuitable, 1, 256, "256 columns"},
        {"a column that is not there", "1;2;3;4\n", kUnsuitable, 1, 4, "no column 8", {{0, 7}, {}, {}}},
        {"another separator", "1,2\n", kUnsuitable, 1, 1, "", {{}, ';', {}}},
        {"two separators", "1,2,3\n4;5;6\n", kDamaged, 2, 1,
         "'4;5;6', read with ',' between the columns; with ';' it has no number in line 1"},
        {"empty fields between blanks", "1\t2\t3\n4\t\t6\n7\t\t9\n", kDamaged, 2, 2, "", {{}, ' ', {}}},
        {"tabs or blanks",
         "\t1\t2\n\t3\t4\n",
         kUnsuitable,
         1,
         {},
         "as 3 columns between tabs and as 2 columns between blanks"},
        {"control characters", "1;2\n3;\x1b[31m\n", kDamaged, 2, 2, "'?[31m'"},
        {"a zero byte", QByteArray("1;2\n3;\0\n", 8), kDamaged, 2, 2, "'?'"},
        {"titles only", "x;y\nz;u\n", kUnsuitable, {}, {}, "holds no points"},
        {"nothing", "", kUnsuitable, {}, {}, "holds no points"},
        {"a long line", "1;2\n" + QByteArray((1 << 20) + (1 << 18) + 1, '7'), kUnsuitable, 2, {}, "1 MiB"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        expectErrorAt([&] { readPoints(make(c.content), FileKind::Xyz, c.options); }, c.kind, c.line, c.column,
                      c.message);
    }
}

TEST_F(TextTable, LinesMeetBlocks) {
    QByteArray content; // lines of all lengths from 4 to 9 across the blocks that are read
    std::vector<Point3> points;
    for (int i = 0; content.size() < 600000; ++i) {
        const QByteArray number = QByteArray::number(i % 7 == 0 ? i : i % 1000);
        content += number + ";" + QByteArray::number(i % 3) + "\n";
        points.push_back({number.toFloat(), static_cast<float>(i % 3), kNaN});
    }
    EXPECT_TRUE(areSame(readPoints(make(content), FileKind::Csv).points, points));
}

} // namespace
