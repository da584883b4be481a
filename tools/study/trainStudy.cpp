// Passes of one train at three stations: speeds, lateral shifts, yaw, dirt and noise differ from pass to pass.
#include "tools/study/studies.h"

#include "simulator/random.h"
#include "simulator/simulation.h"

#include <KxInspect/StationSetup.h>
#include <KxInspect/Train.h>

#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <utility>

namespace kxstudy {

namespace {

constexpr double kGaugeError = 0.03; // mm, standard deviation of the distances that a station is set up with
constexpr double kFlangeHeight = 28.0; // mm, nearly; the radius of the tread need not be exact
constexpr double kFlats[] = {25.0, 30.0, 40.0, 50.0, 60.0}; // mm, of the first wheels of side 1

QJsonArray pairsOf(const QString& folder) {
    QFile file(folder + QStringLiteral("/truth.json"));
    if (!file.open(QIODevice::ReadOnly)) {
        std::fprintf(stderr, "The truth of a pass cannot be read.\n");
        std::exit(1);
    }
    return QJsonDocument::fromJson(file.readAll()).object()[QStringLiteral("pairs")].toArray();
}

std::vector<std::string> recordingsIn(const QString& folder) {
    return {(folder + QStringLiteral("/train_101.bin")).toStdString(),
            (folder + QStringLiteral("/train_102.bin")).toStdString()};
}

/// A station with the settings that its own set-up gave.
struct Station {
    kxsim::Parameters parameters;
    KxInspect::StationSettings settings;
    KxInspect::DefectSettings defects;
};

/// The sensors of each station stand in another way and are not quite alike.
kxsim::Parameters parametersOf(int number) {
    kxsim::Parameters p;
    p.standOff = 130.0 + 10.0 * number;
    p.alpha = -42.0 + 2.0 * number;
    p.turn1 = 0.8 - 0.6 * number;
    p.turn2 = -0.5 + 0.7 * number;
    p.along1 = 15.0 * number;
    p.along2 = -10.0 * number;
    p.yawSpread = 1.0;
    p.treadDirt = 0.1;
    p.windowDirt = 0.03;
    return p;
}

Station setUp(int number, const QString& folder) {
    Station station;
    station.parameters = parametersOf(number);
    kxsim::Parameters train = station.parameters;
    train.seed = 1000 + static_cast<std::uint64_t>(number);
    kxsim::simulatePass(train, folder, {});
    KxInspect::KnownPass known;
    known.recordings = recordingsIn(folder);
    kxsim::Random random({2000, static_cast<std::uint64_t>(number)});
    for (const QJsonValue pair : pairsOf(folder)) {
        known.distances.push_back(pair[QStringLiteral("backToBack")].toDouble() + kGaugeError * random.normal());
    }
    KxInspect::FitOptions options;
    options.withTreads = true;
    const KxInspect::StationFit fit = fitStation({known}, options);
    if (!fit.hasSettings()) {
        std::fprintf(stderr, "Station %d cannot be set up: %s.\n", number, fit.fault.c_str());
        std::exit(1);
    }
    station.settings = settingsOf(fit);
    const std::string file = (folder + QStringLiteral("/defects-fitted.ini")).toStdString();
    storeFit(file, fit, KxInspect::SettingsKind::Defects);
    station.defects = KxInspect::readDefectSettings(file);
    return station;
}

/// The train of the study as it passes a station once.
kxsim::Parameters passAt(const Station& station, int stationNumber, int pass) {
    kxsim::Parameters p = station.parameters;
    p.seed = 7;
    p.pass = 1 + stationNumber * kPasses + pass;
    p.cars = kParts / 2;
    p.bogies = 1;
    p.speed = kxsim::Random({3000, static_cast<std::uint64_t>(p.pass)}).uniform(5.0, 25.0);
    int pair = 0;
    for (const double length : kFlats) {
        p.defects.push_back({kxsim::Defect::Kind::Flat, ++pair, 1, length, 0.0});
    }
    return p;
}

double depthOf(const QJsonValue& wheel) {
    const QJsonArray defects = wheel[QStringLiteral("defects")].toArray();
    return defects.isEmpty() ? std::nan("") : defects[0][QStringLiteral("depth")].toDouble();
}

/// Whether a flat passes the seen part: successive profiles, as many as the settings ask for, show it deeper than what
/// counts. The middles of the flats stand on the rail at the origin of the track; before a sensor that is `along` farther
/// the wheel has rolled on by as much.
bool passesSeenPart(const KxInspect::PassWheel& wheel, double depth, double along, int profiles) {
    if (!wheel.roundness) {
        return true; // not compared: it counts as not found
    }
    const double radius = static_cast<double>(wheel.roundness->flangeRadius) - kFlangeHeight;
    int deep = 0;
    int last = 0;
    for (const KxInspect::RadiusDeviation& profile : wheel.roundness->radii) {
        const double fromAxle = static_cast<double>(profile.place);
        const double fromMiddle = fromAxle - radius * std::asin(fromAxle / radius) + along;
        const bool isDeep =
            depth - fromMiddle * fromMiddle / (2.0 * radius) > static_cast<double>(wheel.roundness->limit);
        deep = !isDeep ? 0 : profile.profile == last + 1 ? deep + 1 : 1;
        last = profile.profile;
        if (deep >= profiles) {
            return true;
        }
    }
    return false;
}

} // namespace

std::vector<StudiedValue> studyTrain(const Report& report) {
    StudiedValue distance = {"train", "distance of the backs", "mm", 2.0, 3};
    StudiedValue yaw = {"train", "yaw of the wheelset", "mrad", 2.0, 3};
    StudiedValue flat = {"train", "how far flats of 25 to 60 mm that pass the seen part are off the circle", "mm", 1.0,
                         3};
    int outside = 0;
    int foundOutside = 0;
    for (int number = 0; number < kStations; ++number) {
        const QTemporaryDir folder;
        const Station station = setUp(number, folder.path());
        for (int pass = 0; pass < kPasses; ++pass) {
            report("train: station " + std::to_string(number + 1) + ", pass " + std::to_string(pass + 1));
            kxsim::simulatePass(passAt(station, number, pass), folder.path(), {});
            KxInspect::PassOptions options;
            options.defects = station.defects;
            const KxInspect::PassResult result = measurePass(recordingsIn(folder.path()), station.settings, options);
            const QJsonArray pairs = pairsOf(folder.path());
            for (int i = 0; i < kParts; ++i) {
                const QJsonValue truth = pairs[i];
                const bool isPaired = result.pairs.size() == static_cast<std::size_t>(kParts);
                const KxInspect::WheelPair pair =
                    isPaired ? result.pairs[static_cast<std::size_t>(i)] : KxInspect::WheelPair{};
                distance.readings.push_back({i, number, static_cast<double>(pair.distance),
                                             truth[QStringLiteral("backToBack")].toDouble(), pair.interval});
                yaw.readings.push_back({i, number, static_cast<double>(pair.yaw),
                                        truth[QStringLiteral("yaw")].toDouble(), pair.yawInterval});
                const double depth = depthOf(truth[QStringLiteral("wheels")][0]);
                if (std::isnan(depth)) {
                    continue;
                }
                const KxInspect::PassWheel* const wheel = isPaired ? result.wheelOf(pair, 0) : nullptr;
                const bool isFound = wheel != nullptr && wheel->roundness && wheel->roundness->isOut;
                if (wheel != nullptr &&
                    !passesSeenPart(*wheel, depth, station.parameters.along1, station.defects.limits.radiusProfiles)) {
                    ++outside;
                    foundOutside += isFound ? 1 : 0;
                    continue;
                }
                flat.readings.push_back(
                    {i, number, isFound ? static_cast<double>(wheel->roundness->largest) : std::nan(""), depth});
            }
        }
    }
    report("train: " + std::to_string(outside) + " flats lie outside of the seen part, of them " +
           std::to_string(foundOutside) + " found out of round");
    return {std::move(distance), std::move(yaw), std::move(flat)};
}

} // namespace kxstudy
