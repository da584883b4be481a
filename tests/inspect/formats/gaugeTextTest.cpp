// Text files of contact profile gauges: where their points begin and end, what is refused, and files of real gauges
// where they are there.
#include "inspect/inspectSupport.h"
#include "support/tempFiles.h"

#include <KxInspect/FileContents.h>
#include <KxInspect/PointFile.h>
#include <KxInspect/ProfileFile.h>
#include <gtest/gtest.h>

#include <QtCore/QDir>

using namespace KxInspect;
using namespace inspect_test;
using testing_support::TempFiles;

namespace {

class GaugeText : public testing::Test, public TempFiles {
protected:
    std::string make(const QByteArray& content, const QString& name = "file.dat") const {
        return write(name, content).toStdString();
    }
};

const QByteArray kDotted = "#GAUGE 2\nw7(R).whl\nStock.......:\n32.5 37.1 14.7  (a/b/c)\n\n";
const QByteArray kEntries = "Filename=a.b\n\"ColumnDef=X,Y\"\nRef=0.0, 1.5\nXYPoints=2\nColumnDef=X,Y,A,C\n";
const QByteArray kBlock = "header.begin\n  version = 1\nheader.end\nspline.begin\n units = 1000.\n point.begin\n";

TEST_F(GaugeText, HeadersTellWherePointsAre) {
    const std::vector<Point> points = {{1.5f, 2}, {-3, 4}};
    const struct {
        const char* desc;
        QByteArray content;
        int titleLines, columns, remarks;
        const char* note = "";
    } cases[] = {
        {"dotted names", kDotted + "1.5 2\n-3 4\n\n", 5, 2, 0},
        {"three columns", kDotted + "1.5 2 0.000\n-3 4 0.1\n", 5, 3, 0},
        {"CRLF", QByteArray(kDotted + "1.5 2\n-3 4\n").replace("\n", "\r\n"), 5, 2, 0},
        {"two empty lines", kDotted + "\n1.5 2\n-3 4\n", 6, 2, 0},
        {"numbers in the header", "Stock...: 1\n1 2\n3 4\n5 6\n\n1.5 2\n-3 4\n", 5, 2, 0},
        {"semicolons, decimal commas", kDotted + "1,5;2\n-3;4\n", 5, 2, 0,
         "is read with ';' between the columns and ',' as decimal sign"},
        {"entries", kEntries + "1.5 2 3 4\n-3 4 5 6\n", 5, 4, 0},
        {"entries, empty line", kEntries + "\n1.5 2 3 4\n-3 4 5 6\n\n", 6, 4, 0},
        {"remarks", kEntries + "1.5 2 3 4  \" worn\n-3 4 5 6 added 7\n", 5, 4, 2,
         "is read with blanks between the columns, without the remarks behind the columns of 2 points"},
        {"other order", "ColumnDef=A,Y,X\n9 2 1.5\n9 4 -3\n", 1, 3, 0},
        {"block", kBlock + "  1.5 2\n  -3 4\n point.end\nspline.end\n7 8\n", 6, 2, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        try {
            std::optional<TextForm> form;
            EXPECT_EQ(readProfile(make(c.content), {}, &form).points, points);
            ASSERT_TRUE(form);
            EXPECT_EQ(form->titleLines, c.titleLines);
            EXPECT_EQ(form->columns, c.columns);
            EXPECT_EQ(form->remarks, c.remarks);
            EXPECT_EQ(readingNote(*form), c.note);
            EXPECT_EQ(kindOfFile(make(c.content)), FileKind::Gauge);
        } catch (const Error& error) {
            ADD_FAILURE() << error.what();
        }
    }
    const QByteArray byName = "Wheel 7\n\n1.5 2 0\n-3 4 0\n"; // only the name tells what it is
    EXPECT_EQ(readProfile(make(byName, "a.WHL")).points, points);
    EXPECT_THROW(readProfile(make(byName, "a.txt")), Error);
    const PointSet set = readPoints(make(kEntries + "1.5 2 3 4\n-3 4 5 6\n"), FileKind::Gauge, {{3, 1, 0}, {}, {}});
    EXPECT_EQ(set.points, (std::vector<Point3>{{4, 2, 1.5f}, {6, 4, -3}}));
    for (const std::vector<int>& columns : {std::vector{4, 1, 0}, {1, 4, 0}, {0, 1, 4}}) {
        expectErrorAt(
            [&] {
                readPoints(make(kEntries + "1.5 2 3 4\n-3 4 5 6\n"), FileKind::Gauge, {columns, {}, {}});
            },
            ErrorKind::Unsuitable, 6, 4, "has no column 5");
    }
}

TEST_F(GaugeText, RefusesWithLineColumnAndText) {
    using Place = std::optional<std::int64_t>;
    const struct {
        const char* desc;
        QByteArray content;
        Place line, column;
        const char* message;
        ErrorKind kind = ErrorKind::Damaged;
    } cases[] = {
        {"a bad line", kDotted + "1 2\n -- --\n3 4\n", 7, 1, "'--'"},
        {"a bad number", kDotted + "1 2\n3 4,x\n5 6\n", 7, 2, "'4,x'"},
        {"a bad column that is not used", kEntries + "1 2 3 4\n1 2 x 4\n", 7, 3, "'x'"},
        {"a line cut short", kEntries + "1 2 3 4\n1 2 3\n", 7, 3, "only 3 of 4"},
        {"too many numbers", kDotted + "1 2\n3 4 5\n", 7, 3, "more than 2"},
        {"behind an empty line", kDotted + "1 2\n3 4\n\n5 6\n", 9, 1, "behind the empty line 8"},
        {"halves", "Stock...:\n1 2\n3 4\n5 6\n7 8\n\n1 2\n", 7, 1, "behind the empty line 6"},
        {"fewer points than the header says", kEntries + "1 2 3 4\n", 6, {}, "after 1 of 2 points"},
        {"no end", kBlock + "1 2\n3 4\n", 8, {}, "point.end"},
        {"an empty line in a block", kBlock + "1 2\n\n3 4\npoint.end\n", 9, 1, "behind the empty line 8"},
        {"no points", kEntries, {}, {}, "no points", ErrorKind::Unsuitable},
        {"no block", "header.begin\n", {}, {}, "no points", ErrorKind::Unsuitable},
        {"only a dotted header", kDotted, {}, {}, "no points", ErrorKind::Unsuitable},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        expectErrorAt([&] { readProfile(make(c.content)); }, c.kind, c.line, c.column, c.message);
    }
}

#ifdef KXMATH_GAUGE_FILES
TEST_F(GaugeText, ReadsFilesOfRealGauges) {
    const QDir folder(QStringLiteral(KXMATH_GAUGE_FILES));
    const struct {
        const char* name;
        int points, titleLines, columns, remarks;
    } files[] = {
        {"Car7216_0001r.whl", 645, 10, 2, 0},
        {"Car7358_0001r.whl", 656, 10, 2, 0},
        {"avg_HR.BAN", 147, 52, 4, 0},
        {"avg_low2.ban", 526, 52, 4, 2},
        {"avg_wheel.whl", 728, 8, 3, 0},
        {"left-roller-v1-pre-dry.ban", 345, 35, 2, 0},
        {"right-roller-v1-pre-dry.ban", 329, 36, 2, 0},
        {"site_b_hr.prr", 493, 10, 2, 0},
        {"worn_high_mileage.prw", 638, 10, 2, 0},
    };
    for (const auto& file : files) {
        SCOPED_TRACE(file.name);
        const std::string path = folder.filePath(file.name).toStdString();
        const FileContents contents = readFileContents(path);
        EXPECT_FALSE(contents.damage) << contents.damage->what();
        EXPECT_EQ(contents.kind, FileKind::Gauge);
        EXPECT_EQ(contents.points, file.points);
        EXPECT_EQ(contents.missing, 0);
        ASSERT_TRUE(contents.text);
        EXPECT_EQ(contents.text->titleLines, file.titleLines);
        EXPECT_EQ(contents.text->columns, file.columns);
        EXPECT_EQ(contents.text->remarks, file.remarks);
        EXPECT_EQ(readProfile(path).points.size(), static_cast<std::size_t>(file.points));
    }
}
#endif

} // namespace
