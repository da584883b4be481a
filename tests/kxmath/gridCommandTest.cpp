// kxmath grid: seeds of known patches, and rows that keep their place.
#include "kxmath/toolRun.h"
#include "shapes/patchScan.h"

namespace {

using namespace tool_test;
using kxtool::Patch;

constexpr float kPitch = 0.5f, kFirstX = -40.0f;

// The first two are 1.5 mm apart in height and meet at a step, the third one is near the height 0, as empty blocks are.
const Patch kPatches[] = {
    {10, 69, 20, 69, 12.0f}, {10, 69, 70, 129, 10.5f}, {80, 139, 30, 59, 0.05f}, {90, 149, 90, 139, -4.0f}};

/// Whether a range reaches over the cells from `first` to `last`, give or take two cells.
void expectRange(const QJsonValue& range, double origin, int first, int last) {
    EXPECT_NEAR(range[0].toDouble(), origin + double(kPitch) * first, 1.0);
    EXPECT_NEAR(range[1].toDouble(), origin + double(kPitch) * last, 1.0);
}

class GridCommand : public ToolTest {
protected:
    GridCommand() : ToolTest("grid") {}

    void writeScan(float base, float noise) const {
        KxProfileZSet set;
        kxtool::appendPatchScan(set, {160, 161, kPitch, kFirstX, base, noise, 7}, kPatches);
        // The ends of the first profile define the range of x even if the sensor sees nothing else.
        set.profiles[0].points += {{kFirstX, -90.0f}, {kFirstX + 160 * kPitch, -90.0f}};
        ASSERT_TRUE(set.writeToFile(path("scan.bin")));
        QFile sections(path("sections.bin"));
        ASSERT_TRUE(sections.open(QIODevice::WriteOnly));
        for (auto& profile : set.profiles) {
            static_cast<KxPointCloud<KxPointXY>&>(profile).writeToFile(sections);
        }
    }
};

TEST_F(GridCommand, EachPatchIsOneSeed) {
    const std::tuple<const char*, float, float, QStringList> cases[] = {
        {"scan.bin", kNaN, 0.03f, {}},
        {"sections.bin", kNaN, 0.03f, {"--z0", "0", "--dz", "0.5"}},
        {"scan.bin", -80.0f, 0.03f, {"--seeds", ",-20"}},
        {"scan.bin", -80.0f, 0.03f, {"--blocks", "3", "--seeds", "13,-6,0.2,0.2,500"}},
    };
    for (const auto& [file, base, noise, more] : cases) {
        SCOPED_TRACE(testing::Message() << file << base << noise << more.join(' ').toStdString());
        writeScan(base, noise);
        QDir seedFolder(path("seeds"));
        seedFolder.removeRecursively();
        const QJsonArray seeds = json(QStringList{file, "--step", "0.5", "--out", "seeds"} + more)["seeds"].toArray();
        ASSERT_EQ(seeds.size(), qsizetype(std::size(kPatches)));
        ASSERT_EQ(seedFolder.entryList(QDir::Files).size(), seeds.size());
        for (size_t i = 0; i < std::size(kPatches); ++i) { // the highest is found first
            const QJsonValue seed = seeds[qsizetype(i)];
            KxPointCloud<KxPointXYZ> cloud;
            ASSERT_GT(cloud.readFromFile(seedFolder.filePath(seed["file"].toString())), 0);
            EXPECT_EQ(cloud.size(), seed["cells"].toInt());
            const Patch& patch = kPatches[i];
            const int rows = patch.lastProfile - patch.firstProfile + 1;
            EXPECT_GE(cloud.size(), 0.9 * rows * (patch.lastPoint - patch.firstPoint + 1));
            expectRange(seed["x"], kFirstX, patch.firstPoint, patch.lastPoint);
            expectRange(seed["z"], 0.0, patch.firstProfile, patch.lastProfile);
            EXPECT_NEAR(seed["mean"].toDouble(), double(patch.height), 0.2) << i;
        }
    }
}

TEST_F(GridCommand, RowsKeepTheirPlaceAndProfilesMayBeCloser) {
    writeScan(kNaN, 0.03f); // profiles without points between the patches
    const QJsonValue whole = json({"scan.bin", "--step", "0.5"});
    EXPECT_EQ(whole["rows"].toInt(), 160);
    EXPECT_EQ(whole["emptyRecords"].toInt(), 9 + 10 + 10);
    const QJsonValue coarse = json({"scan.bin", "--step", "1", "--dz", "0.5", "--z0", "100"});
    EXPECT_NEAR(coarse["rows"].toInt(), 76, 1); // up to the last profile with points, at 149 * 0.5
    EXPECT_EQ(coarse["originZ"].toDouble(), 100.0);
}

} // namespace
