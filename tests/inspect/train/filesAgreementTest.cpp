// A pass measured in memory gives what the functions of the core give that leave files: the same wheels in the same
// bytes, the same distances, the same verdicts.
#include "inspect/train/passFiles.h"
#include "inspect/train/randomPass.h"
#include "inspect/train/wheelFiles.h"
#include "simulator/passSupport.h"

#include <KxInspect/Error.h>

#include <random>

namespace {

using namespace inspect_test;
using KxInspect::PassResult;
using KxInspect::WheelPair;

/// The profile that keeps the most points below the level line, the first of equal ones; none when there is no point.
Points chosen(const std::vector<Points>& profiles, const KxLine& level) {
    Points best;
    for (const Points& points : profiles) {
        KxProfile profile;
        profile.points = points;
        profile.removeHighLevel(level);
        best = profile.points.size() > best.size() ? profile.points : best;
    }
    return best;
}

/// The distance of a pair from its files.
float distanceOverFiles(const FileDoor& files, const PassResult& result, const WheelPair& pair) {
    std::array<KxProfile, 2> best;
    for (const size_t side : {0u, 1u}) {
        const KxInspect::Line& level = result.sides[side].level;
        best[side].points = chosen(files.profiles(side, static_cast<int>(*pair.wheels[side]) + 1),
                                   KxLine(level.slope, level.intercept));
    }
    const auto reference = [&](size_t side) {
        return KxLine(result.sides[side].reference.slope, result.sides[side].reference.intercept);
    };
    const float distance =
        best[0].points.isEmpty() || best[1].points.isEmpty()
            ? kNaN
            : METRO_calcWheelsDist(best[0], best[1], reference(0), reference(1), result.baseDistance);
    return std::isfinite(distance) ? distance : kNaN;
}

/// Distances of single profiles are those of the core; those of all profiles of straight wheels are near them.
void expectSameDistances(const FileDoor& files, const PassResult& result, float tolerance) {
    for (const WheelPair& pair : result.pairs) {
        ASSERT_EQ(pair.reason.empty(), std::isfinite(pair.distance)) << pair.reason;
        if (!pair.reason.empty()) {
            continue;
        }
        const float expected = distanceOverFiles(files, result, pair);
        if (!pair.intervalReason.empty()) {
            ASSERT_EQ(exact(pair.distance), exact(expected));
        } else {
            ASSERT_NEAR(pair.distance, expected, tolerance);
        }
    }
}

/// @return the result for further looks
PassResult expectSame(const PassFiles& pass, float tolerance, const KxInspect::PassOptions& options = {}) {
    pass.writeInputs();
    PassResult result = pass.measure(options);
    const FileDoor files(pass);
    for (const size_t side : {0u, 1u}) {
        EXPECT_EQ(static_cast<int>(result.sides[side].wheels.size()), files.wheels(side));
    }
    EXPECT_EQ(differenceOf(filesIn(pass.path("memory")), files.files()), "");
    expectSameDistances(files, result, tolerance);
    return result;
}

TEST(FilesAgreement, RandomRecordings) {
    int wheels = 0, pairs = 0, unmeasured = 0;
    for (unsigned seed = 1; seed <= 60 && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE(testing::Message() << "seed " << seed);
        PassFiles pass;
        fillRandomly(seed, pass);
        const PassResult result = expectSame(pass, kInf);
        wheels += static_cast<int>(result.sides[0].wheels.size());
        pairs += result.distances();
        unmeasured += static_cast<int>(result.pairs.size()) - result.distances();
    }
    EXPECT_GT(wheels, 120);
    EXPECT_GT(pairs, 40);
    EXPECT_GT(unmeasured, 20) << "wheels without points below the line, without partner, with too few points";
}

TEST(Pass, IsJudgedByNominalAndTolerance) {
    PassFiles pass;
    fillRandomly(7, pass);
    pass.writeInputs();
    KxInspect::PassOptions options;
    options.nominal = 1352.25f;
    const PassResult found = pass.measure(options);
    int pairs = 0;
    for (size_t i = 0; i < found.pairs.size(); ++i) {
        const WheelPair& pair = found.pairs[i];
        if (!std::isfinite(pair.distance)) {
            continue;
        }
        ++pairs;
        EXPECT_EQ(pair.deviation, pair.distance - 1352.25f);
        options.tolerance = std::abs(pair.deviation); // the limit itself is within it
        EXPECT_TRUE(pass.measure(options).pairs[i].inTolerance.value());
        options.tolerance = std::nextafter(options.tolerance, 0.0f);
        EXPECT_FALSE(pass.measure(options).pairs[i].inTolerance.value());
    }
    EXPECT_GT(pairs, 0);
}

/// The verdict over each profile that the core gives, from its file.
std::vector<int> defectiveProfiles(const std::vector<Points>& profiles, const KxInspect::DefectLines& lines,
                                   const KxInspect::DefectLimits& limits) {
    std::vector<int> defective;
    for (size_t i = 0; i < profiles.size(); ++i) {
        KxProfile profile;
        profile.points = profiles[i];
        profile.removeHighLevel(KxLine(lines.high->slope, lines.high->intercept));
        profile.removeLowLevel(KxLine(lines.low->slope, lines.low->intercept));
        float minX = 0, maxX = 0, unused = 0;
        if (profile.size() < KxInspect::kFewestJudgedPoints || !profile.calcRange(&minX, &unused, &maxX, &unused)) {
            continue;
        }
        for (KxPointXY& p : profile.points) { // about the middle, where the fit keeps its digits
            p.x -= (minX + maxX) / 2.0f;
        }
        if (!METRO_detectWheelDefect(profile, 20, limits.maxDeviation, limits.pointsHigher)) {
            defective.push_back(static_cast<int>(i) + 1);
        }
    }
    return defective;
}

TEST(FilesAgreement, SimulatedPasses) {
    const struct {
        const char* desc;
        int mode;
        const char* from;
        const char* to; ///< of the settings
        void (*change)(kxsim::Parameters&);
    } cases[] = {
        {"profile records", 0, "", "", [](kxsim::Parameters&) {}},
        {"cloud sections, mode 3", 3, "", "", [](kxsim::Parameters& p) { p.records = kxsim::RecordKind::Cloud; }},
        {"no shortest wheel", 0, "minProfsInWheel=", "minProfsInWheel=0;", [](kxsim::Parameters&) {}},
        {"negative, sensitive", 3, "minPointsIn=", "minPointsIn=3;", [](kxsim::Parameters& p) { p.spikes = 0.01; }},
        {"all wheels too short", 0, "minProfsInWheel=", "minProfsInWheel=4", [](kxsim::Parameters&) {}},
        {"defects", 0, "", "", [](kxsim::Parameters& p) {
             p.defects = {{kxsim::Defect::Kind::BuildUp, 2, 1, 1.5, 0.0}, {kxsim::Defect::Kind::Flat, 3, 2, 60.0, 5.0}};
         }}};
    std::uint64_t seed = 10;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        kxsim::Parameters parameters = simulator_test::quickPass(++seed);
        parameters.serial1 = 1;
        parameters.serial2 = 2;
        parameters.points = 640;
        c.change(parameters);
        PassFiles pass;
        const TempFiles simulated;
        ASSERT_NO_THROW(kxsim::simulatePass(parameters, simulated.path("pass"), {}));
        pass.recordings = {simulated.read("pass/train_1.bin"), simulated.read("pass/train_2.bin")};
        pass.settings = simulated.read("pass/settings.ini").replace(c.from, c.to);
        pass.mode = c.mode;
        KxInspect::PassOptions options;
        options.defects = KxInspect::readDefectSettings(simulated.path("pass/defects.ini").toStdString());
        const PassResult result = expectSame(pass, 0.1f, options);
        const FileDoor files(pass);
        for (const size_t side : {0u, 1u}) {
            for (const KxInspect::PassWheel& wheel : result.sides[side].wheels) {
                KxInspect::DefectLimits limits = options.defects->limits;
                limits.maxDeviation = wheel.defects->limit; // follows the noise
                EXPECT_EQ(wheel.defects->profiles, defectiveProfiles(files.profiles(side, wheel.number),
                                                                     options.defects->sensors[side], limits));
            }
        }
    }
}

/// Cut or changed anywhere, a recording is refused with the place; up to there the wheels are those of the core.
TEST(FilesAgreement, DamagedRecordings) {
    std::mt19937 random(5);
    PassFiles whole;
    fillRandomly(7, whole);
    const auto any = [&](qsizetype end) { return static_cast<qsizetype>(random() % static_cast<unsigned>(end)); };
    int damaged = 0;
    for (int round = 0; round < 60 && !testing::Test::HasFailure(); ++round) {
        PassFiles pass;
        pass.recordings = whole.recordings;
        pass.settings = whole.settings;
        QByteArray& bytes = pass.recordings[1];
        if (round % 3 == 0) {
            bytes[any(bytes.size())] = static_cast<char>(random());
        } else {
            bytes.truncate(round % 3 == 1 ? any(60) : any(bytes.size()));
        }
        SCOPED_TRACE(testing::Message() << "round " << round << ", " << bytes.size() << " bytes");
        pass.writeInputs();
        const auto settings = KxInspect::readStationSettings(pass.settingsFile());
        QSettings store(pass.path("settings.ini"), QSettings::IniFormat);
        QFile file(pass.path("b_2.bin"));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        KxInspect::detail::WheelCollector collector(KxWheelDetectionSettings::read(store, 2), pass.mode);
        KxProfileZ record;
        int records = 0;
        for (auto kind = KxReadRecord(file, record); kind != KxNoRecord; kind = KxReadRecord(file, record)) {
            collector.add(kind, record);
            ++records;
        }
        const KxInspect::detail::RecordingFiles names(pass.recording(1));
        writeWheelFiles(pass.path("memory"), names, 2, collector);
        {
            const FileDoor files(pass, {1});
            ASSERT_EQ(static_cast<int>(collector.wheels().size()), files.wheels(1));
            ASSERT_EQ(differenceOf(filesIn(pass.path("memory")), files.files()), "");
        }
        const bool isWhole = file.atEnd() && records > 0;
        try {
            pass.measure();
            EXPECT_TRUE(isWhole);
        } catch (const KxInspect::Error& error) {
            EXPECT_FALSE(isWhole) << error.what();
            EXPECT_EQ(error.source().file, pass.recording(1));
            if (error.kind() == KxInspect::ErrorKind::Damaged) {
                ++damaged;
                EXPECT_EQ(error.place().byte, file.pos());
                EXPECT_EQ(error.place().record, records + 1);
            } else {
                EXPECT_EQ(bytes.size(), 0) << error.what();
            }
        }
    }
    EXPECT_GT(damaged, 30);
}

} // namespace
