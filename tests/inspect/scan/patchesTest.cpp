// Patches of height maps whose place and area are known.
#include "inspect/scan/scanSupport.h"

#include <KxInspect/Patches.h>

#include <algorithm>

using namespace scan_test;

namespace {

/// A flat rectangle of cells, bounds included.
struct Plate {
    int firstRow, lastRow, firstColumn, lastColumn;
    float height;

    std::int64_t cells() const { return std::int64_t{lastRow - firstRow + 1} * (lastColumn - firstColumn + 1); }
};

constexpr float kPitch = 0.5f, kOriginX = -10.0f, kOriginZ = 100.0f;
const Plate kPlates[] = {{3, 30, 5, 24, 12.5f}, {34, 50, 8, 30, 0.0f}, {5, 22, 30, 40, -4.25f}};

/// A map of 55 rows and 45 columns, empty except for the plates.
HeightMap makeMap() {
    HeightMap map{55, 45, kPitch, kPitch, kOriginX, kOriginZ, std::vector<float>(std::size_t{55} * 45, kNaN)};
    for (const Plate& plate : kPlates) {
        for (int r = plate.firstRow; r <= plate.lastRow; ++r) {
            std::fill_n(&map.heights[map.position(r, plate.firstColumn)], plate.lastColumn - plate.firstColumn + 1,
                        plate.height);
        }
    }
    return map;
}

TEST(Patches, HavePlaceAreaAndHeight) {
    const HeightMap map = makeMap();
    const PatchResult found = findPatches(map);
    ASSERT_EQ(found.patches.size(), 3u); // the highest first
    for (std::size_t i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        const Plate& plate = kPlates[i];
        const Patch& patch = found.patches[i];
        EXPECT_EQ(patch.cells, plate.cells());
        EXPECT_EQ(patch.points.size(), static_cast<std::size_t>(plate.cells()));
        EXPECT_EQ(patch.area, static_cast<float>(plate.cells()) * kPitch * kPitch);
        EXPECT_EQ(patch.mean, plate.height);
        EXPECT_EQ(patch.deviation, 0.0f);
        EXPECT_EQ(patch.y, (Range{plate.height, plate.height}));
        const auto x = [](int column) { return kOriginX + kPitch * static_cast<float>(column); };
        const auto z = [](int row) { return kOriginZ + kPitch * static_cast<float>(row); };
        EXPECT_EQ(patch.x, (Range{x(plate.firstColumn), x(plate.lastColumn)}));
        EXPECT_EQ(patch.z, (Range{z(plate.firstRow), z(plate.lastRow)}));
        EXPECT_NEAR(patch.centreX, static_cast<double>(patch.x.min + patch.x.max) / 2, 1e-9);
        EXPECT_NEAR(patch.centreZ, static_cast<double>(patch.z.min + patch.z.max) / 2, 1e-9);
        EXPECT_EQ(std::count(found.owners.begin(), found.owners.end(), static_cast<int>(i) + 1), plate.cells());
        EXPECT_EQ(found.owners[map.position(plate.lastRow, plate.firstColumn)], static_cast<int>(i) + 1);
    }
    EXPECT_EQ(found.owners[map.position(0, 0)], InNoPatch);
    EXPECT_EQ(found.meanRange, (Range{-4.25f, 12.5f}));
    EXPECT_EQ(found.search.minCount, 2 * 55);
    EXPECT_EQ(found.search.start, 12.5f);
}

TEST(Patches, KeepToTheLimits) {
    struct Case {
        const char* desc;
        PatchOptions options;
        std::vector<float> heights;
    };
    std::vector<Case> cases(5);
    cases[0] = {"END above a plate", {}, {12.5f, 0.0f}};
    cases[0].options.end = -3.0f;
    cases[1] = {"START below a plate", {}, {0.0f, -4.25f}};
    cases[1].options.start = 5.0f;
    cases[2] = {"more cells than a plate has", {}, {12.5f}};
    cases[2].options.minCount = 500;
    cases[3] = {"none", {}, {}};
    cases[3].options.minCount = 5000;
    cases[4] = {"small blocks", {}, {12.5f, 0.0f, -4.25f}};
    cases[4].options.blockSize = 1;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.desc);
        std::vector<float> heights;
        for (const Patch& patch : findPatches(makeMap(), c.options).patches) {
            heights.push_back(patch.mean);
        }
        EXPECT_EQ(heights, c.heights);
    }
}

TEST(Patches, EdgesAreCutAway) {
    HeightMap map = makeMap();
    for (float& height : map.heights) { // a ground far below, into which the outer plates drop
        height = std::isnan(height) ? -30.0f : height;
    }
    PatchOptions options;
    options.edgeCut = -5.0f;
    const PatchResult found = findPatches(map, options);
    EXPECT_EQ(found.edgeCut, -5.0f);
    EXPECT_GT(found.cutCells, 0);
    EXPECT_EQ(std::count(found.owners.begin(), found.owners.end(), CutAway), found.cutCells);
    EXPECT_EQ(findPatches(map).cutCells, 0);
}

TEST(Patches, Refuse) {
    const auto find = [](const std::function<void(PatchOptions&)>& change) {
        return [=] {
            PatchOptions options;
            change(options);
            findPatches(makeMap(), options);
        };
    };
    expectRefusals({
        {"block", find([](auto& o) { o.blockSize = 0; }), ErrorKind::BadArgument, "blockSize"},
        {"cut", find([](auto& o) { o.edgeCut = kNaN; }), ErrorKind::BadArgument, "edgeCut"},
        {"start", find([](auto& o) { o.start = kNaN; }), ErrorKind::BadArgument, "start"},
        {"step", find([](auto& o) { o.step = INFINITY; }), ErrorKind::BadArgument, "step"},
        {"tolerance", find([](auto& o) { o.tolerance = 0.0f; }), ErrorKind::BadArgument, "tolerance"},
        {"count", find([](auto& o) { o.minCount = 0; }), ErrorKind::BadArgument, "minCount"},
        {"map", [] { findPatches({}); }, ErrorKind::BadArgument, "pitch"},
    });
}

} // namespace
