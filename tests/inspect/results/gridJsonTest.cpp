// A height map with its patches as JSON and back, its page, and the files of the patches.
#include "inspect/inspectSupport.h"
#include "report/grid/gridReport.h"
#include "shapes/patchScan.h"
#include "support/tempFiles.h"

#include <KxInspect/Grid.h>
#include <KxInspect/PointFile.h>
#include <gtest/gtest.h>

#include <QtCore/QDir>

using namespace KxInspect;
using testing_support::FullDisk;
using testing_support::TempFiles;

namespace {

class GridJson : public testing::Test, public TempFiles {
protected:
    /// Two plates, one of them partly out of the picture, with or without edges that are cut.
    GridResult measure(std::optional<float> edgeCut = {}) const {
        const kxtool::Patch plates[] = {{5, 34, 8, 37, 12.0f}, {40, 69, 20, 53, -4.5f}};
        KxMath::KxProfileZSet set;
        kxtool::appendPatchScan(set, {72, 61, 0.5f, -10.0f, -40.0f, 0.02f, 5}, plates);
        EXPECT_TRUE(set.writeToFile(path("scan.bin")));
        GridOptions options;
        options.map.pitch = 0.5f;
        options.firstZ = 7.5f;
        options.patches.edgeCut = edgeCut;
        options.patches.end = -20.0f;
        return measureGrid(path("scan.bin").toStdString(), options);
    }

    ErrorKind writingError(const char* folder, GridResult& result) const {
        try {
            writePatchFiles(path(folder).toStdString(), result);
        } catch (const Error& error) {
            EXPECT_TRUE(result.files.empty() && result.folder.empty());
            return error.kind();
        }
        return ErrorKind::NoResult;
    }
};

TEST_F(GridJson, ComesBackWithItsPage) {
    for (const std::optional<float>& edgeCut : {std::optional<float>(), std::optional(-20.0f)}) {
        SCOPED_TRACE(edgeCut.value_or(0.0f));
        GridResult result = measure(edgeCut);
        ASSERT_FALSE(result.found.patches.empty());
        EXPECT_EQ(result.map.originZ, 7.5f) << "as given, not that of the file";
        writePatchFiles(path(edgeCut ? "cut" : "whole").toStdString(), result);
        result.warnings = {"one \u00b5m"};
        const std::string values = toJson(result);
        const std::string all = toJson(result, Pictures::Included);
        const GridResult back = gridFromJson(all);
        EXPECT_EQ(toJson(back), values);
        EXPECT_EQ(toJson(back, Pictures::Included), all);
        EXPECT_EQ(back.found.owners, result.found.owners);
        EXPECT_EQ(kxreport::gridReport(back), kxreport::gridReport(result));
        const GridResult plain = gridFromJson(values);
        EXPECT_EQ(toJson(plain), values);
        const QString page = kxreport::gridReport(plain);
        EXPECT_FALSE(page.contains("<svg"));
        EXPECT_TRUE(page.contains("seed-001.bin"));
    }
}

TEST_F(GridJson, RefusesWhatIsNoResult) {
    const QByteArray json = QByteArray::fromStdString(toJson(measure(), Pictures::Included));
    const struct {
        const char *desc, *from, *to, *key;
    } cases[] = {
        {"another command", "\"grid\"", "\"train\"", "command"},
        {"no rows", "\"rows\": 72", "\"rows\": 0", "rows"},
        {"other rows", "\"rows\": 72", "\"rows\": 71", "pictures"},
        {"no pitch", "\"step\": 0.5", "\"step\": null", "step"},
        {"missing", "\"gap\"", "\"gab\"", "gap"},
        {"owner", "\"owners\": [\n            0", "\"owners\": [\n            7", "pictures.owners"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        QByteArray changed = json;
        const qsizetype at = changed.lastIndexOf(c.from); // "step" of the search precedes that of the map
        ASSERT_GE(at, 0);
        changed.replace(at, qstrlen(c.from), c.to);
        inspect_test::expectError([&] { gridFromJson(changed.toStdString()); }, ErrorKind::Unsuitable, c.key);
    }
    EXPECT_THROW(gridFromJson("{"), Error);
}

TEST_F(GridJson, PatchFilesAreAllWrittenOrNone) {
    GridResult result = measure();
    ASSERT_EQ(result.found.patches.size(), 2u);
    write("file", "");
    EXPECT_EQ(writingError("file", result), ErrorKind::Unwritable);
    std::swap(result.found.patches[0], result.found.patches[1]);
    result.found.patches[0].points.resize(3); // so that one file fits on the disk
    {
        const FullDisk disk(4096);
        EXPECT_EQ(writingError("full", result), ErrorKind::Unwritable);
    }
    EXPECT_TRUE(QDir(path("full")).entryList(QDir::Files).isEmpty());
    writePatchFiles(path("full").toStdString(), result);
    ASSERT_EQ(result.files, (std::vector<std::string>{"seed-001.bin", "seed-002.bin"}));
    const PointSet second = readPoints(path("full/seed-002.bin").toStdString(), FileKind::Cloud);
    EXPECT_EQ(second.points, result.found.patches[1].points);
    EXPECT_THROW(checkPatchFolder(path("full").toStdString()), Error);
}

} // namespace
