// Scans from files of both kinds.
#include "inspect/scan/scanSupport.h"

#include <KxInspect/PointFile.h>
#include <KxInspect/Scan.h>

using namespace scan_test;

namespace {

const QByteArray kEmptyRecord("\x05\0\0\0\0\0\0", 7);
const QByteArray kEmptySection("\x02\0\0", 3);
const QByteArray kRecord = QByteArray::fromHex("0502000000003f0000803f000000400000c07f00004040"); // (1, 2) and (NaN, 3)
const QByteArray kSection = QByteArray::fromHex("02010000004040000080bf"); // (3, -1)

class ReadScan : public testing::Test, public testing_support::TempFiles {
protected:
    Scan read(const QByteArray& content, const ScanPlacement& placement = {}) const {
        return readScan(write("scan", content).toStdString(), placement);
    }
};

TEST_F(ReadScan, PlacesTheProfiles) {
    const Scan records = read(kEmptyRecord + kRecord + kEmptyRecord + kRecord, {7.0f, 0.25f});
    ASSERT_EQ(records.profiles.size(), 4u);
    EXPECT_EQ(records.emptyRecords, 2);
    EXPECT_EQ(records.distance, 0.25f);
    EXPECT_EQ(records.profiles[3].z, 7.75f) << "not the position in the file";
    EXPECT_EQ(records.profiles[1].points, (std::vector<Point>{{1, 2}})) << "the one that is not finite is left out";
    const Scan sections = read(kSection + kEmptySection + kSection);
    EXPECT_EQ(sections.profiles[2].z, 2.0f);
    EXPECT_EQ(sections.profiles[2].points, (std::vector<Point>{{3, -1}}));
}

TEST_F(ReadScan, FailuresHaveAPlace) {
    const struct {
        const char* desc;
        QByteArray content;
        ErrorKind kind;
        std::optional<std::int64_t> byte, record;
    } cases[] = {
        {"another kind", "x;y\n", ErrorKind::Unsuitable, 0, 1},
        {"empty", "", ErrorKind::Unsuitable, {}, {}},
        {"cut short", kRecord + kRecord.chopped(1), ErrorKind::Damaged, kRecord.size(), 2},
        {"damaged", kSection + kSection + "x", ErrorKind::Damaged, 2 * kSection.size(), 3},
        {"both kinds", kRecord + kSection, ErrorKind::Unsuitable, kRecord.size(), 2},
        {"no points", kEmptyRecord + kEmptyRecord, ErrorKind::Unsuitable, {}, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        const Error error = errorOf([&] { read(c.content); });
        EXPECT_EQ(error.kind(), c.kind) << error.what();
        EXPECT_EQ(error.place().byte, c.byte);
        EXPECT_EQ(error.place().record, c.record);
    }
    expectRefusals({
        {"missing", [&] { readScan(path("missing").toStdString(), {}); }, ErrorKind::NotFound, ""},
        {"first",
         [&] {
             read(kRecord, {kNaN, 1.0f});
         },
         ErrorKind::BadArgument, "firstZ"},
        {"distance",
         [&] {
             read(kRecord, {0.0f, 0.0f});
         },
         ErrorKind::BadArgument, "distance"},
    });
}

} // namespace
