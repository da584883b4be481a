// Point files of each kind: round trips, refusals and their places.
#include "inspect/inspectSupport.h"
#include "support/tempFiles.h"

#include <KxInspect/PointFile.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>

using namespace KxInspect;
using namespace inspect_test;
using testing_support::FullDisk;
using testing_support::TempFiles;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// 5 points of two profiles; y of the second point is missing.
PointSet makeSet(bool hasZ, bool hasColours) {
    PointSet set;
    set.hasZ = hasZ;
    set.hasColours = hasColours;
    for (int i = 0; i < 5; ++i) {
        const float x = 0.25f * static_cast<float>(i) - 3.0f;
        set.points.push_back(
            {x, i == 1 ? kNaN : 1.0f / static_cast<float>(i + 3), hasZ ? (i < 2 ? 7.5f : 8.25f) : kNaN});
        if (hasColours) {
            set.colours.push_back(0x102030u * static_cast<unsigned>(i));
        }
    }
    return set;
}

class PointFile : public testing::Test, public TempFiles {
protected:
    std::string file(const char* name = "file") const { return path(name).toStdString(); }
};

TEST_F(PointFile, ComesBackAsTheKindHoldsIt) {
    const struct {
        FileKind kind;
        bool keepsFlat, keepsZ, keepsColours, keepsStarts;
    } cases[] = {{FileKind::Cloud, true, true, true, false},  {FileKind::Profiles, false, true, false, true},
                 {FileKind::Xyzf, false, true, false, false}, {FileKind::Xyz, true, true, false, false},
                 {FileKind::Ply, false, true, true, false},   {FileKind::Pcd, false, true, true, false},
                 {FileKind::Table, true, true, true, false},  {FileKind::Vtp, false, true, true, false}};
    for (const auto& c : cases) {
        for (const auto& [hasZ, hasColours] :
             {std::pair(false, false), std::pair(true, false), std::pair(true, true)}) {
            SCOPED_TRACE(kindName(c.kind) + (hasZ ? " with z" : "") + (hasColours ? " with colours" : ""));
            const PointSet set = makeSet(hasZ, hasColours);
            writePoints(file(), c.kind, set);
            const PointSet back = readPoints(file(), c.kind);
            if (hasZ || c.keepsFlat) {
                EXPECT_TRUE(areSame(back.points, set.points));
                EXPECT_EQ(back.hasZ, hasZ);
            }
            EXPECT_EQ(back.points.size(), set.points.size());
            EXPECT_EQ(back.colours, c.keepsColours ? set.colours : std::vector<std::uint32_t>());
            EXPECT_EQ(back.hasColours, c.keepsColours && hasColours);
            EXPECT_EQ(back.profileStarts.size(), c.keepsStarts ? (hasZ ? 2u : 1u) : 0u);
        }
    }
}

TEST_F(PointFile, KindsHaveNamesAndEndings) {
    for (const FileKind kind : kFileKinds) {
        EXPECT_EQ(kindByName(kindName(kind)), kind);
        EXPECT_EQ(kindByFileName("a.b/x." + (kind == FileKind::Gauge ? "BAN" : kindName(kind))), kind);
    }
    EXPECT_EQ(kindByFileName("x.BIN"), FileKind::Cloud);
    EXPECT_EQ(kindByFileName("x.set"), FileKind::Profiles);
    EXPECT_FALSE(kindByFileName("x") || kindByFileName("x. ") || kindByName("bin"));
}

TEST_F(PointFile, DamageHasAPlace) {
    constexpr ErrorKind kDamaged = ErrorKind::Damaged, kUnsuitable = ErrorKind::Unsuitable;
    writePoints(file("records"), FileKind::Profiles, makeSet(true, false));
    const QByteArray records = read("records"); // 7 + 2 * 8 bytes, then 7 + 3 * 8
    const QByteArray ply = "ply\nformat ascii 1.0\nelement vertex 2\nproperty float x\nproperty float y\nend_header\n";
    const QByteArray pcd = "FIELDS x y\nSIZE 4 4\nTYPE F F\n";
    using Place = std::optional<std::int64_t>;
    const struct {
        const char* desc;
        FileKind kind;
        QByteArray content;
        ErrorKind error;
        Place byte, line;
    } cases[] = {
        {"cut record", FileKind::Profiles, records.chopped(1), kDamaged, 23, {}},
        {"space among records", FileKind::Profiles, records + QByteArray("\x03\0\0\0\0", 5), kUnsuitable, 54, {}},
        {"cut section", FileKind::Cloud, QByteArray("\x03\x01\0\0\0abc", 8), kDamaged, 0, {}},
        {"surplus", FileKind::Cloud, QByteArray("\x02\0\0!", 4), kDamaged, 3, {}},
        {"colours in part", FileKind::Cloud, QByteArray("\x03\0\0\0\0\x04\0\0\0\0", 10), kUnsuitable, {}, {}},
        {"no y in the header", FileKind::Table, "x,z\n1,2\n", kUnsuitable, {}, {}},
        {"a column too few", FileKind::Table, "x,y\n1,2\n3\n", kDamaged, 8, 3},
        {"a word in a table", FileKind::Table, "x,y\n1,b\n", kDamaged, 4, 2},
        {"claim of points",
         FileKind::Vtp,
         "<VTKFile type=\"PolyData\"><PolyData><Piece NumberOfPoints=\"9\"/></PolyData></VTKFile>",
         kDamaged,
         {},
         {}},
        {"claim of triangles", FileKind::Stl, QByteArray(80, 'a') + "\xff\xff\xff\xff", kDamaged, 84, {}},
        {"a face of four",
         FileKind::Stl,
         "solid\nfacet\nvertex 1 2 3\nvertex 1 2 4\nvertex 1 2 5\nvertex 1 2 6\nendloop\n",
         kDamaged,
         {},
         7},
        {"heights as points", FileKind::Npy, "\x93NUMPY\1", kDamaged, 7, {}},
        {"odd size", FileKind::Xyzf, QByteArray(35, 'a'), kDamaged, 32, {}},
        {"no points", FileKind::Xyz, "x y z\n", kUnsuitable, {}, {}},
        {"no CSV points", FileKind::Csv, "", kUnsuitable, {}, {}},
        {"no PLY", FileKind::Ply, "plx\n", kUnsuitable, {}, {}},
        {"no end", FileKind::Ply, "ply\n", kDamaged, 4, {}},
        {"big-endian", FileKind::Ply, "ply\nformat binary_big_endian 1.0\n", kUnsuitable, 4, 2},
        {"list", FileKind::Ply, "ply\nelement vertex 1\nproperty list x\n", kUnsuitable, 21, 3},
        {"too few rows", FileKind::Ply, ply + "1 2\n", kDamaged, ply.size() + 4, {}},
        {"too few columns", FileKind::Ply, ply + "1 2\n3\n", kDamaged, ply.size() + 4, 8},
        {"too many columns", FileKind::Ply, ply + "1 2\n3 4 5\n", kDamaged, ply.size() + 4, 8},
        {"too many rows", FileKind::Ply, ply + "1 2\n3 4\n5 6\n", kDamaged, ply.size() + 8, 9},
        {"a word", FileKind::Ply, ply + "1 abc\n3 4\n", kDamaged, ply.size(), 7},
        {"decimal comma", FileKind::Ply, ply + "1 2\n4,5 3\n", kDamaged, ply.size() + 4, 8},
        {"huge count", FileKind::Ply, "ply\nelement vertex 99999999999999999999\n", kDamaged, 4, 2},
        {"count of faces", FileKind::Ply, "ply\nelement vertex 1\nelement face x\n", kDamaged, 21, 3},
        {"count is a word", FileKind::Pcd, pcd + "POINTS abc\n", kDamaged, pcd.size(), 4},
        {"count is a float", FileKind::Pcd, pcd + "POINTS 1e20\n", kDamaged, pcd.size(), 4},
        {"count is negative", FileKind::Pcd, pcd + "POINTS -1\n", kDamaged, pcd.size(), 4},
        {"count beyond 2^63", FileKind::Pcd, pcd + "POINTS 18446744065119617025\n", kDamaged, {}, 4},
        {"row behind", FileKind::Pcd, pcd + "POINTS 1\nDATA ascii\n1 2\n\n3 4\n", kDamaged, {}, 8},
        {"row of bytes behind", FileKind::Pcd, pcd + "POINTS 1\nDATA binary\n0123456789abcdef", kDamaged, {}, {}},
        {"colour", FileKind::Pcd, "FIELDS x y rgb\nSIZE 4 4 4\nTYPE F F U\nPOINTS 1\nDATA ascii\n1 2 4294967296\n",
         kDamaged, 57, 6},
        {"claim", FileKind::Pcd, pcd + "POINTS 4000000000\nDATA binary\n12345678", kDamaged, {}, {}},
        {"sizes", FileKind::Pcd, "FIELDS x y\nSIZE 4\n", kDamaged, 11, 2},
        {"size", FileKind::Pcd, "FIELDS x y\nSIZE 4 3\n", kUnsuitable, 11, 2},
        {"counts", FileKind::Pcd, "FIELDS x y\nCOUNT 1 2\n", kUnsuitable, 11, 2},
        {"compressed", FileKind::Pcd, pcd + "DATA binary_compressed\n", kUnsuitable, pcd.size(), 4},
        {"no x", FileKind::Pcd, "FIELDS y z\nPOINTS 0\nDATA ascii\n", kUnsuitable, {}, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        write("file", c.content);
        const Error error = errorOf([&] { readPoints(file(), c.kind); });
        EXPECT_EQ(error.kind(), c.error) << error.what();
        EXPECT_TRUE(!c.byte || error.place().byte == c.byte) << error.place().byte.value_or(-1);
        EXPECT_EQ(error.place().line, c.line);
        EXPECT_EQ(error.source().file, file());
    }
    for (const FileKind kind : kFileKinds) {
        EXPECT_EQ(errorOf([&] { readPoints(file("missing"), kind); }).kind(), ErrorKind::NotFound) << kindName(kind);
        EXPECT_EQ(errorOf([&] { readPoints(path("").toStdString(), kind); }).kind(), ErrorKind::Unsuitable);
    }
}

TEST_F(PointFile, RecordingsKeepTheirProfiles) {
    const QByteArray flat("\x02\x02\0\0\0\x80\x3f\0\0\0\x40\0\0\x40\x40\0\0\x80\x40", 19); // (1, 2), (3, 4)
    const QByteArray empty("\x02\0\0", 3);
    const QByteArray placed("\x05\x01\0\0\0\xa0\x40\0\0\x80\x3f\0\0\0\x40", 15); // z = 5: (1, 2)
    write("file", flat + empty + flat);
    PointSet set = readPoints(file(), FileKind::Cloud);
    EXPECT_EQ(set.profileStarts, (std::vector<std::size_t>{0, 2, 2}));
    EXPECT_TRUE(set.points.size() == 4 && !set.hasZ);
    writePoints(file("copy"), FileKind::Cloud, set);
    EXPECT_EQ(read("copy"), read("file"));
    writePoints(file("copy"), FileKind::Table, set);
    EXPECT_EQ(read("copy"), "profile,x,y\n1,1,2\n1,3,4\n3,1,2\n3,3,4\n");
    EXPECT_EQ(readPoints(file("copy"), FileKind::Table).profileStarts, (std::vector<std::size_t>{0, 2}));
    for (const FileKind kind : {FileKind::Xyz, FileKind::Ply, FileKind::Npy, FileKind::Csv, FileKind::Gauge}) {
        EXPECT_EQ(errorOf([&] { writePoints(file("copy"), kind, set); }).kind(), ErrorKind::Unwritable);
    }
    write("file", placed + flat);
    set = readPoints(file(), FileKind::Profiles);
    EXPECT_TRUE(areSame(set.points, {{1, 2, 5}, {1, 2, kNaN}, {3, 4, kNaN}}));
    EXPECT_TRUE(areSame(readRecord(file(), 2).points, {{1, 2, kNaN}, {3, 4, kNaN}}));
    EXPECT_TRUE(readRecord(file(), 1).hasZ && !readRecord(file(), 2).hasZ);
    EXPECT_EQ(errorOf([&] { readRecord(file(), 3); }).kind(), ErrorKind::Unsuitable);
    EXPECT_EQ(errorOf([&] { readRecord(file(), 0); }).kind(), ErrorKind::BadArgument);
}

TEST_F(PointFile, GaugeFilesAreReadAsWritten) {
    PointSet set = makeSet(false, false);
    for (const char* const name : {"a.whl", "a.prw"}) {
        writePoints(file(name), FileKind::Gauge, set);
        EXPECT_EQ(kindOfFile(file(name)), FileKind::Gauge);
        EXPECT_TRUE(areSame(readPoints(file(name), FileKind::Gauge).points, set.points));
    }
    set = makeSet(true, false);
    EXPECT_EQ(errorOf([&] { writePoints(file("a.whl"), FileKind::Gauge, set); }).kind(), ErrorKind::Unwritable);
}

TEST_F(PointFile, WritingIsChecked) {
    PointSet set = makeSet(true, false);
    EXPECT_EQ(errorOf([&] { writePoints(file(), FileKind::Csv, set); }).kind(), ErrorKind::Unwritable);
    for (const FileKind kind : kFileKinds) {
        const PointSet flat = makeSet(false, false);
        EXPECT_EQ(errorOf([&] { writePoints(file("no/x"), kind, flat); }).kind(), ErrorKind::Unwritable);
    }
    set.profileStarts = {0, 6};
    EXPECT_EQ(errorOf([&] { writePoints(file(), FileKind::Profiles, set); }).kind(), ErrorKind::BadArgument);
    set.profileStarts = {0, 3, 2};
    EXPECT_EQ(errorOf([&] { writePoints(file(), FileKind::Profiles, set); }).kind(), ErrorKind::BadArgument);
    set.profileStarts = {};
    set.hasColours = true;
    EXPECT_EQ(errorOf([&] { writePoints(file(), FileKind::Ply, set); }).kind(), ErrorKind::BadArgument);
    PointSet many;
    many.points.resize(65536);
    EXPECT_EQ(errorOf([&] { writePoints(file(), FileKind::Cloud, many); }).kind(), ErrorKind::Unwritable);
    EXPECT_EQ(errorOf([&] { writePoints(file(), FileKind::Profiles, many); }).kind(), ErrorKind::Unwritable);
    for (std::size_t i = 0; i < many.points.size(); ++i) { // two profiles
        many.points[i] = {1.0f, 2.0f, i < 40000 ? 0.0f : 1.0f};
    }
    const FullDisk disk(1 << 16);
    for (const FileKind kind : kFileKinds) {
        many.hasZ = kind != FileKind::Csv;
        EXPECT_EQ(errorOf([&] { writePoints(file(), kind, many); }).kind(), ErrorKind::Unwritable) << kindName(kind);
    }
}

} // namespace
