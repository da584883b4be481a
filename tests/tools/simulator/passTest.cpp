// Simulated passes through the library: every wheel is found, none is invented, distances agree with the truth.
#include "passSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

using namespace simulator_test;
using kxsim::Parameters;

namespace {

void expectTruthIsFound(const Pass& pass, int mode, const char* desc) {
    ASSERT_TRUE(pass.fault.isEmpty()) << pass.fault.toStdString();
    const qsizetype pairs = pass.pairs().size();
    QSettings settings(pass.path("settings.ini"), QSettings::IniFormat);
    for (const int sensor : {1, 2}) {
        std::vector<int> starts;
        ASSERT_EQ(pass.detect(sensor, mode, settings, &starts), pairs) << desc << ", sensor " << sensor;
        for (qsizetype i = 0; i < pairs; ++i) {
            const int first = pass.wheel(i, sensor)["firstRecord"].toInt();
            EXPECT_GE(starts[static_cast<std::size_t>(i)], first) << desc;
            EXPECT_LE(starts[static_cast<std::size_t>(i)], first + 2) << desc;
        }
    }
    std::vector<float> distances(static_cast<std::size_t>(pairs));
    ASSERT_TRUE(KxMath::METRO_calcWheelsDistInTrain(pass.recording(1), pass.recording(2), static_cast<int>(pairs),
                                                    &settings, distances.data()));
    for (qsizetype i = 0; i < pairs; ++i) {
        const double truth = pass.pairs()[i].toObject()["backToBack"].toDouble();
        const double found = static_cast<double>(distances[static_cast<std::size_t>(i)]);
        EXPECT_NEAR(found, truth, 0.1) << desc << ", pair " << i + 1;
    }
}

} // namespace

TEST(SimulatedPass, DefaultsAreFoundInEitherMode) {
    const Pass pass{Parameters{}};
    ASSERT_EQ(pass.pairs().size(), 8);
    expectTruthIsFound(pass, 1, "defaults");
    expectTruthIsFound(pass, 3, "defaults, mode 3");
    EXPECT_LT(QFileInfo(pass.path(pass.recording(1))).size(), 15e6);
}

struct Variant {
    const char* desc;
    void (*change)(Parameters&);
};

class PassVariants : public testing::TestWithParam<Variant> {};

TEST_P(PassVariants, AreFound) {
    Parameters p = quickPass(2);
    GetParam().change(p);
    expectTruthIsFound(Pass(p), 1, GetParam().desc);
}

INSTANTIATE_TEST_SUITE_P(Simulated, PassVariants,
                         testing::Values(Variant{"otherSeed", [](Parameters& p) { p.seed = 3; }},
                                         Variant{"clouds", [](Parameters& p) { p.records = kxsim::RecordKind::Cloud; }},
                                         Variant{"doubleNoise", [](Parameters& p) { p.noise = 0.1; }},
                                         Variant{"farOffTheMiddle",
                                                 [](Parameters& p) {
                                                     p.lateralSpread = 4.0;
                                                     p.levelMargin = 20.0;
                                                     p.noise = 0.1;
                                                 }},
                                         Variant{"manyFaults",
                                                 [](Parameters& p) {
                                                     p.missing = 0.05;
                                                     p.spikes = 0.01;
                                                     p.quantum = 0.05;
                                                 }},
                                         Variant{"worn",
                                                 [](Parameters& p) {
                                                     p.wear = 60.0;
                                                     p.flangeWear = 8.0;
                                                 }},
                                         Variant{"anotherPose",
                                                 [](Parameters& p) {
                                                     p.beta = 85.0;
                                                     p.gamma = 175.0;
                                                     p.standOff = 160.0;
                                                     p.hasEqualAngles = false;
                                                 }},
                                         Variant{"onlyWheels",
                                                 [](Parameters& p) {
                                                     p.hasRails = p.hasBackground = p.hasObjects = false;
                                                     p.baseline = 0.0;
                                                 }}),
                         [](const auto& info) { return std::string(info.param.desc); });

TEST(SimulatedPass, WithoutDisturbanceOnlyRoundingIsLeft) {
    Parameters p = quickPass(1);
    p.noise = p.quantum = p.missing = p.spikes = 0.0;
    const Pass pass(p);
    QSettings settings(pass.path("settings.ini"), QSettings::IniFormat);
    ASSERT_EQ(pass.detect(1, 1, settings), 4);
    ASSERT_EQ(pass.detect(2, 1, settings), 4);
    float distances[4];
    ASSERT_TRUE(KxMath::METRO_calcWheelsDistInTrain(pass.recording(1), pass.recording(2), 4, &settings, distances));
    for (int i = 0; i < 4; ++i) {
        // The sums of the fit are floats; they leave some micrometres.
        EXPECT_NEAR(static_cast<double>(distances[i]), pass.pairs()[i].toObject()["backToBack"].toDouble(), 0.005);
    }
}

TEST(SimulatedPass, BracketsBeforeTheLevelLineAreTooShortForWheels) {
    const Pass pass(quickPass(1));
    QSettings settings(pass.path("settings.ini"), QSettings::IniFormat);
    settings.setValue(QStringLiteral("minProfsInWheel"), 1);
    EXPECT_EQ(pass.detect(1, 1, settings), 6) << "4 wheels and a bracket behind each of the 2 bogies";
}

TEST(SimulatedPass, ShowsEquipmentBehindTheLevelLine) {
    Parameters p = quickPass(1);
    const Pass with(p);
    p.hasObjects = false;
    const Pass without(p);
    EXPECT_GT(with.profiles(1).size(), without.profiles(1).size() + 20);
}

TEST(SimulatedPass, SameSeedSameBytes) {
    const QStringList files = {"train_101.bin", "train_102.bin", "settings.ini", "defects.ini", "truth.json"};
    const Pass first(quickPass(1));
    const Pass again(quickPass(1));
    const Pass other(quickPass(2));
    for (const QString& file : files) {
        EXPECT_FALSE(readAll(first.path(file)).isEmpty()) << file.toStdString();
        EXPECT_EQ(readAll(first.path(file)), readAll(again.path(file))) << file.toStdString();
    }
    for (const QString& file : {files[0], files[1], files[4]}) {
        EXPECT_NE(readAll(first.path(file)), readAll(other.path(file))) << file.toStdString();
    }
    EXPECT_NE(readAll(first.path(files[0])), readAll(first.path(files[1]))) << "the sensors have noise of their own";
}

TEST(SimulatedPass, BothKindsOfRecordsHoldTheSamePoints) {
    Parameters p = quickPass(1);
    const Pass profiles(p);
    p.records = kxsim::RecordKind::Cloud;
    const Pass clouds(p);
    QFile file(clouds.path(clouds.recording(1)));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    float z = -1e9f;
    for (const KxMath::KxProfileZ& profile : profiles.profiles(1)) {
        KxMath::KxPointCloud<KxMath::KxPointXY> cloud;
        ASSERT_EQ(cloud.readFromFile(file), profile.points.size());
        for (qsizetype i = 0; i < cloud.points.size(); ++i) {
            ASSERT_TRUE(cloud.points[i].x == profile.points[i].x && cloud.points[i].y == profile.points[i].y);
        }
        EXPECT_GT(profile.z, z);
        z = profile.z;
    }
    EXPECT_TRUE(file.atEnd());
}
