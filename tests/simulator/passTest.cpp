// Simulated passes through the library: every wheel is found, none is invented, distances agree with the truth.
#include "simulator/passSupport.h"

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

} // namespace
