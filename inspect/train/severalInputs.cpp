// The recordings of a pass from several sensors, of which some may fail.
#include "inspect/train/severalInputs.h"

#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/identity/fileIdentity.h"
#include "inspect/settings/iniFile.h"
#include "inspect/train/sensorLookUp.h"

#include <KxInspect/Error.h>

#include <QtCore/QDir>

#include <algorithm>
#include <array>
#include <utility>

namespace KxInspect::detail {

namespace {

const SensorSettings* sensorByName(const std::string& path, const StationSettings& settings) {
    return findSensor(settings, RecordingFiles(path).parts.serial);
}

/// Whether a sensor can measure distances.
bool isBetweenRails(const SensorSettings& sensor, const StationSettings& settings) {
    return !isOnFieldSide(sensor, settings);
}

SideInput openOrNote(const std::string& path) {
    try {
        SideInput side = openSide(path);
        side.stream->startHash();
        return side;
    } catch (const Error& error) {
        SideInput side{path, RecordingFiles(path), nullptr, 0, {}, {}, {}};
        if (side.name.parts.serial == 0) {
            throw; // whose recording it is, is not known
        }
        side.missing = failureOf(side, error.reason());
        return side;
    }
}

/// The place of the first sensor of a side that can measure distances; one that failed only where there is no other.
std::optional<std::size_t> pairedOf(const std::vector<SideInput>& all, const StationSettings& settings,
                                    TrackSide side) {
    std::optional<std::size_t> best;
    const auto rank = [&](const SideInput& input) { return std::pair(input.stream == nullptr, input.sensor); };
    for (std::size_t i = 0; i < all.size(); ++i) {
        const SensorSettings& sensor = sensorOf(settings, all[i]);
        if (sensor.side == side && isBetweenRails(sensor, settings) && (!best || rank(all[i]) < rank(all[*best]))) {
            best = i;
        }
    }
    return best;
}

/// Stands for a recording that was not given: that of the first sensor of a side that could measure distances.
SideInput notGiven(const StationSettings& settings, TrackSide side) {
    const auto sensor = std::find_if(settings.sensors.begin(), settings.sensors.end(), [&](const SensorSettings& s) {
        return s.side == side && isBetweenRails(s, settings);
    });
    SideInput input{{}, RecordingFiles(std::string()), nullptr, 0, {}, {}, {}};
    input.missing = std::string("no recording of a sensor between the rails on the ") + textOf(side) + " was given";
    if (sensor != settings.sensors.end()) {
        input.name.parts.serial = sensor->serial;
    } else {
        failSettings(settings.file, {},
                     QStringLiteral("name no sensor between the rails for the wheels on the %1, which distances need")
                         .arg(QLatin1String(textOf(side))));
    }
    return input;
}

void requireSides(const std::vector<SideInput>& all, const StationSettings& settings) {
    for (const SideInput& input : all) {
        const SensorSettings& sensor = sensorOf(settings, input);
        if (!sensor.side) {
            const QString key = KxMath::KxSensorKey(sensor.number, "side");
            failSettings(settings.file, key.toStdString(),
                         lacksKey(key) + QStringLiteral(", which recordings of several sensors need"));
        }
    }
}

} // namespace

std::string failureOf(const SideInput& side, const std::string& reason) {
    return "recording '" + bareName(side.path) + "' " + reason;
}

bool isOfSeveralSensors(const std::vector<std::string>& recordings, const StationSettings& settings) {
    if (recordings.size() != 2) {
        return true;
    }
    const SensorSettings* const first = sensorByName(recordings[0], settings);
    const SensorSettings* const second = sensorByName(recordings[1], settings);
    const bool haveSides = first != nullptr && second != nullptr && first != second && first->side && second->side;
    return haveSides &&
           (first->side == second->side || !isBetweenRails(*first, settings) || !isBetweenRails(*second, settings));
}

PassInputs openSeveral(const std::vector<std::string>& recordings, const StationSettings& settings, int mode) {
    std::vector<SideInput> all;
    for (const std::string& path : recordings) {
        all.push_back(openOrNote(path));
        for (std::size_t i = 0; i + 1 < all.size(); ++i) {
            checkSidesDiffer(all[i], all.back());
        }
    }
    requireOwnSerials(settings);
    requireSides(all, settings);
    for (SideInput& input : all) {
        lookUpSensor(settings, mode, SensorRole::Further, input);
    }
    PassInputs inputs;
    inputs.isOfSeveral = true;
    std::array<std::optional<std::size_t>, 2> paired = {pairedOf(all, settings, TrackSide::Left),
                                                        pairedOf(all, settings, TrackSide::Right)};
    const auto isThere = [&](const auto& place) { return place && all[*place].stream; };
    if (!isThere(paired[0]) && !isThere(paired[1])) {
        fail(ErrorKind::Unsuitable, {},
             QStringLiteral("a pass needs the whole recording of a sensor between the rails, none was given"));
    }
    for (const TrackSide side : {TrackSide::Left, TrackSide::Right}) {
        const auto& place = paired[side == TrackSide::Left ? 0 : 1];
        SideInput input = place ? std::move(all[*place]) : notGiven(settings, side);
        lookUpSensor(settings, mode, SensorRole::Paired, input);
        inputs.sides.push_back(std::move(input));
    }
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (i != paired[0] && i != paired[1]) {
            inputs.further.push_back(std::move(all[i]));
        }
    }
    return inputs;
}

} // namespace KxInspect::detail

namespace KxInspect {

std::vector<std::string> recordingsIn(const std::string& folder, const StationSettings& settings) {
    const detail::QtPath where(folder);
    const QDir dir(where.text());
    const ErrorSource source{"the folder", folder, {}};
    if (!dir.isReadable()) {
        detail::fail(ErrorKind::Unreadable, source, QStringLiteral("cannot be read"));
    }
    std::vector<std::pair<int, std::string>> found;
    for (const QString& name : dir.entryList({QStringLiteral("*.bin")}, QDir::Files, QDir::Name)) {
        const std::string file = name.toStdString();
        const SensorSettings* const sensor = findSensor(settings, detail::RecordingFiles(file).parts.serial);
        if (sensor != nullptr) {
            std::string path = folder;
            path.append("/").append(file);
            found.emplace_back(sensor->number, std::move(path));
        }
    }
    if (found.size() < 2) {
        detail::fail(
            ErrorKind::Unsuitable, source,
            QStringLiteral("holds %1 recordings PREFIX_SERIAL.bin of the sensors in the settings; a pass needs "
                           "two")
                .arg(found.size()));
    }
    std::sort(found.begin(), found.end());
    std::vector<std::string> recordings;
    recordings.reserve(found.size());
    for (auto& [sensor, path] : found) {
        recordings.push_back(std::move(path));
    }
    return recordings;
}

} // namespace KxInspect
