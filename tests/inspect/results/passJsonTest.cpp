// The result of a pass as JSON and back, and its page.
#include "inspect/inspectSupport.h"
#include "kxmath/trainRecordings.h"
#include "report/train/passReport.h"
#include "simulator/simulation.h"
#include "support/tempFiles.h"

#include <KxInspect/Train.h>

#include <gtest/gtest.h>

namespace {

using namespace KxInspect;
using testing_support::TempFiles;

/// A train with defects, of which one sensor missed wheels, all pairs shown.
PassResult simulatedPass(int mode) {
    const TempFiles files;
    kxsim::Parameters p;
    p.cars = 1;
    p.rate = 1500.0;
    p.points = 640;
    p.defects = {{kxsim::Defect::Kind::BuildUp, 2, 1, 1.5, 0.0}, {kxsim::Defect::Kind::Flat, 3, 2, 60.0, 5.0}};
    kxsim::simulatePass(p, files.path("pass"), {});
    const auto path = [&](const char* name) { return files.path("pass/" + QString(name)).toStdString(); };
    PassOptions options;
    options.mode = mode;
    options.defects = readDefectSettings(path("defects.ini"));
    options.defects->limits.toX = 500.0f;
    options.shownPairs = {1, 2, 99};
    options.labels = {"Hof \"3\"", {}, "2", {}, "2026-03-29T01:59:07+01:00", 79.5f};
    options.consist = Consist{"", {{"M", "7", "metro", {2100, 10500, 2100}, 0}}, {}};
    options.limits = Limits{"", {{"backToBack", "metro", {1359.9, {}, {}, 1363.1}}, {"yaw", "", {{}, {}, 1, {}}}}, {}};
    return measurePass({path("train_101.bin"), path("train_102.bin")}, readStationSettings(path("settings.ini")),
                       options);
}

/// Pairs without partner, without points below the line and with too few points; nothing judged.
PassResult oddPass() {
    const TempFiles files;
    using namespace tool_test;
    std::vector<std::string> names = {
        files.write("a_1001.bin", recording({0.5f, 0.25f, SeenWheel(), 1.0f}, tool_test::RecordKind::CloudSections, 4))
            .toStdString(),
        files.write("b_1002", recording({0.5f, 0.5f, 0.5f, 0.5f}, tool_test::RecordKind::ProfileRecords))
            .toStdString()};
    names[1] = files.write("b_1002.bin", files.read("b_1002")).toStdString();
    PassOptions options;
    options.shownPairs = {1, 3};
    options.defects = DefectSettings();
    options.defects->sensors = {{1, 1001, Line{0, 1e4f}, Line{0, 0}}, {2, 1002, Line{0, 1e4f}, Line{0, 0}}};
    const QByteArray settings = trainSettings().replace("minPointsIn=5", "minPointsIn=2");
    return measurePass(names, readStationSettings(files.write("s.ini", settings).toStdString()), options);
}

TEST(PassJson, ReadsBackWhatItWrote) {
    const PassResult passes[] = {simulatedPass(0), simulatedPass(3), oddPass()};
    for (const PassResult& pass : passes) {
        ASSERT_FALSE(pass.pictures.empty());
        const std::string values = toJson(pass);
        const std::string all = toJson(pass, Pictures::Included);
        EXPECT_EQ(toJson(passFromJson(values)), values);
        EXPECT_EQ(toJson(passFromJson(all), Pictures::Included), all);
        EXPECT_EQ(toJson(passFromJson(all)), values);
        EXPECT_EQ(kxreport::passReport(passFromJson(all)), kxreport::passReport(pass));
        EXPECT_LT(kxreport::passReport(passFromJson(values)).size(), kxreport::passReport(pass).size());
        for (size_t i = 0; i < pass.pairs.size(); ++i) {
            EXPECT_EQ(passFromJson(values).pairs[i].reason, pass.pairs[i].reason);
        }
    }
    EXPECT_EQ(passes[0].warnings.size(), 1u) << "a tread with a flat; a pair without a picture is no doubt";
    EXPECT_EQ(passes[0].distances(), 4);
    EXPECT_GT(passes[0].count(PassQuestion::Tread).bad + passes[0].count(PassQuestion::Roundness).bad, 0);
    EXPECT_EQ(passes[2].wheelOf(passes[2].pairs[2], 0), nullptr);
    EXPECT_EQ(passes[2].pairs[2].reason, "the sensor of side 1 did not see the wheel");
}

TEST(PassJson, RefusesOtherDocuments) {
    const std::string good = toJson(oddPass(), Pictures::Included);
    const auto with = [&](const char* from, const char* to) { return inspect_test::replaced(good, from, to); };
    const std::pair<std::string, const char*> cases[] = {
        {"", ""},
        {good.substr(0, good.size() / 2), ""},
        {with("\"train\"", "\"wheel\""), "command"},
        {with("\"baseDistance\"", "\"base\""), "baseDistance"},
        {with("\"serial\": 1001", "\"serial\": \"x\""), "recordings[0].serial"},
        {with("\"recordings\": [", "\"recordings\": [{},"), "recordings"},
        {with("\"profiles\": 10", "\"profiles\": 2147483647"), "pairs[0].sides[0].profiles"},
        {with("\"warnings\": [", "\"warnings\": [7,"), "warnings[0]"},
        {with("\"pictures\": [", "\"pictures\": [{\"pair\": 9},"), "pictures[0].pair"},
        {with("\"heights\": [", "\"heights\": [1,"), "pictures[0].wheels[0].heights"},
        {with("\"side\": 2", "\"side\": 3"), "pictures[0].wheels[1].side"},
    };
    for (const auto& [text, key] : cases) {
        const ErrorKind kind = *key == '\0' ? ErrorKind::Damaged : ErrorKind::Unsuitable;
        inspect_test::expectError([&, text = text] { passFromJson(text); }, kind, key);
    }
}

} // namespace
