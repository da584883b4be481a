// The measures of wheels from passes, by stations that see less or more of them.
#include "tools/study/studies.h"
#include "tools/tables/trueMeasures.h"

#include "simulator/random.h"
#include "simulator/simulation.h"
#include "simulator/train.h"

#include <KxInspect/Train.h>

#include <QtCore/QTemporaryDir>

#include <array>
#include <cmath>
#include <iterator>
#include <string>
#include <utility>

namespace kxstudy {

namespace {

using namespace KxInspect;

/// How far a pose may be off, with 95 %: what `kxmath calibrate` finds of one profile with a noise of 0.02 mm (the table of
/// docs/calibration.md).
constexpr double kPlaceUncertainty = 0.037; // mm
constexpr double kAngleUncertainty = 0.0099; // degrees
constexpr double kNormal95 = 1.959964;

constexpr int kTimes = 4; // of passes at each station: the time that six sensors take

struct Layout {
    const char* name;
    std::size_t sensors; ///< the first ones
    bool hasIntervals; ///< that hold the poses: 96 turned wheels for each measured one with three sensors
};

constexpr std::array<Layout, 3> kLayouts = {{{"2 sensors", 2, true}, {"4 sensors", 4, true}, {"6 sensors", 6, false}}};

kxsim::Parameters parametersOf(int station, const PassCauses& causes) {
    using kxsim::SensorPlace;
    kxsim::Parameters p;
    p.standOff = 130.0 + 10.0 * station;
    p.alpha = -42.0 + 2.0 * station;
    p.yawSpread = 1.0;
    p.treadDirt = causes.dirt ? 0.1 : 0.0;
    p.windowDirt = causes.dirt ? 0.03 : 0.0;
    p.treadWear = 2.0;
    p.flangeWear = 3.0;
    p.levelMargin = 14.0; // the level line leaves the tape circles of worn wheels below it
    p.layout = {{101, true, SensorPlace::Inner, 0.0},   {102, false, SensorPlace::Inner, 0.0},
                {103, true, SensorPlace::Field, 300.0}, {104, false, SensorPlace::Field, 300.0},
                {105, true, SensorPlace::Inner, 600.0}, {106, false, SensorPlace::Inner, 600.0}};
    return p;
}

kxsim::Parameters passAt(int station, int pass, const PassCauses& causes) {
    kxsim::Parameters p = parametersOf(station, causes);
    p.seed = 7;
    p.pass = 1 + station * kTimes + pass;
    p.cars = kParts / 2;
    p.bogies = 1;
    p.speed = kxsim::Random({3000, static_cast<std::uint64_t>(p.pass)}).uniform(5.0, 25.0);
    return p;
}

/// The settings of a station whose sensors were calibrated: the same errors in all of its passes.
StationSettings calibrated(StationSettings settings, int station) {
    kxsim::Random random({4000, static_cast<std::uint64_t>(station)});
    const auto off = [&](double uncertainty) { return random.normal() * uncertainty / kNormal95; };
    for (SensorSettings& sensor : settings.sensors) {
        sensor.poseUncertainty = PoseUncertainty{kPlaceUncertainty, kPlaceUncertainty, kPlaceUncertainty,
                                                 kAngleUncertainty, kAngleUncertainty, kAngleUncertainty};
        for (double* const value : {&sensor.origin->x, &sensor.origin->y, &sensor.origin->z}) {
            *value += off(kPlaceUncertainty);
        }
        for (double* const value : {&sensor.angles->alpha, &sensor.angles->beta, &sensor.angles->gamma}) {
            *value += off(kAngleUncertainty);
        }
    }
    return settings;
}

double numberOf(const std::optional<float>& value) {
    return value ? static_cast<double>(*value) : std::nan("");
}

/// The values of a layout: the distance, those of kPassMeasureInfos, the difference of the diameters of an axle.
struct LayoutValues {
    explicit LayoutValues(const Layout& layout) : hasIntervals(layout.hasIntervals) {
        const auto add = [&](const std::string& name, double tolerance) {
            values.push_back({"train", name + ", " + layout.name, "mm", tolerance, 3});
        };
        add("distance of the backs", 2.0);
        for (const PassMeasureInfo& info : kPassMeasureInfos) {
            add(info.title, 1.0);
        }
        add("difference of the diameters of an axle", 1.0);
    }

    void add(int station, const kxsim::Train& train, const PassResult& result) {
        for (int part = 0; part < kParts; ++part) {
            const auto number = static_cast<std::size_t>(part);
            const kxsim::WheelPair& truth = train.pairs[number];
            const bool isPaired = result.pairs.size() == static_cast<std::size_t>(kParts);
            const WheelPair pair = isPaired ? result.pairs[number] : WheelPair{};
            values.front().readings.push_back(
                {part, station, static_cast<double>(pair.distance), truth.backToBack, pair.interval});
            const PassWheelMeasures none;
            const auto wheelOf = [&](std::size_t side) -> const PassWheelMeasures& {
                const std::size_t at = 2 * number + side;
                return isPaired && at < result.wheels.size() ? result.wheels[at] : none;
            };
            for (const PassMeasureInfo& info : kPassMeasureInfos) {
                const PassValue& value = wheelOf(0)[info.measure];
                values[1 + static_cast<std::size_t>(info.measure)].readings.push_back(
                    {part, station, numberOf(value.value), kxtables::trueMeasure(truth.wheels[0], info.measure),
                     hasIntervals ? value.interval : Interval{}});
            }
            values.back().readings.push_back(
                {part, station,
                 numberOf(wheelOf(0)[PassMeasure::Diameter].value) - numberOf(wheelOf(1)[PassMeasure::Diameter].value),
                 truth.wheels[0].shape.diameter - truth.wheels[1].shape.diameter});
        }
    }

    bool hasIntervals;
    std::vector<StudiedValue> values;
};

void studyStation(int station, const Report& report, const PassCauses& causes, std::vector<LayoutValues>& layouts) {
    const QTemporaryDir folder;
    for (int pass = 0; pass < kTimes; ++pass) {
        report("station " + std::to_string(station + 1) + ", pass " + std::to_string(pass + 1));
        const kxsim::Parameters p = passAt(station, pass, causes);
        kxsim::simulatePass(p, folder.path(), {});
        const kxsim::Train train = kxsim::makeTrain(p);
        const StationSettings asSimulated =
            readStationSettings(folder.filePath(QStringLiteral("settings.ini")).toStdString());
        const StationSettings all = causes.poses ? calibrated(asSimulated, station) : asSimulated;
        std::vector<std::string> recordings;
        for (int i = 1; i <= kxsim::sensorsOf(p); ++i) {
            recordings.push_back(
                folder.filePath(QStringLiteral("train_%1.bin").arg(kxsim::serialOf(p, i))).toStdString());
        }
        for (std::size_t i = 0; i < layouts.size(); ++i) {
            StationSettings settings = all;
            settings.sensors.resize(kLayouts[i].sensors);
            for (SensorSettings& sensor : settings.sensors) {
                if (!layouts[i].hasIntervals) { // the measures stay as they are
                    sensor.poseUncertainty.reset();
                }
            }
            const std::vector<std::string> used(recordings.begin(),
                                                recordings.begin() + static_cast<std::ptrdiff_t>(kLayouts[i].sensors));
            layouts[i].add(station, train, measurePass(used, settings));
        }
    }
}

} // namespace

std::vector<StudiedValue> studyPasses(const Report& report, const PassCauses& causes) {
    std::vector<LayoutValues> layouts(kLayouts.begin(), kLayouts.end());
    for (LayoutValues& layout : layouts) {
        layout.hasIntervals = layout.hasIntervals && causes.dirt && causes.poses; // for some causes nobody counts them
    }
    for (int station = 0; station < kStations; ++station) {
        studyStation(station, report, causes, layouts);
    }
    std::vector<StudiedValue> all;
    for (LayoutValues& layout : layouts) {
        std::move(layout.values.begin(), layout.values.end(), std::back_inserter(all));
    }
    return all;
}

} // namespace kxstudy
