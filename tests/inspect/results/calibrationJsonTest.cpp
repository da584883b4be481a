// A calibration as JSON and back, and its page.
#include "inspect/calibrate/shots.h"
#include "inspect/inspectSupport.h"
#include "report/calibrate/calibrationReport.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <functional>

using namespace calibration_test;

namespace {

CalibrationResult measured(int placement, bool hasSensorY, float shiftOfLast) {
    Shot shot(placement);
    Shot last(placement, 0.02, 8);
    for (Point& p : last.profile.points) { // as a sensor that was shifted sees it
        p.x += shiftOfLast;
    }
    if (hasSensorY) {
        shot.task.sensorY = shot.trueY() + 0.1f;
        shot.task.side.reset();
    }
    shot.profile.points[shot.profile.points.size() / 2].y += 3.0f;
    CalibrationResult result =
        measurePoses({{"a", shot.profile}, {"f", {{{1, 2}, {3, 4}}}}, {"\u00fc", last.profile}}, shot.task);
    result.unreadable = {"'x' is damaged"};
    return result;
}

QString pageOf(const CalibrationResult& result) {
    return kxreport::calibrationReport(result);
}

} // namespace

TEST(CalibrationJson, HoldsTheResult) {
    const struct {
        const char* desc;
        int placement;
        bool hasSensorY;
        float shiftOfLast;
        bool hasPose;
        const char* reasons;
    } cases[] = {{"y found", 2, false, 0.0f, true, ""},
                 {"y given", 3, true, 0.0f, true, ""},
                 {"y not known", 1, false, 0.0f, true, "pose.y"},
                 {"not of one pose", 4, false, 1.5f, false, "pose"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        CalibrationResult result = measured(c.placement, c.hasSensorY, c.shiftOfLast);
        result.version = "7.8.9";
        ASSERT_EQ(result.average.profiles, 2);
        ASSERT_EQ(result.hasPose(), c.hasPose) << result.average.fault;
        const std::string values = toJson(result);
        const CalibrationResult withoutPictures = calibrationFromJson(values);
        EXPECT_EQ(toJson(withoutPictures), values);
        EXPECT_EQ(withoutPictures.hasPose(), c.hasPose);
        EXPECT_EQ(withoutPictures.hasY(), result.hasY() && c.hasPose);
        EXPECT_EQ(withoutPictures.average.fault, result.average.fault);
        const QJsonObject json = QJsonDocument::fromJson(QByteArray::fromStdString(values)).object();
        EXPECT_EQ(json["reasons"].toObject().keys().join(' ').toStdString(), c.reasons);
        EXPECT_EQ(json["interval"]["y"].isArray(), c.hasPose) << "of y by the object";
        EXPECT_EQ(json["flanks"][0]["interval"].isArray(), c.hasPose);
        EXPECT_EQ(json["otherPose"]["gamma"].isDouble(), c.hasPose);
        EXPECT_EQ(json["side"].toString().toStdString(), !c.hasPose ? "" : c.placement == 2 ? "larger-y" : "smaller-y");
        EXPECT_GE(json["profiles"][0]["outliers"].toInt(), c.hasPose ? 1 : 0);
        EXPECT_EQ(withoutPictures.side, result.side);

        const std::string all = toJson(result, Pictures::Included);
        const CalibrationResult read = calibrationFromJson(all);
        EXPECT_EQ(toJson(read, Pictures::Included), all);
        EXPECT_EQ(toJson(read), values) << "the pictures are one member more";
        EXPECT_EQ(pageOf(read), pageOf(result));
        EXPECT_EQ(read.task.sensorY, result.task.sensorY);
        EXPECT_EQ(read.task.side, result.task.side);
        EXPECT_EQ(read.average.fault, result.average.fault);
    }
}

TEST(CalibrationJson, WhatWasNotMeasuredIsNull) {
    CalibrationResult result;
    result.task.objectError = {0.5, 0.25, 0.125};
    result.profiles = {{}};
    result.average.profiles = 1;
    for (std::size_t flank = 1; flank < kFlankCount; ++flank) {
        result.flanks[flank] = result.profiles[0].flanks[flank] = {7, 0.25, 0.5, 0.75};
    }
    const QJsonObject json = QJsonDocument::fromJson(QByteArray::fromStdString(toJson(result))).object();
    EXPECT_EQ(json["reasons"]["largest"].toString(), "a single profile has no spread");
    EXPECT_TRUE(json["largest"]["x"].isNull() && json["pointDifference"].isNull());
    EXPECT_EQ(json["profiles"][0]["reasons"].toObject().keys().join(' '), "pose.y rms");
    EXPECT_TRUE(json["flanks"][0]["isOff"].isNull() && json["flanks"][0]["mean"].isNull());
    EXPECT_EQ(json["flanks"][0]["reason"].toString(), "no point lies on it");
    EXPECT_TRUE(json["flanks"][1]["isOff"].isBool() && json["flanks"][1]["reason"].isUndefined());
    EXPECT_EQ(toJson(calibrationFromJson(toJson(result))), toJson(result));
}

TEST(CalibrationJson, RefusesWhatIsNoResult) {
    const std::string text = toJson(measured(2, false, 0.0f), Pictures::Included);
    using Change = std::function<void(QJsonObject&)>;
    const struct {
        Change change;
        const char* key;
    } cases[] = {
        {[](QJsonObject& json) { json.remove("version"); }, "version"},
        {[](QJsonObject& json) { json["position"] = 1.5; }, "position"},
        {[](QJsonObject& json) {
             json["pose"] = QJsonObject{{"x", 1}};
         },
         "pose.y"},
        {[](QJsonObject& json) {
             json["profiles"] = QJsonArray{QJsonObject{{"name", "a"}}};
         },
         "profiles[0].moved"},
        {[](QJsonObject& json) { json["profiles"] = QJsonArray(); }, "pictures.profiles"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.key);
        QJsonObject json = QJsonDocument::fromJson(QByteArray::fromStdString(text)).object();
        c.change(json);
        const std::string changed = QJsonDocument(json).toJson().toStdString();
        inspect_test::expectError([&] { calibrationFromJson(changed); }, ErrorKind::Unsuitable, c.key);
    }
    for (const char* const flank : {"8", "-2"}) {
        std::string changed = text;
        const std::size_t firstFlank = changed.find("null", changed.find("\"flank\": [")); // a point before the flanks
        EXPECT_THROW(calibrationFromJson(changed.replace(firstFlank, 4, flank)), Error) << flank;
        EXPECT_NO_THROW(calibrationFromJson(changed.replace(firstFlank, std::string(flank).size(), "7")));
    }
}
