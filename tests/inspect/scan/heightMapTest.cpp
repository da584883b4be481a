// Height maps of scans whose heights are known.
#include "inspect/scan/scanSupport.h"

#include <KxInspect/HeightMap.h>

#include <algorithm>

using namespace scan_test;

namespace {

constexpr float kFirstX = -3.0f, kFirstZ = 7.0f;

/// The surface that is scanned: a plane, on which interpolation is exact but for rounding.
float heightAt(float x, float z) {
    return 0.5f * x + 2.0f * z + 1.0f;
}

/// 11 profiles of 29 points each, these 0.25 mm apart. Profile 4 is empty; others have a hole from x = 0 to 2.
Scan makeScan(float distance) {
    Scan scan;
    scan.distance = distance;
    for (int i = 0; i < 11; ++i) {
        Profile& profile = scan.profiles.emplace_back();
        profile.z = kFirstZ + static_cast<float>(i) * distance;
        for (int j = 0; j < 29 && i != 4; ++j) {
            const float x = kFirstX + 0.25f * static_cast<float>(j);
            if (x <= 0.0f || x >= 2.0f) {
                profile.points.push_back({x, heightAt(x, profile.z)});
            }
        }
    }
    return scan;
}

/// Expects each cell to be on the plane, or empty where `isEmpty` says so.
void expectPlane(const HeightMap& map, const std::function<bool(int row, float x)>& isEmpty) {
    for (int r = 0; r < map.rows; ++r) {
        for (int c = 0; c < map.columns; ++c) {
            const float x = map.originX + static_cast<float>(c) * map.pitch;
            const float z = map.originZ + static_cast<float>(r) * map.pitch;
            if (isEmpty(r, x)) {
                EXPECT_TRUE(std::isnan(map.at(r, c))) << r << " " << c;
            } else {
                EXPECT_NEAR(map.at(r, c), heightAt(x, z), 1e-5f) << r << " " << c;
            }
        }
    }
}

TEST(HeightMap, HasARowForEachProfile) {
    Scan scan = makeScan(0.5f);
    scan.profiles[2].points.push_back({kNaN, 5.0f});
    scan.profiles[2].points.push_back({5.0f, kNaN});
    const HeightMap map = makeHeightMap(scan, {0.5f});
    EXPECT_EQ(map.rows, 11);
    EXPECT_EQ(map.columns, 14); // 7 mm
    EXPECT_EQ(map.pitch, 0.5f);
    EXPECT_EQ(map.gap, 1.25f); // 2.5 pitches
    EXPECT_EQ(map.originX, kFirstX);
    EXPECT_EQ(map.originZ, kFirstZ);
    ASSERT_EQ(map.heights.size(), 11u * 14u);
    // The line through the last points before a hole is extended by one gap.
    expectPlane(map, [](int row, float x) { return row == 4 || (x > 0.0f && x < 2.0f); });
}

TEST(HeightMap, WideGapsAreBridgedWhereWanted) {
    const HeightMap map = makeHeightMap(makeScan(0.5f), {0.5f, 2.5f});
    EXPECT_EQ(map.gap, 2.5f);
    expectPlane(map, [](int row, float) { return row == 4; });
}

TEST(HeightMap, ProfilesAtAnotherDistanceAreSlicedFirst) {
    Scan scan = makeScan(0.25f);
    for (Profile& profile : scan.profiles) { // so that slices of two profiles have one height
        for (Point& p : profile.points) {
            p.y = heightAt(p.x, 0.0f);
        }
    }
    const auto expectSliced = [&](float distance) {
        scan.distance = distance;
        const HeightMap map = makeHeightMap(scan, {0.5f});
        EXPECT_EQ(map.rows, 6); // 2.5 mm
        EXPECT_EQ(map.originZ, kFirstZ);
        EXPECT_NEAR(map.at(3, 2), heightAt(kFirstX + 1.0f, 0.0f), 1e-5f);
    };
    expectSliced(0.25f);
    expectSliced(kNaN); // not known: by the positions of the profiles
}

TEST(HeightMap, RowsBetweenProfilesAreInterpolatedWithinTheGap) {
    const struct {
        float distance, pitch;
        int rows, interpolated;
    } cases[] = {{1.0f, 0.5f, 21, 10}, {1.25f, 0.5f, 26, 20}, {0.75f, 0.625f, 13, 10}, {1.125f, 0.375f, 31, 20}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.distance);
        Scan scan = makeScan(c.distance);
        const HeightMap map = makeHeightMap(scan, {c.pitch, 2.5f});
        EXPECT_EQ(map.rows, c.rows);
        EXPECT_EQ(map.interpolatedRows, c.interpolated);
        EXPECT_EQ(map.originZ, kFirstZ);
        const auto isEmpty = [&](int row, float) { // next to the profile without points
            const double profile = row * double(c.pitch) / double(c.distance);
            return profile > 3.001 && profile < 4.999;
        };
        expectPlane(map, isEmpty);
        scan.distance = kNaN; // by the positions of the profiles, in whatever order
        std::reverse(scan.profiles.begin(), scan.profiles.end());
        const HeightMap same = makeHeightMap(scan, {c.pitch, 2.5f});
        EXPECT_EQ(same.rows, c.rows);
        expectPlane(same, isEmpty);
    }
    // One distance that is wider than the gap.
    Scan scan = makeScan(1.0f);
    scan.profiles.erase(scan.profiles.begin() + 7, scan.profiles.begin() + 9);
    scan.distance = kNaN;
    expectPlane(makeHeightMap(scan, {0.5f, 2.0f}),
                [](int row, float) { return (row > 6 && row < 10) || (row > 12 && row < 18); });
}

TEST(HeightMap, BlockMeansAreOverTheCellsBefore) {
    HeightMap map{3, 4, 1.0f, 1.0f, 0.0f, 0.0f, {1, 2, 4, 8, 16, kNaN, 64, 128, 256, 512, 1024, 2048}};
    const std::vector<float> means = blockMeans(map, 2);
    const std::vector<float> expected = {kNaN, kNaN, kNaN, kNaN, kNaN, 1, 1.5f, 3, kNaN, 8.5f, 19.0f / 3, 70.0f / 3};
    ASSERT_EQ(means.size(), expected.size());
    for (std::size_t i = 0; i < means.size(); ++i) {
        EXPECT_TRUE(means[i] == expected[i] || (std::isnan(means[i]) && std::isnan(expected[i])))
            << i << ": " << means[i];
    }
    expectRefusals({{"block", [&] { blockMeans(map, 0); }, ErrorKind::BadArgument, "blockSize"},
                    {"large block", [&] { blockMeans(map, 1001); }, ErrorKind::BadArgument, "blockSize"}});
    map.heights.pop_back();
    expectRefusals({{"cells", [&] { blockMeans(map, 2); }, ErrorKind::BadArgument, "map"}});
}

TEST(HeightMap, Refuses) {
    const auto make = [](float pitch, std::optional<float> gap = {}) {
        return [=] { makeHeightMap(makeScan(0.5f), {pitch, gap}); };
    };
    expectRefusals({
        {"pitch 0", make(0.0f), ErrorKind::BadArgument, "pitch"},
        {"no pitch", make(kNaN), ErrorKind::BadArgument, "pitch"},
        {"gap", make(0.5f, -1.0f), ErrorKind::BadArgument, "gap"},
        {"slices", make(1e-6f), ErrorKind::BadArgument, "pitch"},
        {"cells", make(5e-4f), ErrorKind::BadArgument, "pitch"},
        {"profiles apart",
         [] {
             makeHeightMap(makeScan(3.0f), {0.5f, 2.9f});
         },
         ErrorKind::BadArgument, "pitch"},
        {"one row", make(100.0f), ErrorKind::NoResult, "pitch"},
        {"no profiles", [] { makeHeightMap({}, {}); }, ErrorKind::NoResult, ""},
    });
}

} // namespace
