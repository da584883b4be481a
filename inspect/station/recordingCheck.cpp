// Settings of a station against recordings.
#include "inspect/station/recordingCheck.h"

#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/fitting/median.h"
#include "inspect/recordings/recordingName.h"
#include "inspect/train/passWarnings.h"
#include "inspect/train/sensorLookUp.h"

#include <KxInspect/Train.h>

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

void doubt(SettingsCheck& check, const std::string& text) {
    const bool isThere = std::any_of(check.findings.begin(), check.findings.end(),
                                     [&](const SettingsFinding& finding) { return finding.text == text; });
    if (!isThere) {
        check.findings.push_back({false, {}, text});
    }
}

/// Runs a step; an Error about the settings becomes a finding. @return false then
template <typename Step>
bool isAccepted(SettingsCheck& check, Step step) {
    try {
        step();
    } catch (const Error& error) {
        if (error.source().role != "settings") {
            throw;
        }
        const bool isThere = std::any_of(check.findings.begin(), check.findings.end(),
                                         [&](const SettingsFinding& f) { return f.text == error.what(); });
        if (!isThere) {
            check.findings.push_back({true, error.source().key, error.what()});
        }
        return false;
    }
    return true;
}

/// The wheels of one recording, and what the settings make of them.
void checkSide(SideInput input, int mode, const Progress& progress, SettingsCheck& check) {
    constexpr int kRecordsPerReport = 256;
    MeasuredSide side{std::move(input), WheelCollector({}, mode), {}};
    side.found = WheelCollector(side.input.detection, mode);
    KxMath::KxProfileZ record;
    for (;;) {
        const KxMath::KxRecordKind kind = side.input.stream->next(record);
        if (kind == KxMath::KxNoRecord) {
            break;
        }
        side.found.add(kind, record);
        if (progress && side.input.stream->records() % kRecordsPerReport == 0) {
            progress("looking for wheels in " + shown(side.input.path),
                     static_cast<double>(side.input.stream->position()) /
                         static_cast<double>(side.input.stream->size()));
        }
    }
    int shortest = 0;
    for (const FoundWheel& wheel : side.found.wheels()) {
        side.chosen.push_back(chooseProfile(wheel, side.input.detection.level));
        const auto profiles = static_cast<int>(wheel.profiles.size());
        shortest = shortest == 0 ? profiles : std::min(shortest, profiles);
    }
    PassResult warnings;
    warnOfLines(side, warnings);
    for (const std::string& warning : warnings.warnings) {
        doubt(check, warning);
    }
    const int discarded = side.found.longestDiscarded();
    const QString name = QStringLiteral("recording '%1'").arg(toQt(side.input.path));
    if (2 * discarded > shortest && discarded > 0) { // of no wheel, too
        doubt(check, QStringLiteral("%1: a run of %2 records with points below the level line was no wheel, since "
                                    "minProfsInWheel is %3; %4")
                         .arg(name)
                         .arg(discarded)
                         .arg(side.input.detection.minProfilesInWheel)
                         .arg(shortest == 0 ? QStringLiteral("no run was longer")
                                            : QStringLiteral("the shortest wheel has %1").arg(shortest))
                         .toStdString());
    }
    check.facts.push_back(QStringLiteral("%1: %2 records, %3 wheels%4")
                              .arg(name)
                              .arg(side.input.stream->records())
                              .arg(side.found.wheels().size())
                              .arg(shortest > 0 ? QStringLiteral(" of %1 profiles or more").arg(shortest) : QString())
                              .toStdString());
}

void checkPair(const std::vector<std::string>& recordings, const StationSettings& settings, int mode,
               const Progress& progress, SettingsCheck& check) {
    PassOptions options;
    options.mode = mode;
    const PassResult result = measurePass(recordings, settings, options, progress);
    for (const std::string& warning : result.warnings) {
        doubt(check, warning);
    }
    std::vector<double> deviations;
    for (const WheelPair& pair : result.pairs) {
        if (!std::isnan(pair.deviation)) {
            deviations.push_back(static_cast<double>(pair.deviation));
        }
    }
    const QString name = QStringLiteral("pass of '%1'").arg(toQt(recordings[0]));
    if (deviations.empty()) {
        doubt(check, (name + QStringLiteral(": no wheel pair has a distance")).toStdString());
        return;
    }
    // Distances of sound wheelsets differ by less from the nominal one, which is close to the base distance.
    const double middle = median(deviations);
    constexpr double kMost = 10.0; // mm
    if (std::abs(middle) > kMost) {
        doubt(check, QStringLiteral("%1: the median distance is %2 mm off the base distance: either that or the "
                                    "reference lines are wrong")
                         .arg(name, QString::number(middle, 'f', 1))
                         .toStdString());
    }
    check.facts.push_back(QStringLiteral("%1: %2 distances of %3 wheel pairs, median %4 mm")
                              .arg(name)
                              .arg(deviations.size())
                              .arg(result.pairs.size())
                              .arg(middle + static_cast<double>(result.baseDistance), 0, 'f', 2)
                              .toStdString());
}

using Recordings = std::vector<std::string>;

const SensorSettings* sensorOfRecording(const std::string& recording, const StationSettings& settings) {
    return findSensor(settings, RecordingFiles(recording).parts.serial);
}

/// The recordings of one pass after the other: the next one begins with a sensor that came before.
std::vector<Recordings> passesOf(const Recordings& recordings, const StationSettings& settings) {
    std::vector<Recordings> passes;
    std::vector<const SensorSettings*> sensors; // of the last pass
    for (const std::string& recording : recordings) {
        const SensorSettings* const sensor = sensorOfRecording(recording, settings);
        if (passes.empty() || std::find(sensors.begin(), sensors.end(), sensor) != sensors.end()) {
            passes.emplace_back();
            sensors.clear();
        }
        passes.back().push_back(recording);
        sensors.push_back(sensor);
    }
    return passes;
}

/// Whether recordings are of sensors that can measure distances: of two that face each other, or between the rails on both
/// sides.
bool mayHaveDistances(const Recordings& pass, const StationSettings& settings) {
    bool haveSides = true;
    bool isThere[2] = {};
    for (const std::string& recording : pass) {
        const SensorSettings& sensor = *sensorOfRecording(recording, settings);
        haveSides = haveSides && sensor.side;
        if (sensor.side && !isOnFieldSide(sensor, settings)) {
            isThere[*sensor.side == TrackSide::Left ? 0 : 1] = true;
        }
    }
    return haveSides ? isThere[0] && isThere[1] : pass.size() > 1;
}

/// The settings of the sensors of a pass alone: others were not asked about.
StationSettings settingsOfPass(const Recordings& pass, StationSettings settings) {
    std::erase_if(settings.sensors, [&, all = settings](const SensorSettings& sensor) {
        return std::none_of(pass.begin(), pass.end(), [&](const std::string& recording) {
            return sensorOfRecording(recording, all)->serial == sensor.serial;
        });
    });
    return settings;
}

void noteUnchecked(const Recordings& recordings, const StationSettings& settings, SettingsCheck& check) {
    const StationSettings checked = settingsOfPass(recordings, settings);
    std::string names;
    for (const SensorSettings& sensor : settings.sensors) {
        if (findSensor(checked, sensor.serial) == nullptr) {
            names += (names.empty() ? "SENSOR" : ", SENSOR") + std::to_string(sensor.number);
        }
    }
    if (!names.empty()) {
        check.facts.push_back("not compared with recordings, since none was given: " + names);
    }
}

} // namespace

void checkRecordings(const std::vector<std::string>& recordings, const StationSettings& settings, int mode,
                     const Progress& progress, SettingsCheck& check) {
    bool areAccepted = !check.isRefused();
    for (const std::string& recording : recordings) {
        openSide(recording); // throws for what is missing, whatever the settings are
        areAccepted = isAccepted(check, [&] { openSide(recording, settings, mode); }) && areAccepted;
    }
    if (!areAccepted) {
        check.facts.push_back(QStringLiteral("no wheels were looked for: the settings are refused").toStdString());
        return;
    }
    for (const std::string& recording : recordings) {
        checkSide(openSide(recording, settings, mode), mode, progress, check);
    }
    for (const Recordings& pass : passesOf(recordings, settings)) {
        const StationSettings own = settingsOfPass(pass, settings);
        if (mayHaveDistances(pass, settings) && isAccepted(check, [&] { checkPass(pass, own); })) {
            checkPair(pass, own, mode, progress, check);
        }
    }
    noteUnchecked(recordings, settings, check);
}

} // namespace KxInspect::detail
