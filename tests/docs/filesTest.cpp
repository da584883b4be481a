// docs/files.md against the library: the page holds the expected bytes.
#include "support/tempFiles.h"
#include "support/testing.h"

#include <QtCore/QRegularExpression>

using namespace testing_support;

namespace {

/// The text of the page below a heading, up to the next one.
QString section(const QString& heading) {
    QFile page(QStringLiteral(KXMATH_DOCS_DIR "/files.md"));
    if (!page.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QString text = page.readAll();
    return text.section("\n## " + heading + '\n', 1).section("\n## ", 0, 0);
}

/// The bytes of the table of a section. Its offsets must be right.
QByteArray bytesOfTable(const QString& heading) {
    static const QRegularExpression row(QStringLiteral("\\| (\\d+) \\| `([0-9a-f ]+)` \\|"));
    QByteArray bytes;
    for (auto rows = row.globalMatch(section(heading)); rows.hasNext();) {
        const QRegularExpressionMatch match = rows.next();
        EXPECT_EQ(match.captured(1).toLongLong(), bytes.size()) << qPrintable(heading);
        bytes += QByteArray::fromHex(match.captured(2).toLatin1());
    }
    return bytes;
}

QString csvOfSection(const QString& heading) {
    return section(heading).section(QStringLiteral("```csv\n"), 1).section(QStringLiteral("```"), 0, 0);
}

template <typename Cloud>
void expectBytes(const char* heading, Cloud& cloud) {
    SCOPED_TRACE(heading);
    const QByteArray expected = bytesOfTable(QString::fromLatin1(heading));
    ASSERT_FALSE(expected.isEmpty());
    const TempFiles files;

    EXPECT_EQ(files.bytesOf(cloud).toHex(' '), expected.toHex(' '));
    Cloud read;
    EXPECT_EQ(read.readFromFile(files.write("given", expected)), cloud.size());
    EXPECT_EQ(files.bytesOf(read).toHex(' '), expected.toHex(' '));
}

} // namespace

TEST(FilesPage, HasTheBytesOfTheBinaryFormats) {
    KxPointCloud<KxPointXY> flat;
    flat.points = {{1.5f, -2.0f}, {10.25f, kNaN}};
    expectBytes("2-D cloud", flat);
    KxPointCloud<KxPointXYZ> spatial;
    spatial.points = {{1.0f, 2.0f, -0.5f}};
    expectBytes("3-D cloud", spatial);
    KxPointCloud<KxPointXYZRGB> coloured;
    coloured.points = {{1.0f, 2.0f, 3.0f, 0x00FF0000u}};
    expectBytes("Coloured 3-D cloud", coloured);

    KxProfileZ profile(12.5f);
    profile.points = {{-10.0f, 55.25f}, {-9.5f, 55.0f}};
    expectBytes("Profile record", profile);
}

TEST(FilesPage, HasTheBytesOfTheHeaderlessExport) {
    KxPointCloud<KxPointXYZ> cloud;
    cloud.points = {{1.0f, 2.0f, 3.0f}, {4.0f, 5.0f, 6.0f}};
    const TempFiles files;
    EXPECT_TRUE(cloud.compat_writeToXYZFile(files.path("export")));
    EXPECT_EQ(files.read("export").toHex(' '), bytesOfTable(QStringLiteral("Headerless export")).toHex(' '));
}

TEST(FilesPage, HasTheTextOfTheCsvFormats) {
    const TempFiles files;
    KxProfile profile;
    profile.points = {{1.5f, -2.0f}, {0.25f, 1e-7f}, {1234567.0f, kNaN}};
    EXPECT_TRUE(profile.writeToCSVFile(files.path("profile.csv")));
    EXPECT_EQ(QString::fromLatin1(files.read("profile.csv")), csvOfSection(QStringLiteral("Profile CSV")));

    KxLevelHistogram<KxPointXY> histogram;
    KxPointCloud<KxPointXY> heights;
    heights.points = {{0, -0.5f}, {1, 0}, {2, 0.25f}, {3, 1.75f}};
    histogram.calcFromPointCloud(heights, 0.5f);
    EXPECT_TRUE(histogram.writeToCSV(files.path("levels.csv")));
    EXPECT_EQ(QString::fromLatin1(files.read("levels.csv")),
              csvOfSection(QStringLiteral("Level histogram CSV")).replace(QLatin1Char('\n'), QLatin1String("\r\n")));
}
