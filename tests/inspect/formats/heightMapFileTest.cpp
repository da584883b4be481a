// Files of height maps and meshes: round trips, refusals, damage.
#include "inspect/inspectSupport.h"
#include "support/tempFiles.h"

#include <KxInspect/HeightMapFile.h>
#include <gtest/gtest.h>

#include <cmath>

using namespace KxInspect;
using namespace inspect_test;
using testing_support::TempFiles;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// 3 rows, 5 columns; the second height is missing.
HeightMap makeMap() {
    HeightMap map;
    map.rows = 3;
    map.columns = 5;
    map.pitch = 0.1f;
    map.originX = -7.3f;
    map.originZ = 11.0f;
    for (int i = 0; i < 15; ++i) {
        map.heights.push_back(i == 1 ? kNaN : 1.0f / static_cast<float>(i + 3) - 0.1f);
    }
    return map;
}

class HeightMapFile : public testing::Test, public TempFiles {
protected:
    std::string file(const char* name = "file") const { return path(name).toStdString(); }
};

TEST_F(HeightMapFile, ComesBackAsTheKindHoldsIt) {
    const HeightMap map = makeMap();
    for (const FileKind kind : {FileKind::Npy, FileKind::Vti, FileKind::Gsf, FileKind::Sdf}) {
        SCOPED_TRACE(kindName(kind));
        const bool isArray = kind == FileKind::Npy;
        writeHeightMap(file(), kind, map);
        EXPECT_EQ(kindOfFile(file()), kind);
        const HeightMap back = readHeightMap(file(), kind, isArray ? std::optional(0.1f) : std::nullopt);
        EXPECT_TRUE(back.rows == 3 && back.columns == 5 && std::isnan(back.gap));
        EXPECT_EQ(back.pitch, map.pitch);
        EXPECT_EQ(back.originX, isArray ? 0.0f : map.originX);
        EXPECT_EQ(back.originZ, isArray ? 0.0f : map.originZ);
        ASSERT_EQ(back.heights.size(), map.heights.size());
        for (std::size_t i = 0; i < map.heights.size(); ++i) { // in metres: rounded twice
            const float tolerance = kind == FileKind::Gsf ? std::abs(map.heights[i]) * 1.2e-7f : 0.0f;
            EXPECT_TRUE(i == 1 ? std::isnan(back.heights[i]) : std::abs(back.heights[i] - map.heights[i]) <= tolerance)
                << i;
        }
        if (!isArray) {
            EXPECT_EQ(readPoints(file(), kind).points.size(), 14u);
        }
    }
    writeHeightMap(file(), FileKind::Xyz, map);
    EXPECT_TRUE(areSame(readPoints(file(), FileKind::Xyz).points, pointsOf(map).points));
    const Point3 last = pointsOf(map).points.back();
    EXPECT_TRUE(last.x == -6.9f && last.y == map.heights.back() && last.z == 11.2f);
}

TEST_F(HeightMapFile, MeshesHaveHoles) {
    writeHeightMap(file("a.stl"), FileKind::Stl, makeMap());
    EXPECT_EQ(read("a.stl").size(),
              84 + 50 * 14); // 16 triangles; one and two around the hole are missing, one is added
    EXPECT_EQ(readPoints(file("a.stl"), FileKind::Stl).points.size(), 14u);
    write("b.stl", "solid a\nfacet normal 0 0 1\nouter loop\nvertex 1 2 3\nvertex 4 5 6\nvertex 1 2 3.5\nendloop\n"
                   "endfacet\nendsolid a\n");
    EXPECT_EQ(kindOfFile(file("b.stl")), FileKind::Stl);
    EXPECT_TRUE(areSame(readPoints(file("b.stl"), FileKind::Stl).points, {{1, 2, 3}, {4, 5, 6}, {1, 2, 3.5f}}));
    HeightMap map = makeMap();
    for (std::size_t i = 0; i < map.heights.size(); i += 2) {
        map.heights[i] = kNaN;
    }
    EXPECT_EQ(errorOf([&] { writeHeightMap(file(), FileKind::Stl, map); }).kind(), ErrorKind::Unwritable);
}

TEST_F(HeightMapFile, WhatAKindCannotHoldIsRefused) {
    HeightMap map = makeMap();
    map.rows = 5;
    map.columns = 3;
    EXPECT_EQ(errorOf([&] { writeHeightMap(file(), FileKind::Npy, map); }).kind(), ErrorKind::Unwritable);
    map.rows = 4;
    EXPECT_EQ(errorOf([&] { writeHeightMap(file(), FileKind::Gsf, map); }).kind(), ErrorKind::BadArgument);
    HeightMap wide = makeMap();
    wide.rows = 1;
    wide.columns = 65536;
    wide.heights.assign(65536, 1.0f);
    EXPECT_EQ(errorOf([&] { writeHeightMap(file(), FileKind::Sdf, wide); }).kind(), ErrorKind::Unwritable);
    HeightMap unplaced = makeMap();
    unplaced.originX = kNaN;
    EXPECT_EQ(errorOf([&] { writeHeightMap(file(), FileKind::Vti, unplaced); }).kind(), ErrorKind::BadArgument);
    writeHeightMap(file(), FileKind::Npy, unplaced);
    expectError([&] { readHeightMap(file(), FileKind::Npy); }, ErrorKind::BadArgument, "pitch");
    expectError([&] { readHeightMap(file(), FileKind::Gsf, 0.1f); }, ErrorKind::BadArgument, "pitch");
    EXPECT_EQ(errorOf([&] { readHeightMap(file(), FileKind::Stl); }).kind(), ErrorKind::Unsuitable);
}

TEST_F(HeightMapFile, DamageIsFound) {
    constexpr ErrorKind kDamaged = ErrorKind::Damaged, kUnsuitable = ErrorKind::Unsuitable;
    const HeightMap map = makeMap();
    const struct {
        FileKind kind;
        const char* from;
        const char* to;
        ErrorKind error;
    } cases[] = {
        {FileKind::Gsf, "XRes = 5", "XRes = 4", kUnsuitable},
        {FileKind::Gsf, "YRes = 3", "YRes = -3", kDamaged},
        {FileKind::Gsf, "XRes = 5", "XRes = 4000000000", kUnsuitable},
        {FileKind::Gsf, "YUnits = m", "YUnits = A", kUnsuitable},
        {FileKind::Gsf, "XReal = 0.0005", "XReal = 0.0007", kUnsuitable},
        {FileKind::Gsf, "XReal = 0", "XReal = x", kDamaged},
        {FileKind::Gsf, "Field 1.0", "Field 2.0", kUnsuitable},
        {FileKind::Gsf, "ZUnits =", "ZUnits  ", kDamaged},
        {FileKind::Sdf, "NumPoints = 5", "NumPoints = 6", kDamaged},
        {FileKind::Sdf, "NumPoints = 5", "NumPoints = 4", kDamaged},
        {FileKind::Sdf, "NumPoints = 5", "NumPoints = 1e9", kDamaged},
        {FileKind::Sdf, "NumProfiles = 3", "NumProfiles = 0", kDamaged},
        {FileKind::Sdf, "Compression = 0", "Compression = 1", kUnsuitable},
        {FileKind::Sdf, "nan", "abc", kDamaged},
        {FileKind::Sdf, "Zscale = 0.001", "Zscale = nan", kDamaged},
        {FileKind::Sdf, "aISO", "bISO", kUnsuitable},
        {FileKind::Npy, "(3, 5)", "(3, 6)", kDamaged},
        {FileKind::Npy, "(3, 5)", "(3, 4)", kDamaged},
        {FileKind::Npy, "(3, 5)", "(15,)", kUnsuitable},
        {FileKind::Npy, "(3, 5), }", "(4611686018427387904, 4)", kDamaged},
        {FileKind::Npy, "<f4", "<i4", kUnsuitable},
        {FileKind::Npy, "'shape'", "'shade'", kDamaged},
        {FileKind::Vti, "0 4 0 2 0 0", "0 5 0 2 0 0", kUnsuitable},
        {FileKind::Vti, "0 4 0 2 0 0", "0 4 0 2 0 1", kUnsuitable},
        {FileKind::Vti, "\"0 4 0 2", "\"x 4 0 2", kDamaged},
        {FileKind::Vti, "Spacing=\"0", "Spacing=\"1", kUnsuitable},
        {FileKind::Vti, "\"binary\"", "\"appended\"", kUnsuitable},
        {FileKind::Vti, "UInt64", "UInt32", kDamaged},
        {FileKind::Vti, "\"ImageData\"", "\"Other\"", kUnsuitable},
        {FileKind::Vti, "</VTKFile>", "", kDamaged},
        {FileKind::Vti, "PointData", "CellData ", kDamaged},
        {FileKind::Vti, "header_type", "compressor=\"x\" header_type", kUnsuitable},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(kindName(c.kind) + ": " + c.to);
        writeHeightMap(file(), c.kind, map);
        write("file", QByteArray::fromStdString(replaced(read("file").toStdString(), c.from, c.to)));
        const std::optional<float> pitch = c.kind == FileKind::Npy ? std::optional(1.0f) : std::nullopt;
        EXPECT_EQ(errorOf([&] { readHeightMap(file(), c.kind, pitch); }).kind(), c.error);
    }
    for (const FileKind kind : {FileKind::Gsf, FileKind::Vti, FileKind::Npy, FileKind::Sdf, FileKind::Stl}) {
        writeHeightMap(file(), kind, map);
        const QByteArray whole = read("file");
        const qsizetype last = kind == FileKind::Sdf ? whole.indexOf("\n*\nOriginX") - 12 : whole.size() - 20;
        for (qsizetype size = 0; size < last; ++size) { // each place where the file may be cut
            write("file", whole.left(size));
            EXPECT_ANY_THROW(kind == FileKind::Stl
                                 ? static_cast<void>(readPoints(file(), kind))
                                 : static_cast<void>(readHeightMap(
                                       file(), kind, kind == FileKind::Npy ? std::optional(1.0f) : std::nullopt)))
                << kindName(kind) << " cut at " << size;
        }
    }
}

} // namespace
