// Profiles and contents of files of several kinds.
#include "inspect/inspectSupport.h"
#include "support/tempFiles.h"

#include <KxInspect/FileContents.h>
#include <KxInspect/ProfileFile.h>
#include <gtest/gtest.h>

using namespace KxInspect;
using testing_support::TempFiles;

namespace {

/// A record of one point (1, 2) at z = 0.5, and a 2-D section of the points (1, 2) and (3, -1).
const QByteArray kRecord = QByteArray::fromHex("0501000000003f0000803f00000040");
const QByteArray kSection = QByteArray::fromHex("0202000000803f0000004000004040000080bf");

class ProfileFile : public testing::Test, public TempFiles {
protected:
    std::string make(const QByteArray& content, const char* name = "file.dat") const {
        return write(name, content).toStdString();
    }
};

TEST_F(ProfileFile, ContentDeterminesTheKind) {
    const struct {
        const char* desc;
        QByteArray content;
        std::vector<int> columns;
        std::vector<Point> points;
    } cases[] = {
        {"record", kRecord + kSection, {}, {{1, 2}}},
        {"section", kSection + kRecord, {}, {{1, 2}, {3, -1}}},
        {"CSV", "1,5;2\n3;4\n\n", {}, {{1.5f, 2}, {3, 4}}},
        {"CSV columns", "0;1,5;2\n0;3;4\n", {2, 1}, {{2, 1.5f}, {4, 3}}},
        {"gauge", "Wheel....: 7\n1 2\n\n3 4 0\n5\t6 0\n", {}, {{3, 4}, {5, 6}}},
        {"gauge columns", "Wheel....: 7\n\n9 1 0 2\n9 3 0 4\n", {3, 1}, {{2, 1}, {4, 3}}},
        {"PLY",
         "ply\nformat ascii 1.0\nelement vertex 1\nproperty float y\nproperty float x\nend_header\n1 2\n",
         {},
         {{2, 1}}},
        {"3-D section", QByteArray::fromHex("03010000000000803f0000004000004040"), {}, {{1, 2}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        EXPECT_EQ(readProfile(make(c.content), {c.columns, {}, {}}).points, c.points);
    }
    EXPECT_EQ(readProfile(make(kRecord)).z, 0.5f);
    const std::vector<Profile> all = readProfiles(make(kSection + kRecord + QByteArray("\x02\0\0", 3)));
    ASSERT_EQ(all.size(), 3u);
    EXPECT_EQ(all[1].z, 0.5f);
    EXPECT_TRUE(all[2].points.empty());
    EXPECT_EQ(readProfiles(make("1 2\n3 4\n")).size(), 1u);
}

TEST_F(ProfileFile, FailuresHaveAKindAndAPlace) {
    const struct {
        const char* desc;
        QByteArray content;
        ErrorKind kind;
        std::optional<std::int64_t> byte;
        bool isOfAll; ///< only readProfiles() fails
    } cases[] = {
        {"cut record", kRecord.chopped(1), ErrorKind::Damaged, 0, false},
        {"damage later", kSection + "x", ErrorKind::Damaged, kSection.size(), true},
        {"text without points", "a b\n", ErrorKind::Unsuitable, {}, false},
        {"empty", "", ErrorKind::Unsuitable, {}, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        const std::string file = make(c.content);
        const Error error = inspect_test::errorOf([&] { readProfiles(file); });
        EXPECT_EQ(error.kind(), c.kind);
        EXPECT_EQ(error.place().byte, c.byte);
        if (c.isOfAll) {
            EXPECT_EQ(readProfile(file).points.size(), 2u);
        } else {
            EXPECT_THROW(readProfile(file), Error);
        }
    }
    EXPECT_THROW(readProfile(make("1 2\n"), {{-1, 1}, {}, {}}), Error);
    EXPECT_THROW(readProfile("missing"), Error);
}

TEST_F(ProfileFile, ContentsCountWhatIsThere) {
    const FileContents contents = readFileContents(make(kSection + kRecord + kRecord + "x"));
    ASSERT_EQ(contents.parts.size(), 2u);
    EXPECT_EQ(contents.parts[0].kind, PartKind::CloudSection2D);
    EXPECT_EQ(contents.parts[1].kind, PartKind::ProfileRecord);
    EXPECT_EQ(contents.parts[1].count, 2);
    EXPECT_EQ(contents.points, 4);
    EXPECT_EQ(contents.y, (Range{-1.0f, 2.0f}));
    EXPECT_EQ(contents.z, (Range{0.5f, 0.5f}));
    EXPECT_EQ(contents.spacing, 2.0f);
    ASSERT_TRUE(contents.damage);
    EXPECT_EQ(contents.damage->place().byte, kSection.size() + 2 * kRecord.size());
    const FileContents text = readFileContents(make("1 nan\n4 5\n", "a.xyz"));
    EXPECT_EQ(text.kind, FileKind::Xyz);
    EXPECT_EQ(text.missing, 1);
    EXPECT_TRUE(text.z.isEmpty());
    EXPECT_TRUE(readFileContents(make("", "empty.bin")).parts.empty());
    EXPECT_THROW(readFileContents(path("").toStdString()), Error);
}

} // namespace
