// Stations with a layout of their own.
#include "simulator/calibration.h"
#include "simulator/passSupport.h"

#include <KxInspect/Error.h>

#include <gtest/gtest.h>

using namespace simulator_test;
using kxsim::LayoutSensor;
using kxsim::SensorPlace;

namespace {

std::vector<LayoutSensor> layoutOf(const TempFiles& files, const QByteArray& text) {
    return kxsim::readLayout(files.write("layout.ini", text).toStdString());
}

TEST(Layout, IsReadStrictly) {
    const TempFiles files;
    const std::vector<LayoutSensor> sensors =
        layoutOf(files, "# two\n[SENSOR1]\nSN=7\nside = left\nplace=inner\nalong=-40\r\n\n[SENSOR2]\nSN=9\nside=right\n"
                        "place=field\nx=1\ny=-990.5\nz=-40\nalpha=-25\nbeta=88\ngamma=-180\n");
    ASSERT_EQ(sensors.size(), 2U);
    EXPECT_TRUE(sensors[0].isLeft && sensors[0].place == SensorPlace::Inner && !sensors[0].pose);
    EXPECT_EQ(sensors[0].along, -40.0);
    EXPECT_TRUE(!sensors[1].isLeft && sensors[1].place == SensorPlace::Field && sensors[1].serial == 9);
    ASSERT_TRUE(sensors[1].pose);
    EXPECT_EQ(sensors[1].pose->origin.y, -990.5);
    EXPECT_EQ(sensors[1].pose->beta, 88.0);

    const QByteArray good = "[SENSOR1]\nSN=7\nside=left\nplace=inner\n";
    const std::pair<QByteArray, const char*> cases[] = {
        {"", "holds no section [SENSOR1]"},
        {"[SENSOR2]\n", "line 1 has '[SENSOR2]' where [SENSOR1] is due"},
        {"SN=7\n", "line 1 has 'SN=7'"},
        {good + "[SENSOR1]\n", "line 5 has '[SENSOR1]' where [SENSOR2] is due"},
        {good + "sid=right\n", "line 5 has 'sid=right'; a sensor has SN, side"},
        {good + "along\n", "line 5 has 'along'"},
        {good + "SN=8\n", "line 5 gives 'SENSOR1/SN' for the second time"},
        {"[SENSOR1]\nside=left\nplace=inner\n", "lacks the key 'SENSOR1/SN'"},
        {"[SENSOR1]\nSN=7\nplace=inner\n", "lacks the key 'SENSOR1/side'"},
        {"[SENSOR1]\nSN=0\nside=left\n", "line 2 needs a number from 1 to 1e+09 for 'SENSOR1/SN', got '0'"},
        {"[SENSOR1]\nSN=7.5\nside=left\nplace=inner\n", "line 2 needs a whole number"},
        {"[SENSOR1]\nSN=7\nside=up\nplace=inner\n", "line 3 needs left or right for 'SENSOR1/side', got 'up'"},
        {good + "along=nan\n", "line 5 needs a number from -20000 to 20000"},
        {good + "x=1\n", "lacks the key 'SENSOR1/y'"},
        {good + "along=1\nx=1\n", "line 5 moves the usual pose, but 'SENSOR1' is given its own"},
        {good + "[SENSOR2]\nSN=7\nside=left\nplace=inner\n", "line 6 gives a serial number for the second time"},
    };
    for (const auto& [text, reason] : cases) {
        try {
            layoutOf(files, text);
            ADD_FAILURE() << text.toStdString();
        } catch (const KxInspect::Error& error) {
            EXPECT_NE(error.reason().find(reason), std::string::npos) << error.what() << "\n" << text.toStdString();
        }
    }
    EXPECT_THROW(kxsim::readLayout(files.path("gone.ini").toStdString()), KxInspect::Error);
}

TEST(Layout, EverySensorRecordsTheWheelsOfItsSide) {
    kxsim::Parameters p = quickPass(3);
    p.treadWear = 3.0;
    p.layout = {{7, false, SensorPlace::Field, 400.0},
                {9, true, SensorPlace::Inner},
                {11, true, SensorPlace::Field, -150.0},
                {12, false, SensorPlace::Inner}};
    const Pass pass(p);
    ASSERT_EQ(pass.truth["sensors"].toArray().size(), 4);
    QSettings settings(pass.path("settings.ini"), QSettings::IniFormat);
    for (const int sensor : {1, 2, 3, 4}) {
        const bool isLeft = sensor == 2 || sensor == 3;
        EXPECT_EQ(settings.value(QStringLiteral("SENSOR%1/side").arg(sensor)).toString(), isLeft ? "left" : "right");
        std::vector<int> starts;
        ASSERT_EQ(pass.detect(sensor, 1, settings, starts), pass.pairs().size()) << sensor;
        for (qsizetype i = 0; i < pass.pairs().size(); ++i) {
            const QJsonArray seen = pass.wheel(i, isLeft ? 1 : 2)["seen"].toArray();
            const auto records = std::find_if(seen.begin(), seen.end(), [&](const QJsonValue& v) {
                return v.toObject()["sensor"].toInt() == sensor;
            });
            ASSERT_NE(records, seen.end());
            EXPECT_NEAR(starts[static_cast<std::size_t>(i)], (*records).toObject()["firstRecord"].toInt() + 1, 3)
                << sensor;
        }
    }
    // A field sensor sees the front of the flange, which one between the rails cannot.
    const kxsim::Pose pose = kxsim::makePose(p, 3);
    double highest = 0.0; // mm above the lowest point of a wheel that is cut 250 mm before its axle
    for (KxProfileZ& profile : pass.profiles(3)) {
        if (std::abs(static_cast<double>(profile.z) - pose.origin.x + 250.0) < 8.0) {
            for (const KxPointXY& point : std::as_const(profile.points)) {
                const kxsim::Vec3 at = pose.toTrack(static_cast<double>(point.x), static_cast<double>(point.y));
                highest = at.y < 714.0 ? std::max(highest, at.z) : highest;
            }
        }
    }
    EXPECT_GT(highest, 55.0);
    EXPECT_LT(highest, 75.0);
}

TEST(Layout, MeasuresOfTheWheelsAreInTheTruth) {
    kxsim::Parameters p = quickPass(4);
    p.treadWear = 4.0;
    const Pass pass(p);
    const QList<QByteArray> lines = pass.read("truth.csv").trimmed().split('\n');
    ASSERT_EQ(lines.size(), 1 + 2 * pass.pairs().size());
    double deepest = 0.0;
    for (qsizetype i = 1; i < lines.size(); ++i) {
        const QList<QByteArray> fields = lines[i].split(',');
        const QJsonObject wheel = pass.wheel((i - 1) / 2, i % 2 == 1 ? 1 : 2);
        EXPECT_EQ(QString::fromLatin1(fields[4]), wheel["side"].toString());
        EXPECT_NEAR(fields[7].toDouble(), wheel["diameter"].toDouble(), 1e-4);
        EXPECT_NEAR(fields[9].toDouble(), wheel["flangeThickness"].toDouble(), 0.003);
        EXPECT_TRUE(fields[8].toDouble() >= 28.0 && fields[8].toDouble() <= 32.0) << lines[i].toStdString();
        deepest = std::max(deepest, fields[11].toDouble());
    }
    EXPECT_GT(deepest, 0.3); // mm of hollow
    EXPECT_LT(deepest, 4.0);
}

} // namespace
