// The page of a calibration beside its JSON.
#include "report/calibrate/calibrationReport.h"
#include "report/jsonOf.h"
#include "report/pageReader.h"

#include <KxInspect/Calibration.h>

#include <gtest/gtest.h>

namespace {

using namespace KxInspect;
using namespace page_test;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
const QString kDash = QStringLiteral("\u2013");

SensorPose poseFrom(double first) {
    return {first, first + 10.5, -first - 20.25, first / 2, 45 + first, -first / 4};
}

/// Two profiles with a pose and one without, points on all flanks and on none, and a flank that is off.
CalibrationResult result() {
    CalibrationResult r;
    r.task.placement = 2;
    r.side = SensorSide::LargerY;
    r.task.object = {24.5, 1.125, -0.375, 118.0};
    r.profiles.resize(3);
    for (size_t i : {0, 2}) {
        ProfilePose& m = r.profiles[i];
        m.name = i == 0 ? "a.bin" : "c.bin";
        m.pose = poseFrom(1.0 + static_cast<double>(i));
        m.uncertainty = poseFrom(5.0 + static_cast<double>(i));
        m.rms = i == 0 ? 0.021 : 0.034;
        m.angleDeviation = i == 0 ? 0.0525625 : 0.0375;
        for (size_t p = 0; p < 9; ++p) { // the last one on no flank
            const float at = static_cast<float>(p);
            m.points.push_back({{5 * at - 20, 200 + 3 * at},
                                p < 8 ? std::optional(p) : std::nullopt,
                                false,
                                p < 8 ? 0.05 * static_cast<double>(p) - 0.15 : kNaN});
        }
    }
    r.profiles[1].name = "b.bin";
    r.profiles[1].fault = "shows 3 apexes";
    r.profiles[2].points.push_back({{30, 245}, {}, true, kNaN});
    r.profiles[2].outliers = 1;
    r.average = {2, {}, poseFrom(2.0), poseFrom(0.25), poseFrom(0.5), poseFrom(0.75), 77.0625, 0.0};
    for (size_t flank = 0; flank < kFlankCount; ++flank) {
        const double part = static_cast<double>(flank);
        r.flanks[flank] = {100 + int(flank), 0.001 * part, 0.01 + 0.002 * part, 0.1 + 0.03 * part,
                           0.005 + 0.001 * part};
    }
    r.flanks[5].mean = -0.06; // beyond 0.02 mm and four standard deviations
    r.unreadable = {"'folder/x' is damaged"};
    r.warnings = {"w1"};
    r.version = "7.8.9";
    return r;
}

TEST(CalibrationPage, ShowsWhatTheJsonSays) {
    const QJsonObject json = jsonOf(result());
    const ReadPage page = readPage(kxreport::calibrationReport(result()));
    EXPECT_EQ(page.subtitle, "Placement code 2; object with pitch 24.5 mm, slope 1.125, obliqueness -0.375, crests at "
                             "Y = 118 mm");
    EXPECT_EQ(page.facts.at("Profiles with a pose"), (ReadCell{"2 of 3", "bad"}));
    EXPECT_EQ(page.facts.at("Largest rms residual of a profile"), (ReadCell{"0.034 mm", ""}));
    EXPECT_EQ(page.facts.at("Largest standard deviation of an angle"), (ReadCell{"0.053\u00b0", ""}));
    EXPECT_EQ(page.facts.at("Sensor"), (ReadCell{"at larger y than the crests", ""}));
    EXPECT_EQ(page.facts.at("Outliers"), (ReadCell{"1", ""}));
    EXPECT_EQ(page.facts.at("Flanks off the object"), (ReadCell{"1 of 8", "bad"}));
    EXPECT_EQ(page.warnings, (QStringList{"No result: 'x' is damaged.", "Warning: w1"}));
    ASSERT_EQ(page.tables.size(), 3u);
    const ReadTable &pose = page.tables[0], &flanks = page.tables[1], &profiles = page.tables[2];
    const char* const fields[] = {"x", "y", "z", "alpha", "beta", "gamma"};
    for (int i = 0; i < 6; ++i) {
        const int decimals = i < 3 ? 3 : 4;
        const QString field = fields[i];
        EXPECT_EQ(pose.row(size_t(i)),
                  (QStringList{field, i < 3 ? "mm" : "degrees", text(json["pose"][field], decimals),
                               text(json["uncertainty"][field], decimals), text(json["deviation"][field], decimals),
                               text(json["largest"][field], decimals)})
                      .join('|'));
        const QString header = field + (i < 3 ? ", mm" : ", degrees");
        for (int profile : {0, 2}) {
            EXPECT_EQ(profiles.at(size_t(profile), header).text,
                      text(json["profiles"][profile]["pose"][field], 3) + QStringLiteral(" \u00b1 ") +
                          text(json["profiles"][profile]["uncertainty"][field], 3));
        }
        EXPECT_EQ(profiles.at(1, header).text, kDash);
    }
    EXPECT_EQ(profiles.at(0, "rms, mm").text + profiles.at(1, "rms, mm").text, "0.021" + kDash);
    EXPECT_EQ(profiles.at(0, "fault"), (ReadCell{"none", "faint"}));
    EXPECT_EQ(profiles.at(1, "fault"), (ReadCell{json["profiles"][1]["fault"].toString(), "bad"}));
    for (int i = 0; i < 8; ++i) {
        const QJsonValue flank = json["flanks"][i];
        EXPECT_EQ(
            flanks.row(size_t(i)),
            (QStringList{flank["flank"].toString(), QString::number(flank["points"].toInt()), text(flank["mean"], 3),
                         text(flank["uncertainty"], 3), text(flank["rms"], 3), text(flank["largest"], 3)})
                .join('|'));
        EXPECT_EQ(flanks.at(size_t(i), "mean residual, mm").tone, i == 5 ? "bad" : "good");
        EXPECT_EQ(flank["isOff"].toBool(), i == 5);
    }
    EXPECT_EQ(page.headings.mid(3), (QStringList{"a.bin", "c.bin"})) << "nothing is drawn of a profile without points";
    EXPECT_EQ(page.paragraphs.last(), "KxMath 7.8.9.");
}

TEST(CalibrationPage, DrawsProfileAndResiduals) {
    const QJsonObject json = jsonOf(result());
    const ReadPage page = readPage(kxreport::calibrationReport(result()));
    const ReadPlot profile = page.plot("Profile c.bin"), residuals = page.plot("Residuals of c.bin");
    const QJsonValue drawn = json["pictures"]["profiles"][2];
    profile.expectPoints("other points", {points(drawn, -1.0).at(8)}); // y towards the sensor, which is above
    profile.expectPoints("outliers", {points(drawn, -1.0).at(9)});
    EXPECT_EQ(profile.yLabel, "-y, mm (towards the sensor)");
    EXPECT_LT(profile.unitsPerPixel.y(), 0.0);
    std::vector<QPointF> onFlanks = points(drawn, -1.0);
    onFlanks.resize(8);
    std::vector<QPointF> shown, off;
    for (const ReadItem& item : profile.items) {
        if (item.colour != profile.legend.at("other points").second &&
            item.colour != profile.legend.at("outliers").second) {
            shown.insert(shown.end(), item.points.begin(), item.points.end());
        }
    }
    ASSERT_EQ(shown.size(), 8u);
    for (size_t i = 0; i < 8; ++i) {
        profile.expectNear(shown[i], onFlanks[i]);
        off.push_back({onFlanks[i].x(), drawn["residual"][int(i)].toDouble()});
    }
    // The ridges in front of and behind their crests; the oblique one has colours of its own.
    residuals.expectPoints("straight, before crest", {off[0], off[2], off[4]});
    residuals.expectPoints("straight, behind crest", {off[1], off[3], off[5]});
    residuals.expectPoints("oblique, before crest", {off[6]});
    residuals.expectPoints("oblique, behind crest", {off[7]});
    residuals.expectNear(residuals.items.at(0).points.at(0), {residuals.items[0].points[0].x(), 0.0});
}

TEST(CalibrationPage, SaysWhatIsMissing) {
    CalibrationResult r = result();
    r.task.placement = 1; // does not find y
    r.average.pose.y = kNaN;
    r.flanks[5].mean = 0.0;
    r.profiles.erase(r.profiles.begin() + 1);
    const ReadPage page = readPage(kxreport::calibrationReport(r));
    EXPECT_EQ(page.tables.at(0).row(1), "y, as given|mm|not known|||");
    EXPECT_EQ(page.tables.at(0).row(2).section('|', 0, 2), "y by the object|mm|77.063");
    EXPECT_EQ(page.facts.at("Profiles with a pose"), (ReadCell{"2 of 2", "good"}));
    EXPECT_EQ(page.facts.at("Flanks off the object"), (ReadCell{"0 of 8", "good"}));
    r.average.largest = {};
    r.flanks[3] = {};
    const ReadPage partly = readPage(kxreport::calibrationReport(r));
    EXPECT_EQ(partly.tables.at(0).at(0, "largest difference from the mean").text, kDash);
    EXPECT_EQ(partly.facts.at("Flanks off the object"), (ReadCell{"0 of 7", ""}));
    EXPECT_EQ(partly.tables.at(1).at(3, "mean residual, mm"), (ReadCell{kDash, ""}));
    r.average.fault = "The profiles are not of one pose";
    r.profiles[0].fault = "shows nothing";
    r.profiles.resize(7, r.profiles[1]);
    const ReadPage faulty = readPage(kxreport::calibrationReport(r));
    EXPECT_EQ(faulty.tables.size(), 1u) << "no pose, no flanks";
    EXPECT_TRUE(faulty.warnings.contains("No result: The profiles are not of one pose."));
    EXPECT_TRUE(faulty.warnings.contains("No result: The profile shows nothing."));
    EXPECT_TRUE(faulty.paragraphs.contains("The first 5 profiles are drawn."));
    EXPECT_EQ(faulty.plots.size(), 9u) << "one drawing without residuals, four with them";
    r.average.fault.clear();
    r.average.profiles = 0;
    for (ProfilePose& profile : r.profiles) {
        profile = {profile.name, "shows nothing"};
    }
    const ReadPage none = readPage(kxreport::calibrationReport(r));
    EXPECT_TRUE(none.warnings.contains("No result: none of 7 profiles has a pose."));
    EXPECT_EQ(none.facts.at("Largest rms residual of a profile"), (ReadCell{kDash, ""}));
    EXPECT_EQ(none.facts.at("Largest standard deviation of an angle"), (ReadCell{kDash, ""}));
    EXPECT_EQ(none.facts.at("Flanks off the object"), (ReadCell{"not judged", "bad"}));
}

} // namespace
