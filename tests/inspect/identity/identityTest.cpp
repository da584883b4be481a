// What a result says of where it comes from: hashes, names without folders, times and labels.
#include "inspect/base/sha256.h"
#include "inspect/identity/fileIdentity.h"
#include "inspect/inspectSupport.h"
#include "kxmath/trainRecordings.h"
#include "support/tempFiles.h"

#include <KxInspect/Train.h>

#include <gtest/gtest.h>

namespace {

using namespace KxInspect;
using namespace tool_test;
using detail::sha256Of;

TEST(Sha256, IsThatOfTheStandardHoweverTheBytesCome) {
    // FIPS 180-4, examples of NIST.
    EXPECT_EQ(sha256Of(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(sha256Of("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    const std::string million(1000000, 'a');
    const char* const expected = "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0";
    for (const std::size_t block : {1u, 63u, 4097u, 1000000u}) {
        detail::Sha256 hash;
        for (std::size_t at = 0; at < million.size(); at += block) {
            hash.add(million.data() + at, std::min(block, million.size() - at));
        }
        EXPECT_EQ(hash.text(), expected) << block;
        EXPECT_EQ(hash.text(), expected) << "asking changes nothing";
    }
}

TEST(PassIdentity, HashesWhatWasMeasured) {
    const testing_support::TempFiles files;
    // Records of unequal lengths, longer and shorter than a buffer, so that reads end everywhere in it.
    const QByteArray left = recording({0.5f, -1.0f, 0.25f}, tool_test::RecordKind::CloudSections, 4000);
    const QByteArray right = recording({0.5f, -1.0f, 0.25f}, tool_test::RecordKind::ProfileRecords, 41);
    const std::string paths[] = {files.write("a_1001.bin", left).toStdString(),
                                 files.write("b_1002.bin", right).toStdString()};
    const QByteArray text = "unknownKey=1\n" + trainSettings();
    StationSettings settings = readStationSettings(files.write("s.ini", text).toStdString());
    PassOptions options;
    options.labels.station = "Hof \"3\"";
    options.labels.time = "2026-03-29T01:59:07+01:00";
    const PassResult pass = measurePass({paths[0], paths[1]}, settings, options);
    EXPECT_EQ(pass.sides[0].sha256, sha256Of({left.constData(), std::size_t(left.size())}));
    EXPECT_EQ(pass.sides[1].sha256, sha256Of({right.constData(), std::size_t(right.size())}));
    EXPECT_EQ(pass.identity.settings.file->sha256, sha256Of({text.constData(), std::size_t(text.size())}));
    EXPECT_EQ(toJson(pass).find(files.path("").toStdString()), std::string::npos) << "no folder in the result";
    EXPECT_NE(pass.warnings.at(0).find("settings 's.ini' hold the unknown key 'unknownKey'"), std::string::npos);

    // What a program fills in is what stands in the result.
    const auto valueOf = [](const PassResult& result, const std::string& key) {
        const auto& values = result.identity.settings.values;
        const auto at = std::find_if(values.begin(), values.end(), [&](const auto& v) { return v.key == key; });
        return at != values.end() ? std::get<double>(at->value) : -1.0;
    };
    EXPECT_EQ(valueOf(pass, "minProfsInWheel"), settings.minProfilesInWheel);
    settings.source.reset();
    settings.sensors[1].detection.maxJump = 1.7f;
    const PassResult filledIn = measurePass({paths[0], paths[1]}, settings);
    EXPECT_EQ(valueOf(filledIn, "SENSOR2/maxdY"), 1.7) << "as it was written, not as the float is";
    EXPECT_FALSE(filledIn.identity.settings.file || filledIn.identity.labels.station);
}

TEST(PassIdentity, TakesTimesThatNameOneInstant) {
    for (const char* const good :
         {"2026-03-29T01:59:07+01:00", "2024-02-29T23:59Z", "2026-12-31T00:00:00.000001-09:30"}) {
        EXPECT_EQ(whyNoTime(good), "") << good;
    }
    const std::pair<const char*, const char*> bad[] = {
        {"", "date"},
        {"2026-03-29", "date"},
        {"2026-03-29T01:59:07", "zone"},
        {"2025-02-29T01:59:07Z", "date"},
        {"2026-13-01T01:59:07Z", "date"},
        {"2026-03-29T24:00:00Z", "date"},
        {"2026-03-29T01:59:60Z", "date"},
        {"2026-03-29T01:59:07.Z", "date"},
        {"2026-03-29 01:59:07Z", "date"},
        {"2026-03-29T01:59:07+0100", "offset"},
        {"2026-03-29T01:59:07+24:00", "offset"},
        {"2026-03-29T01:59:07Z ", "offset"},
        {"26-03-29T01:59:07Z", "date"},
    };
    for (const auto& [text, why] : bad) {
        EXPECT_NE(whyNoTime(text).find(why), std::string::npos) << text << ": " << whyNoTime(text);
    }
}

TEST(PassIdentity, RefusesLabelsThatNobodyCanRead) {
    EXPECT_EQ(whyNoLabel("Hof 3, Gleis \u00fc"), "");
    for (const std::string& bad : {std::string(), std::string("a\nb"), std::string("\xff"), std::string(201, 'a')}) {
        EXPECT_NE(whyNoLabel(bad), "") << bad;
    }
    PassOptions options;
    options.labels.track = "a\tb";
    inspect_test::expectError([&] { checkPass({}, {}, options); }, ErrorKind::BadArgument, "track", "control");
    options.labels = {};
    options.labels.speed = 0.0f;
    inspect_test::expectError([&] { checkPass({}, {}, options); }, ErrorKind::BadArgument, "speed");
}

} // namespace
