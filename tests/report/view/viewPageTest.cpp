// Pages that show data, read as a browser reads them: policy, blocks of numbers, what was left out.
#include "report/elements/packedNumbers.h"
#include "report/view/dataViews.h"
#include "report/view/decimation.h"
#include "report/view/deviation.h"
#include "report/view/pictures.h"

#include <KxInspect/Error.h>

#include <QtCore/QCryptographicHash>
#include <QtCore/QJsonDocument>
#include <QtCore/QRegularExpression>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace {

using namespace kxreport;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// The text of the only element that begins with `start`.
QByteArray between(const QByteArray& page, const QByteArray& start, const QByteArray& end) {
    const qsizetype from = page.indexOf(start);
    EXPECT_GE(from, 0) << start.constData();
    EXPECT_EQ(page.indexOf(start, from + 1), -1) << start.constData();
    const qsizetype begin = from + start.size();
    return page.mid(begin, page.indexOf(end, begin) - begin);
}

QJsonObject dataOf(const QByteArray& page) {
    return QJsonDocument::fromJson(between(page, R"(<script type="application/json" id="view">)", "</script>"))
        .object();
}

std::vector<quint64> codesOf(const QByteArray& page, const QString& block) {
    const QByteArray start = "<script type=\"text/plain\" id=\"" + block.toUtf8() + "\">";
    const QByteArray stream = QByteArray::fromBase64(between(page, start, "</script>"));
    const QByteArray bytes = qUncompress(QByteArray(4, '\0') + stream); // it asks for more memory than it is told
    std::vector<quint64> codes(1, 0);
    int shift = 0;
    for (const char byte : bytes) {
        codes.back() |= quint64(byte & 127) << shift;
        shift = (byte & 128) != 0 ? shift + 7 : 0;
        if (shift == 0) {
            codes.push_back(0);
        }
    }
    codes.pop_back();
    return codes;
}

std::vector<double> valuesOf(const QByteArray& page, const QString& block, double resolution, std::size_t columns) {
    const auto codes = codesOf(page, block);
    std::vector<double> values;
    for (std::size_t row = 0; row < codes.size(); row += columns) {
        qint64 last = 0;
        for (std::size_t i = row; i < std::min(row + columns, codes.size()); ++i) {
            last += codes[i] % 2 == 0 ? -qint64(codes[i] / 2) : qint64(codes[i] / 2);
            values.push_back(codes[i] == 0 ? std::nan("") : double(last) * resolution);
        }
    }
    return values;
}

/// A scan with missing cells and a map of it.
SetView scanOf(int rows, int columns, float noise = 0.0f) {
    std::mt19937 random(5);
    std::uniform_real_distribution<float> draw(-noise, noise);
    SetView view{QStringLiteral("<script>x.bin"), {}, KxInspect::HeightMap(), {}, false};
    KxInspect::HeightMap& map = *view.map;
    map.rows = rows;
    map.columns = columns;
    map.pitch = 0.25f;
    map.gap = 1.0f;
    map.originX = -3.0f;
    map.originZ = 0.0f;
    for (int row = 0; row < rows; ++row) {
        view.profiles.emplace_back();
        for (int column = 0; column < columns; ++column) {
            const float y =
                (row * 7 + column * 3) % 11 == 0 ? kNaN : float(row) * 1.37f - float(column) * 0.71f + draw(random);
            map.heights.push_back(y);
            view.profiles.back().points.push_back({-3.0f + 0.25f * float(column), y});
        }
    }
    return view;
}

QString hashOf(const QByteArray& text) {
    return "'sha256-" + QCryptographicHash::hash(text, QCryptographicHash::Sha256).toBase64() + "'";
}

TEST(ViewPage, AllowsOnlyItsOwnScriptAndStyle) {
    const SetView scan = scanOf(5, 7);
    CloudView cloud{QStringLiteral("c"), {}};
    cloud.points.points = {{1.0f, 2.0f, 3.0f}, {4.0f, kNaN, 6.0f}};
    const ProfilesView profiles{{{QStringLiteral("p"), scan.profiles[1]}}, {}, {}};
    for (const QByteArray& page : {setPage(scan, {}), cloudPage(cloud, {}), profilesPage(profiles, {})}) {
        const QByteArray script = between(page, "<script>", "</script>");
        const QByteArray style = between(page, "<style>", "</style>");
        EXPECT_EQ(QString::fromUtf8(between(page, "Content-Security-Policy\" content=\"", "\"")),
                  QStringLiteral("default-src 'none'; img-src data:; script-src %1; style-src %2")
                      .arg(hashOf(script), hashOf(style)));
        EXPECT_GT(script.size(), 5000);
        EXPECT_LE(script.size(), 40'000);
        QByteArray markup = page;
        markup.replace(script, "");
        EXPECT_FALSE(QString::fromUtf8(markup).contains(QRegularExpression(" (style|on\\w+)=\"")));
        EXPECT_FALSE(page.contains("eval("));
    }
    EXPECT_FALSE(setPage(scan, {}).contains("<script>x.bin"));
}

TEST(ViewPage, PictureOfACloudLeavesOutPointsWithoutAPlace) {
    KxInspect::PointSet cloud;
    cloud.points = {{1.0f, 2.0f, 3.0f}, {4.0f, 5.0f, 9.0f}};
    const QString without = cloudPicture(cloud, ColourMap::Viridis);
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    for (const float nowhere : {kNaN, kInfinity, -kInfinity}) {
        cloud.points.push_back({nowhere, 2.5f, 4.0f});
        cloud.points.push_back({2.0f, nowhere, 4.0f});
        cloud.points.push_back({2.0f, 2.5f, nowhere});
    }
    EXPECT_EQ(cloudPicture(cloud, ColourMap::Viridis), without);
}

TEST(ViewPage, HoldsTheCellsWithinHalfTheResolution) {
    const SetView scan = scanOf(9, 13);
    for (const double resolution : {0.001, 0.05}) {
        ViewSettings settings;
        settings.resolution = resolution;
        const QByteArray page = setPage(scan, settings);
        const QJsonObject map = dataOf(page)["map"].toObject();
        const std::vector<double> values = valuesOf(page, map["values"].toString(), resolution, 13);
        ASSERT_EQ(values.size(), scan.map->heights.size());
        for (std::size_t i = 0; i < values.size(); ++i) {
            const double height = double(scan.map->heights[i]);
            EXPECT_EQ(std::isnan(values[i]), std::isnan(height));
            EXPECT_FALSE(std::abs(values[i] - height) > resolution * 0.500001) << values[i] << " for " << height;
        }
        EXPECT_EQ(codesOf(page, dataOf(page)["profiles"].toObject()["counts"].toString()), std::vector<quint64>(9, 13));
    }
}

TEST(ViewPage, LeavesOutBlocksAndSaysSo) {
    const SetView scan = scanOf(300, 401, 40.0f);
    ViewSettings settings;
    settings.mostBytes = 600'000;
    const QByteArray page = setPage(scan, settings);
    EXPECT_LE(page.size(), settings.mostBytes);
    const QJsonObject map = dataOf(page)["map"].toObject();
    const int size = map["block"].toInt();
    ASSERT_GT(size, 1);
    EXPECT_TRUE(QString::fromUtf8(page).contains(QStringLiteral("blocks of %1 × %1 cells").arg(size)));
    const int columns = map["columns"].toInt();
    EXPECT_EQ(columns, (401 + size - 1) / size);
    EXPECT_EQ(map["originX"].toDouble(), -3.0 + 0.25 * (size - 1) / 2);
    EXPECT_EQ(valuesOf(page, map["high"].toString(), 0.001, std::size_t(columns)).size(),
              std::size_t(columns * map["rows"].toInt()));
    settings.mostBytes = 1000;
    EXPECT_THROW(setPage(scan, settings), KxInspect::Error);
}

TEST(ViewPage, SaysWhichNumbersItDoesNotReach) {
    ProfilesView view{{{QStringLiteral("p"), {{{0.0f, 1.0f}, {1.0f, 1e20f}, {2.0f, -3.0f}}, kNaN}}}, {}, {}};
    const QByteArray page = profilesPage(view, {});
    EXPECT_TRUE(page.contains("1 coordinates are missing on this page"));
    const auto y = valuesOf(page, dataOf(page)["profiles"].toObject()["y"].toString(), 0.001, 3);
    EXPECT_EQ(y[0], 1.0);
    EXPECT_TRUE(std::isnan(y[1]));
    EXPECT_EQ(y[2], -3.0);
}

TEST(Decimation, TakesMedianLowestAndHighest) {
    KxInspect::HeightMap map;
    map.rows = 3;
    map.columns = 5;
    map.heights = {1, 9, kNaN, kNaN, 7, 4, 2, kNaN, kNaN, 5, kNaN, 8, 3, kNaN, kNaN};
    const BlockMap blocks = blocksOf(map, 2);
    EXPECT_EQ(blocks.rows, 2);
    EXPECT_EQ(blocks.columns, 3);
    const auto text = [](const std::vector<float>& values) {
        QStringList list;
        for (const float v : values) {
            list.append(QString::number(double(v)));
        }
        return list.join(' ').toStdString();
    };
    EXPECT_EQ(text(blocks.medians), "2 nan 5 8 3 nan"); // of 1 2 4 9 the lower one in the middle
    EXPECT_EQ(text(blocks.lowest), "1 nan 5 8 3 nan");
    EXPECT_EQ(text(blocks.highest), "9 nan 7 8 3 nan");

    const std::vector<float> heights = {5, 1, 8, 6, kNaN, 4, 4, 4, 2, 3, 9};
    EXPECT_EQ(keptPoints(heights, 3).size(), heights.size());
    // 5 1 8 6 - 4: lowest 1, median 5, highest 8, and the gap; 4 4 2 3 9: 2, 4, 9
    EXPECT_EQ(keptPoints(heights, 6), (std::vector<std::size_t>{0, 1, 2, 4, 6, 8, 10}));
}

/// A map of a plane with one missing cell.
KxInspect::HeightMap planeMap(int rows, int columns, float originX, float originZ, float level) {
    KxInspect::HeightMap map{rows, columns, 0.5f, kNaN, originX, originZ, {}, 0};
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            map.heights.push_back(level + 2.0f * (originX + 0.5f * float(column)) -
                                  3.0f * (originZ + 0.5f * float(row)));
        }
    }
    map.heights[map.position(2, 3)] = kNaN;
    return map;
}

TEST(Deviation, OfMapsInterpolatesTheReference) {
    const KxInspect::HeightMap map = planeMap(7, 9, 10.0f, -2.0f, 1.0f);
    const KxInspect::HeightMap same = mapDeviation(map, planeMap(7, 9, 10.0f, -2.0f, 0.75f));
    EXPECT_EQ(std::count_if(same.heights.begin(), same.heights.end(), [](float h) { return std::isnan(h); }), 1);
    EXPECT_EQ(same.at(6, 8), 0.25f);
    // Cells half way between those of the reference, which begins one column later and one row earlier.
    const KxInspect::HeightMap between = mapDeviation(map, planeMap(9, 6, 10.25f, -2.625f, -0.5f));
    const auto missing = [&](int row, int column) { return std::isnan(between.at(row, column)); };
    for (int row = 0; row < 7; ++row) {
        for (int column = 0; column < 9; ++column) {
            const bool isBeyond = column == 0 || column > 5;
            const bool isBesideHole = row <= 1 && (column == 3 || column == 4);
            EXPECT_EQ(missing(row, column), isBeyond || (row == 2 && column == 3) || isBesideHole)
                << row << ' ' << column;
            if (!missing(row, column)) {
                EXPECT_NEAR(between.at(row, column), 1.5f, 1e-5f);
            }
        }
    }
    KxInspect::HeightMap wide = map;
    wide.pitch = 0.6f;
    EXPECT_THROW(mapDeviation(map, wide), KxInspect::Error);
}

TEST(Deviation, IsTakenAlongYWhereThereIsOneHeight) {
    const KxInspect::Profile reference{{{0, 0}, {1, 2}, {2, 2}, {9, 2}, {10, 0}, {9.5f, 5}},
                                       kNaN}; // a gap and an overhang
    const KxInspect::Profile profile{{{0.5f, 1.25f}, {1, 1}, {5, 3}, {9.75f, 1}, {kNaN, 1}, {-1, 0}, {2, 2.5f}}, kNaN};
    const Deviation deviation = deviationOf(profile, reference, 2.5f);
    const std::vector<float> expected = {0.25f, -1.0f, kNaN, kNaN, kNaN, kNaN, 0.5f};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_TRUE(deviation.values[i] == expected[i] || (std::isnan(expected[i]) && std::isnan(deviation.values[i])))
            << i << ": " << deviation.values[i];
    }
    EXPECT_EQ(deviation.compared, 3u);
    EXPECT_EQ(deviation.outside, 2u);
    EXPECT_EQ(deviation.ambiguous, 1u);
    EXPECT_EQ(deviation.range, (KxInspect::Range{-1.0f, 0.5f}));
    EXPECT_NEAR(deviation.rootMeanSquare, std::sqrt((0.0625 + 1.0 + 0.25) / 3), 1e-12);
    EXPECT_TRUE(std::isnan(deviationOf({}, reference, 1.0f).rootMeanSquare));
}

} // namespace
