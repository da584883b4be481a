// kxmath settings fit: the settings of a station from recordings of wheel pairs with known distances.
#include "report/settings/fitReport.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/failurePage.h"
#include "tools/kxmath/console/options.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/settings/fitText.h"
#include "tools/kxmath/settings/settingsParts.h"

#include <KxInspect/Conicity.h>
#include <KxInspect/Recording.h>
#include <KxInspect/StationSetup.h>

#include <QtCore/QFileInfo>

#include <cmath>

namespace kxtool {

namespace {

using KxInspect::KnownPass;
using KxInspect::SettingsKind;
using KxInspect::StationFit;

constexpr const char* kName = "settings fit";

constexpr const char* kDescription =
    R"(Finds the settings of a station from the recordings of passes whose wheel pairs have known back-to-back distances:
the reference line, level line and low line of both sensors, the base distance, and what tells wheels from others. No
settings are needed before. The sensors may stand at any angle at which the slope of the back faces is below 20.

The back faces of the wheels are found as what is straight, comes and goes, and is nearest to the sensor. There have to
be as many as distances are given. The level line is placed in the middle of the range in which the measured offsets do
not depend on it. Then the passes are measured as kxmath train does; the base distance makes the mean of the residuals
(measured minus given) 0.)";

constexpr const char* kDetails =
    R"(
--write keeps all other keys of FILE and its remarks; the keys that were found are replaced or added: calibrLines2,
minProfsInWheel, and for both sensors SN, level_k, level_b, k2, b2, lowlevel_k, lowlevel_b, minPointsIn, and maxdY where
points are sparse. A sensor that FILE names keeps its number; in a new file REC1 is of SENSOR1. --defects does the same
with level_k, level_b, lowLevel_k and lowLevel_b for the judgement of treads.

Exit codes: 0 done; 1 no settings could be found, or a residual is larger than --max-residual: the reason is printed, no
settings are written, the page is; 2 wrong use; 3 a recording or FILE is missing, unreadable or damaged; 4 an output could
not be written; 6 not enough memory.
)";

struct Arguments {
    std::vector<KnownPass> passes;
    KxInspect::FitOptions fit;
    OutputFile settings;
    OutputFile defects;
    OutputFile report;
    QString settingsName;
    QString defectsName;
};

void addOptions(Options& options) {
    options.addArgument("REC1 REC2", QStringLiteral("Recordings of both sensors; more passes may follow, two each."));
    options.addOption("distance",
                      QStringLiteral("Distances of all wheel pairs of a pass, in their order: 1359.6,1360.2,-,1361; a "
                                     "dash is for one that is not known. With several passes one --distance for each, "
                                     "in their order; with one pass they may be given one by one."),
                      "MM,...");
    options.addOption("max-residual",
                      QStringLiteral("The most that a measured distance may differ from the given one. Wheelsets bend "
                                     "under load, which moves back faces by some tenths of a millimetre. Default: 1 "
                                     "mm."),
                      "MM", QStringLiteral("1"));
    options.addOption("write", QStringLiteral("Stores the settings in this INI file; it is made if missing."), "FILE");
    options.addOption("defects", QStringLiteral("Finds the lines of the treads too and stores them in this INI file."),
                      "FILE");
    options.addOption("report", QStringLiteral("Writes an HTML page: raw profiles with the lines, residuals."), "FILE");
}

double distanceFrom(const Options& options, const QString& text) {
    if (text == QLatin1String("-")) {
        return std::nan("");
    }
    return options.toNumber(text, QStringLiteral("--distance"),
                            {KxInspect::kTrackDistances[0], KxInspect::kTrackDistances[1]});
}

std::vector<KnownPass> passesOf(const Options& options) {
    const QStringList recordings = options.arguments("recordings", 2);
    if (recordings.size() % 2 != 0) {
        options.fail(QStringLiteral("each pass needs two recordings, got %1").arg(recordings.size()));
    }
    options.needed("distance");
    std::vector<KnownPass> passes;
    for (qsizetype i = 0; i < recordings.size(); i += 2) {
        passes.push_back({{toBytes(recordings[i]), toBytes(recordings[i + 1])}, {}});
    }
    const QStringList lists = options.texts("distance");
    if (passes.size() > 1 && lists.size() != static_cast<qsizetype>(passes.size())) {
        options.fail(QStringLiteral("%1 passes need as many --distance, got %2").arg(passes.size()).arg(lists.size()));
    }
    for (qsizetype i = 0; i < lists.size(); ++i) {
        KnownPass& pass = passes[passes.size() > 1 ? static_cast<std::size_t>(i) : 0];
        for (const QString& text : lists[i].split(QLatin1Char(','))) {
            pass.distances.push_back(distanceFrom(options, text.trimmed()));
        }
    }
    return passes;
}

Arguments readArguments(const Options& options) {
    Arguments a{passesOf(options),        {},
                options.output("write"),  options.output("defects"),
                options.output("report"), options.text("write"),
                options.text("defects")};
    a.fit.maxResidual = static_cast<double>(options.number("max-residual", kAbove0));
    a.fit.withTreads = a.defects.isWanted();
    return a;
}

/// Stores the keys in a file; the standard output gets them alone.
void store(const OutputFile& output, const QString& name, const StationFit& fit, SettingsKind kind,
           Progress& progress) {
    if (output.isStandardOutput()) {
        output.write(QString::fromStdString(withFit({}, fit, kind)));
    } else if (output.isWanted()) {
        storeFit(toBytes(name), fit, kind, progress.callback());
    }
}

/// The settings that are there, whose filter of noise stays. Refuses those that cannot hold the keys before the long work.
std::optional<KxInspect::StationSettings> settingsBefore(const Arguments& a) {
    std::vector<int> serials;
    for (const std::string& recording : a.passes.front().recordings) {
        serials.push_back(KxInspect::recordingName(recording).serial);
    }
    for (const auto& [output, name] : {std::pair(&a.settings, a.settingsName), std::pair(&a.defects, a.defectsName)}) {
        if (output->isWanted() && !output->isStandardOutput()) {
            KxInspect::checkFitTarget(toBytes(name), serials);
        }
    }
    const KxInspect::detail::QtPath where(toBytes(a.settingsName));
    const bool isThere = a.settings.isWanted() && !a.settings.isStandardOutput() && QFileInfo::exists(where.text());
    return isThere ? std::optional(KxInspect::readStationSettings(toBytes(a.settingsName))) : std::nullopt;
}

int run(const Arguments& a) {
    QStringList inputs;
    for (const KnownPass& pass : a.passes) {
        for (const std::string& recording : pass.recordings) {
            inputs.append(fromBytes(recording));
        }
    }
    checkOutputs({&a.settings, &a.defects, &a.report}, inputs);
    KxInspect::FitOptions options = a.fit;
    options.settings = settingsBefore(a);
    Progress progress;
    const StationFit fit = orFailurePage({a.report, QStringLiteral("Settings of a station"), inputs},
                                         [&] { return fitStation(a.passes, options, progress.callback()); });
    progress.wipe();
    if (a.report.isWanted()) {
        a.report.write(kxreport::fitReport(fit, a.report.origin()));
    }
    const bool isTaken = a.report.isStandardOutput() || a.settings.isStandardOutput() || a.defects.isStandardOutput();
    if (!isTaken) {
        printOutput(fitText(fit));
    }
    for (const std::string& warning : fit.warnings) {
        printLine(kName, QStringLiteral("warning: ") + QString::fromStdString(warning));
    }
    if (!fit.hasSettings()) {
        throw CommandError{NoResult, QString::fromStdString(fit.fault)};
    }
    store(a.settings, a.settingsName, fit, SettingsKind::Station, progress);
    store(a.defects, a.defectsName, fit, SettingsKind::Defects, progress);
    return Done;
}

} // namespace

int runSettingsFit(const QStringList& arguments) {
    return runCommand(kName, [&] {
        Options options(kName, "REC1 REC2 --distance MM,... [options]", QLatin1String(kDescription), kDetails);
        addOptions(options);
        return options.parse(arguments) ? run(readArguments(options)) : Done;
    });
}

} // namespace kxtool
