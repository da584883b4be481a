// Settings of a station against recordings.
#include "inspect/station/recordingCheck.h"

#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/fitting/median.h"
#include "inspect/train/passWarnings.h"

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
    for (std::size_t i = 0; i + 1 < recordings.size(); i += 2) {
        const std::vector<std::string> pass(recordings.begin() + static_cast<std::ptrdiff_t>(i),
                                            recordings.begin() + static_cast<std::ptrdiff_t>(i) + 2);
        if (isAccepted(check, [&] { checkPass(pass, settings); })) {
            checkPair(pass, settings, mode, progress, check);
        }
    }
}

} // namespace KxInspect::detail
