// Recordings below a folder by station, time and sensor, and how far they are written.
#include "inspect/inspectSupport.h"
#include "support/tempFiles.h"

#include <KxInspect/RecordingGroups.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace KxInspect;
namespace fs = std::filesystem;

const std::string kTime = "20261121T081500Z";

class Groups : public testing::Test, public testing_support::TempFiles {
protected:
    ~Groups() override { fs::remove_all(root()); } // Qt does not find names that are not UTF-8

    std::string root() const { return path("archive").toStdString(); }

    void put(const std::string& name, const std::string& content = "x") const {
        const fs::path file = fs::path(root()) / name;
        fs::create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << content;
    }

    /// "STATION TIME SERIALS", and "PATH: REASON" of what was skipped.
    std::vector<std::string> find(const std::string& layout = kDefaultLayout) const {
        std::vector<std::string> lines;
        const FoundRecordings found = findRecordings(root(), layout);
        for (const RecordingGroup& group : found.groups) {
            std::string line = group.station + ' ' + group.time;
            for (const FoundRecording& recording : group.recordings) {
                line += ' ' + std::to_string(recording.serial);
            }
            lines.push_back(line);
        }
        for (const SkippedPath& skipped : found.skipped) {
            lines.push_back(skipped.path.substr(root().size() + 1) + ": " + skipped.reason);
        }
        return lines;
    }
};

using Lines = std::vector<std::string>;

TEST_F(Groups, AreFoundByStationTimeAndSensorInAStableOrder) {
    put("B 7/" + kTime + "/right_1002.bin", "abc");
    put("B 7/" + kTime + "/left_21.bin");
    put("B 7/2026-11-21T09:15:00.5+01:00/left_21.bin");
    put("A12/2026-11-21T08-15-00Z/a_0101.bin");
    put("A12/" + kTime + "/a_102.bin"); // the same time
    put("A12/" + kTime + "/b_102.bin");
    put("A12/" + kTime + "/incomplete-c_103.bin");
    put("A12/" + kTime + "/.c_103.bin");
    put(".hidden/" + kTime + "/c_103.bin");
    EXPECT_EQ(find(), (Lines{"A12 2026-11-21T08:15:00Z 101 102 102", "B 7 2026-11-21T08:15:00Z 21 1002",
                             "B 7 2026-11-21T09:15:00.5+01:00 21"}));
    const FoundRecording last = findRecordings(root() + "//").groups[1].recordings[1];
    EXPECT_EQ(last.path, root() + "/B 7/" + kTime + "/right_1002.bin");
    EXPECT_EQ(last.bytes, 3);
    struct stat status {};
    ASSERT_EQ(stat(last.path.c_str(), &status), 0);
    EXPECT_EQ(last.changed, status.st_ctim.tv_sec * 1'000'000'000 + status.st_ctim.tv_nsec);
}

TEST_F(Groups, LinksOtherFilesAndUnreadableFoldersAreSkippedWithTheReason) {
    const std::string noTime = ": does not fit the layout: its name is no ISO 8601 time with a zone, as " + kTime;
    put("A12/" + kTime + "/a_101.bin");
    put("A12/backup/a_101.bin");
    put("A12/20261121T081500/a_101.bin"); // no zone
    put("A12/" + kTime + "/a_b_102.bin");
    put("A12/" + kTime + "/a_0.bin");
    put("A12/" + kTime + "/a_-5.bin");
    put("A12/" + kTime + "/a_99999999999.bin");
    put("A12/" + kTime + "/a.bin_5.bin");
    put("m\xfcller/" + kTime + "/a_101.bin");
    put("readme");
    fs::create_directories(fs::path(root()) / "A12" / kTime / "a_103.bin");
    fs::create_directory_symlink(root(), root() + "/circle");
    fs::create_directory_symlink("/etc", root() + "/out");
    fs::create_symlink(root() + "/readme", root() + "/A12/" + kTime + "/a_104.bin");
    const std::string pass = "A12/" + kTime;
    EXPECT_EQ(find(), (Lines{"A12 2026-11-21T08:15:00Z 101", "A12/20261121T081500" + noTime,
                             pass + "/a.bin_5.bin: does not fit the layout",
                             pass + "/a_-5.bin: does not fit the layout", pass + "/a_0.bin: does not fit the layout",
                             pass + "/a_103.bin: is not a file", pass + "/a_104.bin: is a link, which is not followed",
                             pass + "/a_99999999999.bin: does not fit the layout",
                             pass + "/a_b_102.bin: does not fit the layout", "A12/backup" + noTime,
                             "circle: is a link, which is not followed",
                             "m\xfcller: does not fit the layout: the name of a station must be UTF-8",
                             "out: is a link, which is not followed", "readme: is not a folder"}));
    if (geteuid() != 0) { // who may read everything
        fs::permissions(root() + "/A12", fs::perms::none);
        const FoundRecordings found = findRecordings(root());
        fs::permissions(root() + "/A12", fs::perms::owner_all);
        EXPECT_TRUE(found.groups.empty());
        EXPECT_EQ(found.skipped.front().reason, "cannot be read: Permission denied");
        EXPECT_TRUE(found.skipped.front().isUnreadable && !found.skipped.back().isUnreadable);
    }
}

TEST_F(Groups, FollowTheLayout) {
    put("in/A-12-20261121T0815+0100_101.bin");
    put("in/A-12-20261121T0815+0100_102.bin");
    put("in/x-20261121T0815-05_7.bin");
    put("in/a-b-" + kTime + "-c-d_7.bin");
    put("in/..-" + kTime + "_7.bin");
    EXPECT_EQ(find("in/{station}-{time}_{serial}.bin"),
              (Lines{"A-12 2026-11-21T08:15+01:00 101 102", "x 2026-11-21T08:15-05:00 7",
                     "in/a-b-" + kTime + "-c-d_7.bin: does not fit the layout"}));
    EXPECT_EQ(find("in/{prefix}-{time}-{station}_{serial}.bin"),
              (Lines{"c-d 2026-11-21T08:15:00Z 7", "in/A-12-20261121T0815+0100_101.bin: does not fit the layout",
                     "in/A-12-20261121T0815+0100_102.bin: does not fit the layout",
                     "in/x-20261121T0815-05_7.bin: does not fit the layout"}));
    put("in/a-b-c-" + kTime + "_7.bin");
    const Lines lines = find("in/{station}-{prefix}-{time}_{serial}.bin");
    EXPECT_EQ(lines.back(), "in/x-20261121T0815-05_7.bin: does not fit the layout");
    EXPECT_EQ(lines[lines.size() - 2], "in/a-b-c-" + kTime + "_7.bin: fits the layout in more than one way");
}

TEST_F(Groups, WrongLayoutsAreRefusedInWords) {
    put("a");
    const std::pair<const char*, const char*> faults[] = {
        {"", "without empty names"},
        {"/{time}/a_{serial}.bin", "without empty names"},
        {"{time}//a_{serial}.bin", "without empty names"},
        {"../{time}/a_{serial}.bin", "without empty names, '.' and '..'"},
        {"{time}/{prefix}.bin", "needs {serial}"},
        {"{station}/a_{serial}.bin", "needs {time}"},
        {"{time}/{time}_{serial}.bin", "has {time} more than once"},
        {"{station}{time}_{serial}.bin", "nothing stands between two placeholders"},
        {"{tine}/a_{serial}.bin", "unknown placeholder {tine} (is {time} meant?)"},
        {"{x}/a_{serial}.bin", "known are {station}, {time}, {prefix} and {serial}"},
        {"{time/a_{serial}.bin", "{ without its }"},
        {"time}/a_{serial}.bin", "} without its {"},
        {"{time}/{serial}/a.bin", "must end in the name of a recording"},
        {"{time}/_{serial}.bin", "must end in the name of a recording"},
        {"{time}/a_{serial}.dat", "must end in the name of a recording"},
        {"{station}_{time}_{serial}.bin", "a text without '_'"},
        {"{time}/a.bin_{serial}.bin", ".bin twice"},
    };
    for (const auto& [layout, reason] : faults) {
        const Error error = inspect_test::errorOf([&, layout = layout] { findRecordings(root(), layout); });
        EXPECT_EQ(error.kind(), ErrorKind::BadArgument);
        EXPECT_NE(error.reason().find(reason), std::string::npos) << layout << ": " << error.what();
    }
    using inspect_test::expectError;
    expectError([&] { findRecordings(root() + "/no"); }, ErrorKind::NotFound, "", "does not exist");
    expectError([&] { findRecordings(root() + "/a"); }, ErrorKind::Unsuitable, "", "is not a folder");
}

TEST_F(Groups, RecordingsAreWholeWhereARecordEnds) {
    const std::string profile("\5\2\0zzzz0123456789abcdef", 23);
    const std::string section("\2\1\0"
                              "01234567",
                              11);
    const std::string empty("\5\0\0zzzz", 7);
    const std::string all = profile + section + empty;
    for (std::size_t size = 0; size <= all.size(); ++size) {
        put("a_1.bin", all.substr(0, size));
        const RecordingEnd end = recordingEnd(root() + "/a_1.bin");
        EXPECT_EQ(end.bytes, std::int64_t(size));
        EXPECT_EQ(end.records, size >= 41 ? 3 : size >= 34 ? 2 : size >= 23 ? 1 : 0);
        EXPECT_EQ(end.wholeBytes, size >= 41 ? 41 : size >= 34 ? 34 : size >= 23 ? 23 : 0);
        EXPECT_EQ(end.isWhole(), size == 23 || size == 34 || size == 41) << size;
    }
    put("a_1.bin", profile + '\0' + section);
    const Error error = inspect_test::errorOf([&] { recordingEnd(root() + "/a_1.bin"); });
    EXPECT_EQ(error.kind(), ErrorKind::Damaged);
    EXPECT_EQ(error.place().byte, 23);
    EXPECT_EQ(error.place().record, 2);
    inspect_test::expectError([&] { recordingEnd(root()); }, ErrorKind::Unsuitable, "", "is not a file");
    inspect_test::expectError([&] { recordingEnd(root() + "/no"); }, ErrorKind::NotFound, "", "does not exist");
}

} // namespace
