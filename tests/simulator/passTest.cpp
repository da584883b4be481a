// Simulated passes through the library: every wheel is found, none is invented, distances agree with the truth.
#include "simulator/passSupport.h"

#include <numeric>

#include <gtest/gtest.h>

using namespace simulator_test;
using kxsim::Parameters;

namespace {

void expectTruthIsFound(const Pass& pass, int mode, double tolerance) {
    const qsizetype pairs = pass.pairs().size();
    QSettings settings(pass.path("settings.ini"), QSettings::IniFormat);
    for (const int sensor : {1, 2}) {
        std::vector<int> starts;
        ASSERT_EQ(pass.detect(sensor, mode, settings, starts), pairs) << "sensor " << sensor;
        for (qsizetype i = 0; i < pairs; ++i) {
            EXPECT_NEAR(starts[static_cast<std::size_t>(i)], pass.wheel(i, sensor)["firstRecord"].toInt() + 1, 1);
        }
    }
    std::vector<float> distances(static_cast<std::size_t>(pairs));
    ASSERT_TRUE(METRO_calcWheelsDistInTrain(pass.recording(1), pass.recording(2), static_cast<int>(pairs), &settings,
                                            distances.data()));
    for (qsizetype i = 0; i < pairs; ++i) {
        EXPECT_NEAR(static_cast<double>(distances[static_cast<std::size_t>(i)]),
                    pass.pairs().at(i)["backToBack"].toDouble(), tolerance)
            << "pair " << i + 1;
    }
}

TEST(SimulatedPass, DefaultsAreFoundInEitherMode) {
    const Pass pass{Parameters{}};
    ASSERT_EQ(pass.pairs().size(), 8);
    expectTruthIsFound(pass, 1, 0.1);
    expectTruthIsFound(pass, 3, 0.1);
}

TEST(SimulatedPass, VariantsAreFound) {
    const struct {
        const char* desc;
        void (*change)(Parameters&);
        double tolerance = 0.1;
    } cases[] = {
        {"clouds", [](Parameters& p) { p.records = kxsim::RecordKind::Cloud; }},
        {"far off the middle", [](Parameters& p) { p.lateralSpread = 4, p.levelMargin = 20, p.noise = 0.1; }},
        {"many faults", [](Parameters& p) { p.missing = p.quantum = 0.05, p.spikes = 0.01; }},
        {"worn", [](Parameters& p) { p.wear = 60, p.flangeWear = 8; }},
        {"another pose", [](Parameters& p) { p.beta = 85, p.gamma = 175, p.standOff = 160, p.hasEqualAngles = false; }},
        {"only wheels", [](Parameters& p) { p.hasRails = p.hasBackground = p.hasObjects = false, p.baseline = 0; }},
        // The sums of the fit are floats; they leave some micrometres.
        {"no disturbance", [](Parameters& p) { p.noise = p.quantum = p.missing = p.spikes = 0; }, 0.005},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        Parameters p = quickPass(2);
        c.change(p);
        expectTruthIsFound(Pass(p), 1, c.tolerance);
    }
}

TEST(SimulatedPass, WheelsOutOfRangeHaveNoRecords) {
    Parameters p = quickPass(4);
    p.maxRange = 90;
    const Pass pass(p);
    for (const char* const key : {"firstRecord", "lastRecord"}) {
        EXPECT_EQ(pass.wheel(2, 1)[key].toInt(-1), 0) << key;
    }
}

TEST(SimulatedPass, SameSeedSameBytes) {
    const QStringList files = {"train_101.bin", "train_102.bin", "truth.json", "settings.ini", "defects.ini"};
    const Pass first(quickPass(1));
    const Pass again(quickPass(1));
    const Pass other(quickPass(2));
    for (const QString& file : files) {
        EXPECT_FALSE(first.read(file).isEmpty()) << file.toStdString();
        EXPECT_EQ(first.read(file), again.read(file)) << file.toStdString();
        EXPECT_EQ(first.read(file) == other.read(file), file.endsWith(".ini"));
    }
    EXPECT_NE(first.read(files[0]), first.read(files[1])) << "the sensors have noise of their own";
}

TEST(SimulatedPass, AnotherPassOfTheSameTrain) {
    Parameters p = quickPass(3);
    p.yawSpread = 1.0;
    const Pass first(p);
    p.pass = 4;
    const Pass other(p);
    p.pass = 5;
    const Pass third(p);
    ASSERT_EQ(first.pairs().size(), 4);
    for (qsizetype i = 0; i < 4; ++i) {
        const auto same = [&](const char* key) {
            return first.pairs()[i].toObject()[QLatin1String(key)] == other.pairs()[i].toObject()[QLatin1String(key)];
        };
        EXPECT_TRUE(same("backToBack") && same("behindFirst"));
        EXPECT_EQ(first.wheel(i, 2)["diameter"], other.wheel(i, 2)["diameter"]);
        EXPECT_FALSE(same("lateralShift") || same("yaw"));
        EXPECT_NE(third.pairs()[i].toObject()["lateralShift"], other.pairs()[i].toObject()["lateralShift"]);
    }
    EXPECT_NE(other.read("train_101.bin"), third.read("train_101.bin"));
    expectTruthIsFound(other, 1, 0.2);
}

TEST(SimulatedPass, DirtHidesAndRaises) {
    Parameters p = quickPass(3);
    p.noise = p.quantum = p.missing = p.spikes = 0;
    p.hasBackground = p.hasObjects = p.hasRails = false;
    const auto clean = Pass(p).profiles(1);
    Parameters dirty = p;
    dirty.windowDirt = 0.25;
    const auto pointsOf = [](const std::deque<KxProfileZ>& profiles) {
        return std::accumulate(profiles.begin(), profiles.end(), qsizetype(0),
                               [](qsizetype sum, const KxProfileZ& profile) { return sum + profile.points.size(); });
    };
    const qsizetype before = pointsOf(clean);
    const qsizetype after = pointsOf(Pass(dirty).profiles(1));
    EXPECT_GT(after, before / 2);
    EXPECT_LT(after, before * 9 / 10);
    dirty = p;
    dirty.treadDirt = 0.5;
    const auto raised = Pass(dirty).profiles(1);
    float most = 0.0f, least = 0.0f;
    for (size_t i = 0; i < clean.size(); ++i) {
        ASSERT_EQ(raised[i].points.size(), clean[i].points.size());
        for (qsizetype k = 0; k < clean[i].points.size(); ++k) {
            const float nearer = clean[i].points[k].y - raised[i].points[k].y;
            most = std::max(most, nearer);
            least = std::min(least, nearer);
        }
    }
    EXPECT_GT(most, 0.3f);
    EXPECT_LT(most, 0.5f / 0.3f);
    EXPECT_GE(least, 0.0f);
}

} // namespace
