// kxmath grid: seeds of known patches, pictures, files and refusals.
#include "shapes/patchScan.h"
#include "tools/toolRun.h"

#include <KxMath/KxPointCloud.h>

#include <gtest/gtest.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

using namespace tool_test;
using KxMath::KxPointXYZ;
using KxMath::KxProfileZSet;
using kxtool::Patch;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kPitch = 0.5f;
constexpr float kFirstX = -40.0f;

// The first two are 1.5 mm apart in height and meet at a step, the third one is near the height 0, as empty blocks are.
const Patch kPatches[] = {
    {10, 69, 20, 69, 12.0f}, {10, 69, 70, 129, 10.5f}, {80, 139, 30, 59, 0.05f}, {90, 149, 90, 139, -4.0f}};

QByteArray contentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void writeBytes(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

/// The part of a patch's cells that is in the cloud; -1 when the cloud also reaches into another patch.
double coveredPart(KxMath::KxPointCloud<KxPointXYZ>& cloud, const Patch& patch) {
    int inside = 0;
    for (const KxPointXYZ& p : cloud.points) {
        const long column = std::lround((p.x - kFirstX) / kPitch);
        const long row = std::lround(p.z / kPitch);
        const auto holds = [&](const Patch& other) {
            return row >= other.firstProfile && row <= other.lastProfile && column >= other.firstPoint &&
                   column <= other.lastPoint;
        };
        const bool isInAny = std::any_of(std::begin(kPatches), std::end(kPatches), holds);
        const bool isAtStep = column == 69 || column == 70; // blocks across the step belong to either side
        if (isInAny && !holds(patch) && !isAtStep) {
            return -1.0;
        }
        inside += holds(patch) ? 1 : 0;
    }
    return static_cast<double>(inside) /
           ((patch.lastProfile - patch.firstProfile + 1) * (patch.lastPoint - patch.firstPoint + 1));
}

class GridCommand : public testing::Test {
protected:
    QString path(const QString& name) const { return QDir(folder_.path()).filePath(name); }

    void writeScan(float base, float noise) const {
        KxProfileZSet set;
        kxtool::appendPatchScan(set, {160, 161, kPitch, kFirstX, base, noise, 7}, kPatches);
        // Far ends of the first profile tell the range of x also where the sensor sees nothing else.
        set.profiles[0].points.append(KxMath::KxPointXY(kFirstX, -90.0f));
        set.profiles[0].points.append(KxMath::KxPointXY(kFirstX + 160 * kPitch, -90.0f));
        ASSERT_TRUE(set.writeToFile(path("scan.bin")));
        QFile sections(path("sections.bin"));
        ASSERT_TRUE(sections.open(QIODevice::WriteOnly));
        for (auto& profile : set.profiles) {
            static_cast<KxMath::KxPointCloud<KxMath::KxPointXY>&>(profile).writeToFile(sections);
        }
    }

    ToolResult run(const QStringList& arguments) const {
        return runTool(folder_.path(), QStringList{"grid"} + arguments);
    }

    QTemporaryDir folder_;
};

TEST_F(GridCommand, EachPatchIsOneSeed) {
    const struct {
        const char* desc;
        const char* file;
        float base;
        float noise;
        QStringList more;
    } cases[] = {
        {"nothing between", "scan.bin", kNaN, 0.03f, {}},
        {"nothing between, no noise", "scan.bin", kNaN, 0.0f, {}},
        {"nothing between, sections", "sections.bin", kNaN, 0.03f, {"--z0", "0", "--dz", "0.5"}},
        {"far base", "scan.bin", -80.0f, 0.03f, {"--seeds", ",-20"}},
        {"far base, own limits", "scan.bin", -80.0f, 0.03f, {"--blocks", "3", "--seeds", "13,-6,0.2,0.2,500"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        writeScan(c.base, c.noise);
        QDir(path("seeds")).removeRecursively();
        const ToolResult result = run(QStringList{c.file, "--step", "0.5", "--json", "-", "--out", "seeds"} + c.more);
        ASSERT_EQ(result.exitCode, 0) << result.errors.constData();
        const QJsonArray seeds = QJsonDocument::fromJson(result.output).object()["seeds"].toArray();
        ASSERT_EQ(seeds.size(), qsizetype(std::size(kPatches))) << result.output.constData();
        ASSERT_EQ(QDir(path("seeds")).entryList({"*"}, QDir::Files).size(), seeds.size());
        for (size_t i = 0; i < std::size(kPatches); ++i) { // the highest is found first
            const QJsonObject seed = seeds[qsizetype(i)].toObject();
            KxMath::KxPointCloud<KxPointXYZ> cloud;
            ASSERT_GT(cloud.readFromFile(path("seeds/" + seed["file"].toString())), 0);
            EXPECT_EQ(cloud.size(), seed["cells"].toInt());
            EXPECT_GE(coveredPart(cloud, kPatches[i]), 0.9) << i;
            EXPECT_NEAR(seed["mean"].toDouble(), double(kPatches[i].height), 0.2) << i;
        }
    }
}

TEST_F(GridCommand, RowsKeepTheirPlaceAndProfilesMayBeCloser) {
    writeScan(kNaN, 0.03f); // profiles without points between the patches
    const ToolResult whole = run({"scan.bin", "--step", "0.5", "--json", "-"});
    const QJsonObject json = QJsonDocument::fromJson(whole.output).object();
    EXPECT_EQ(json["rows"].toInt(), 160);
    EXPECT_EQ(json["records"].toInt(), 160);
    EXPECT_EQ(json["emptyRecords"].toInt(), 9 + 10 + 10);
    const ToolResult sliced = run({"scan.bin", "--step", "1", "--dz", "0.5", "--z0", "100", "--json", "-"});
    const QJsonObject coarse = QJsonDocument::fromJson(sliced.output).object();
    EXPECT_NEAR(coarse["rows"].toInt(), 76, 1); // up to the last profile with points, at 149 * 0.5
    EXPECT_EQ(coarse["originZ"].toDouble(), 100.0);
}

TEST_F(GridCommand, CutsEdgesAndWritesPictures) {
    writeScan(-80.0f, 0.03f);
    const ToolResult result =
        run({"scan.bin", "--step", "0.5", "--edge-cut", "-20", "--report", "r.html", "--json", "j.json"});
    ASSERT_EQ(result.exitCode, 0) << result.errors.constData();
    EXPECT_TRUE(result.output.contains("cut away at steps below -20 mm")) << result.output.constData();
    const QJsonObject json = QJsonDocument::fromJson(contentOf(path("j.json"))).object();
    EXPECT_GT(json["edgeCut"].toObject()["cells"].toInt(), 0);
    const QByteArray html = contentOf(path("r.html"));
    EXPECT_EQ(html.count("<svg"), 3);
    EXPECT_EQ(html.count("data:image/png;base64,"), 3);
    EXPECT_FALSE(html.contains("<script"));
    EXPECT_EQ(run({"--help"}).exitCode, 0);
}

TEST_F(GridCommand, RefusesWithOneLineAndTheRightCode) {
    writeScan(-80.0f, 0.03f);
    const QByteArray whole = contentOf(path("scan.bin"));
    const qsizetype record = 7 + 8 * 161;
    const qsizetype second = record + 8 * 2;
    writeBytes(path("empty.bin"), "");
    writeBytes(path("cut.bin"), whole.chopped(3));
    writeBytes(path("bad.bin"), whole.left(second) + "\x09" + whole.mid(second + 1));
    writeBytes(path("spatial.bin"), QByteArray("\x03\x00\x00\x00\x00", 5));
    writeBytes(path("none.bin"), QByteArray("\x05\x00\x00\x00\x00\x00\x00", 7));
    writeBytes(path("one.bin"), whole.left(second));
    writeBytes(path("seed-001.bin"), "old");
    const struct {
        QStringList arguments;
        int exitCode;
        const char* message;
    } cases[] = {
        {{"missing.bin", "--step", "1"}, 3, "does not exist"},
        {{"empty.bin", "--step", "1"}, 3, "is empty"},
        {{"cut.bin", "--step", "1"}, 3, "after 159 whole records: the record that begins there is cut short"},
        {{"bad.bin", "--step", "1"}, 3, "damaged at byte 1311, after 1 whole records: it is 0x09"},
        {{"spatial.bin", "--step", "1"}, 3, "damaged at byte 0, which is 0x03"},
        {{"none.bin", "--step", "1"}, 3, "holds no points"},
        {{"one.bin", "--step", "1"}, 1, "1 rows"},
        {{"scan.bin", "--step", "100"}, 1, "1 columns"},
        {{"scan.bin", "--step", "1e-6"}, 2, "40 million"},
        {{"scan.bin", "--step", "1", "--dz", "1e7"}, 2, "slices"},
        {{"scan.bin", "--step", "1", "--gap", "-1"}, 2, "--gap must be above 0"},
        {{"scan.bin"}, 2, "--step S is needed"},
        {{"scan.bin", "--step", "0"}, 2, "--step must be above 0"},
        {{"scan.bin", "--step", "nan"}, 2, "--step is no number"},
        {{"scan.bin", "--step", "1", "--blocks", "0"}, 2, "--blocks"},
        {{"scan.bin", "--step", "1", "--seeds", "1,2,3,0"}, 2, "TOLERANCE"},
        {{"scan.bin", "--step", "1", "--seeds", "1,2,3,4,5,6,7"}, 2, "more than 6"},
        {{"scan.bin", "--step", "1", "--json", "scan.bin"}, 2, "input"},
        {{"scan.bin", "--step", "1", "--report", "no/such/r.html"}, 4, "cannot write"},
        {{"scan.bin", "--step", "1", "--out", "."}, 4, "already holds seeds"},
    };
    for (const auto& c : cases) {
        const ToolResult result = run(c.arguments);
        const std::string what = c.arguments.join(' ').toStdString();
        EXPECT_EQ(result.exitCode, c.exitCode) << what << result.errors.constData();
        EXPECT_EQ(result.errors.count('\n'), 1) << what << result.errors.constData();
        EXPECT_TRUE(result.errors.contains(c.message)) << what << result.errors.constData();
        EXPECT_EQ(result.output, QByteArray()) << what;
    }
}

} // namespace
