// The text of CSV files against Qt's own conversions, which define it.
#include "profileSupport.h"

#include "support/tempFiles.h"

#include <QtCore/QTextStream>

#include <bit>
#include <random>

using namespace KxMath;
using namespace testing_support;

namespace {

QByteArray writtenByQt(const Points& points) {
    QByteArray text;
    for (const KxPointXY& p : points) {
        text += QByteArray::number(static_cast<double>(p.x), 'g', 6) + ';' +
                QByteArray::number(static_cast<double>(p.y), 'g', 6) + '\n';
    }
    return text.replace('.', ',');
}

Points readByQt(const QByteArray& text, int xColumn, int yColumn) {
    Points points;
    QTextStream stream(text);
    for (QString line = stream.readLine(); !line.isEmpty(); line = stream.readLine()) {
        const QStringList fields = line.split(u';');
        if (std::max(xColumn, yColumn) < fields.size()) {
            const auto number = [&](int i) {
                return static_cast<float>(QString(fields[i]).replace(u',', u'.').toDouble());
            };
            points.append(KxPointXY(number(xColumn), number(yColumn)));
        }
    }
    return points;
}

} // namespace

TEST(CsvText, WritesWhatQtWrites) {
    TempFiles files;
    std::mt19937 random(1);
    Points points;
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
    KxProfile profile = profileOf(points);
    ASSERT_TRUE(profile.writeToCSVFile(files.path("a.csv")));
    EXPECT_TRUE(files.read("a.csv") == writtenByQt(points));
}

TEST(CsvText, ReadsWhatQtReads) {
    TempFiles files;
    std::mt19937 random(2);
    const std::string alphabet = "0123456789012345;;;;..,,-+eE x\xff\n\n\r";
    for (int round = 0; round < 2000; ++round) {
        QByteArray text = round % 10 == 0 ? "\xef\xbb\xbf" : round % 10 == 1 ? "\xff\xfe" : "";
        for (std::size_t i = random() % 60; i > 0; --i) {
            text += alphabet[random() % alphabet.size()];
        }
        if (round % 100 == 2) { // lines across the portions in which a file is read
            text.prepend(QByteArray(65530 + static_cast<qsizetype>(random() % 10), '7') + ";1\n");
        }
        const int xColumn = static_cast<int>(random() % 3);
        const int yColumn = static_cast<int>(random() % 3);
        KxProfile profile;
        profile.readFromCSVFile(files.write("a.csv", text), xColumn, yColumn);
        ASSERT_EQ(exact(profile.points), exact(readByQt(text, xColumn, yColumn)))
            << text.toPercentEncoding().right(300).toStdString();
    }
}
