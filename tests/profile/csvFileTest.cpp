// The text of CSV files against Qt's own conversions, which define it.
#include "profileSupport.h"

#include "support/tempFiles.h"

#include <QtCore/QTextStream>

using namespace testing_support;

namespace {

Points readByQt(const QByteArray& text, int xColumn, int yColumn) {
    Points points;
    QTextStream stream(text);
    for (QString line = stream.readLine(); !line.isEmpty(); line = stream.readLine()) {
        const QStringList fields = line.replace(u',', u'.').split(u';');
        if (std::max(xColumn, yColumn) < fields.size()) {
            points.append(
                {static_cast<float>(fields[xColumn].toDouble()), static_cast<float>(fields[yColumn].toDouble())});
        }
    }
    return points;
}

TEST(CsvFile, WritesWhatQtWrites) {
    TempFiles files;
    std::mt19937 random(1);
    Points points = {{kInf, -kInf}, {kNaN, 1e-45f}};
    for (int i = 0; i < 50000; ++i) {
        const float whole = static_cast<float>(static_cast<int>(random() % 4000001) - 2000000);
        points.append(KxPointXY(std::bit_cast<float>(static_cast<std::uint32_t>(random())), whole / 2)); // ties
        points.append(KxPointXY(whole / 1024, whole / 1e6f));
    }
    for (const float edge : {1e-4f, 999999.5f, 99999.95f, 9.999995f, 1.0f, 100000.0f, 0.0f, -0.0f}) {
        for (const float v : {std::nextafter(edge, -1e9f), edge, std::nextafter(edge, 1e9f)}) {
            points.append(KxPointXY(v, -v));
        }
    }
    QByteArray expected;
    const auto text = [](float v) { return QByteArray::number(static_cast<double>(v), 'g', 6).replace('.', ','); };
    for (const KxPointXY& p : points) {
        expected += text(p.x) + ';' + text(p.y) + '\n';
    }
    KxProfile profile = profileOf(points);
    ASSERT_TRUE(profile.writeToCSVFile(files.path("a.csv")));
    const QList<QByteArray> lines = files.read("a.csv").split('\n'), expectedLines = expected.split('\n');
    const qsizetype same = std::ranges::mismatch(lines, expectedLines).in1 - lines.begin();
    EXPECT_EQ(lines.value(same), expectedLines.value(same)) << "line " << same;
    EXPECT_TRUE(lines.size() == expectedLines.size() && expected.startsWith("inf;-inf\nnan;1,4013e-45\n"));
    EXPECT_TRUE(profileOf({}).writeToCSVFile(files.path("a.csv"))); // replaced
    EXPECT_EQ(files.read("a.csv"), QByteArray());
    EXPECT_FALSE(profile.writeToCSVFile(files.path("no folder/a.csv")));
}

TEST(CsvFile, ReadsWhatQtReads) {
    TempFiles files;
    const auto check = [&](const QByteArray& text, int xColumn, int yColumn) {
        KxProfile profile = profileOf({{99, 99}, {98, 98}});
        EXPECT_EQ(profile.readFromCSVFile(files.path("none.csv"), 0, 1) + profile.readFromCSVFile(".", 0, 1), 4);
        expectPoints(profile, {{99, 99}, {98, 98}}); // a file that is none leaves the profile
        Points expected = readByQt(text, xColumn, yColumn);
        EXPECT_EQ(profile.readFromCSVFile(files.write("a.csv", text), xColumn, yColumn), expected.size());
        EXPECT_EXACT(profile.points, expected) << text.toPercentEncoding().right(300).toStdString();
        EXPECT_TRUE(std::isnan(profile.minX)); // emptied with clear(), which forgets the range
        return expected;
    };
    const std::pair<QByteArray, Points> cases[] = {
        {"1.5;2.5\n1,5;2,5;7\n3\n4;", {{1.5f, 2.5f}, {1.5f, 2.5f}, {4, 0}}},
        {"1;2\r\n;4\r\n\r\n5;6", {{1, 2}, {0, 4}}}, // an empty line ends the data
        {"\n1;2\n", {}},
        {" 1 ;\t2\n  \n ;\n3;4", {{1, 2}, {0, 0}, {3, 4}}},
        {"x;y\n1.2.3;0x10\n1,234.5;- 1\n", {{0, 0}, {0, 0}, {0, 0}}},
        {"nan;-inf\n1e999;1e39\n1e-999;1e-46\n", {{kNaN, -kInf}, {kInf, kInf}, {0, 0}}},
    };
    for (const auto& [text, points] : cases) {
        EXPECT_EXACT(check(text, 0, 1), points) << text.constData();
        EXPECT_TRUE(check(text, INT_MAX, 0).isEmpty());
    }
    const QByteArray whole = "1,5;2\n-3.25;4e1;9\r\n;nan\n7\n\n8;9\n";
    for (qsizetype bit = 0; bit < 8 * whole.size() && !HasFailure(); ++bit) {
        QByteArray damaged = whole;
        damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << bit % 8));
        check(damaged, 0, 1);
        check(whole.first(bit / 8), 0, 1);
    }
    std::mt19937 random(2);
    const std::string alphabet = "0123456789012345;;;;..,,-+eE x\xff\n\n\r";
    for (int round = 0; round < 2000 && !HasFailure(); ++round) {
        QByteArray text = round % 10 == 0 ? "\xef\xbb\xbf" : round % 10 == 1 ? "\xff\xfe" : "";
        for (std::size_t i = random() % 60; i > 0; --i) {
            text += alphabet[random() % alphabet.size()];
        }
        if (round % 100 == 2) { // lines across the portions in which a file is read
            text.prepend(QByteArray(65530 + static_cast<qsizetype>(random() % 10), '7') + ";1\n");
        }
        InputLog input;
        input.add(text);
        const RoundReport report(2, round, input);
        check(text, static_cast<int>(random() % 3), static_cast<int>(random() % 3));
    }
}

} // namespace
