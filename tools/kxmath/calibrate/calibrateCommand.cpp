// kxmath calibrate: the pose of a sensor from profiles of the calibration object.
#include "report/calibrate/calibrationReport.h"
#include "tools/kxmath/calibrate/calibrationText.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/calibrationObjectOptions.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/profileOptions.h"

#include <KxInspect/Calibration.h>
#include <KxInspect/Error.h>
#include <KxInspect/ProfileFile.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

namespace kxtool {

namespace {

using KxInspect::CalibrationResult;
using KxInspect::ProfilePose;

constexpr const char* kName = "calibrate";

const char* const kDescription =
    "Finds the pose of a profile sensor in the track frame from profiles of the calibration object, roof ridges along\n"
    "X of which one is oblique (docs/calibration.md draws it; kxmath simulate --calibration makes such profiles).\n"
    "\n"
    "Files are 2-D cloud sections, profile records, CSV with semicolons, or columns as text, in mm; all profiles of\n"
    "all files are taken to be of one pose. Their poses are averaged, and the spread is told.\n"
    "\n"
    "Position is the placement code: 2, 4 and 5 turn beta by 180 degrees and find y; 3 and 4 see the object in the\n"
    "order of -x, with alpha and gamma mirrored.\n"
    "\n"
    "Residuals are the distances of the points from the object along Y. A flank is off when their mean is more than\n"
    "0.02 mm and four standard deviations.\n"
    "\n"
    "--write puts x, y, z in mm, alpha, beta, gamma in degrees, and position as SENSORn/x and so on into an INI file;\n"
    "other keys stay as they are. Without --sensor-y the key y is left alone for positions that do not find it.\n"
    "\n"
    "Exit codes: 0 done, profiles without a pose are told and left out; 1 no pose, or profiles that are not of one\n"
    "pose; 2 wrong use; 3 a file is unreadable or damaged; 4 an output could not be written. SETTINGS are written\n"
    "with 0 only.";

struct Arguments {
    QStringList files;
    KxInspect::Columns columns;
    KxInspect::CalibrationTask task;
    int sensor = 0;
    QString settingsName;
    OutputFile settings;
    OutputFile json;
    OutputFile report;
};

void addOptions(Options& options) {
    options.addArgument("PROFILE...", QStringLiteral("Profiles of the object, of one pose."));
    options.addOption("position", QStringLiteral("Placement code of the sensor; needed."), "N");
    addObjectOptions(options);
    options.addOption(
        "sensor-y",
        QStringLiteral("y of the sensor. Positions other than 2, 4 and 5 do not find it; for all it tells on which "
                       "side of the crests the sensor stands, which a profile does not: a rough value does."),
        "mm");
    addColumnsOption(options);
    options.addOption("sensor", QStringLiteral("Number of the sensor in SETTINGS, 1 to 49; needed with --write."), "N");
    options.addOption("write", QStringLiteral("Put the pose into this INI file, which is made where it is missing."),
                      "SETTINGS");
    options.addOption(
        "json", QStringLiteral("Write the result as JSON; - is the standard output, in place of the tables."), "file");
    options.addOption("report", QStringLiteral("Write a report with drawings, one HTML file."), "file");
}

int sensorOption(const Options& options) {
    constexpr int kMaxSensor = 49;
    if (!options.isSet("sensor")) {
        options.fail(QStringLiteral("--write needs the number of the sensor, --sensor N"));
    }
    return options.wholeNumber("sensor", 1, kMaxSensor);
}

Arguments readArguments(const Options& options) {
    Arguments a{options.arguments("profiles", 1),
                columnsOption(options),
                {},
                0,
                options.text("write"),
                options.output("write"),
                options.output("json"),
                options.output("report")};
    options.needed("position");
    a.task.placement = options.wholeNumber("position");
    a.task.object = objectOption(options, a.task.placement);
    constexpr double kFarthest = 1e6;
    a.task.sensorY = options.numberIfSet("sensor-y", {-kFarthest, kFarthest});
    if (a.settings.isWanted() || options.isSet("sensor")) {
        a.sensor = sensorOption(options);
    }
    return a;
}

/// The text of the settings, empty where the file does not exist.
std::string readSettings(const QString& path) {
    const auto fail = [&](const QString& why) {
        throw CommandError{BadInput, QStringLiteral("settings '%1' %2").arg(path, why)};
    };
    const QFileInfo info(path);
    if (!info.exists()) {
        return {};
    }
    if (!info.isFile()) {
        fail(QStringLiteral("are not a file"));
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        fail(QStringLiteral("cannot be read: ") + file.errorString());
    }
    return file.readAll().toStdString();
}

/// The settings with the pose put in.
std::string settingsWith(const std::string& text, const Arguments& a, const KxInspect::SensorPose& pose) {
    return KxInspect::withPose(text, {a.sensor, pose, a.task.placement}, a.settingsName.toStdString());
}

/// The profiles of all files with their names.
std::vector<KxInspect::NamedProfile> readAll(const Arguments& a, Progress& progress,
                                             std::vector<std::string>& unreadable) {
    std::vector<KxInspect::NamedProfile> all;
    for (const QString& file : a.files) {
        progress.step(QStringLiteral("reading %1").arg(file));
        try {
            const std::vector<KxInspect::Profile> profiles = KxInspect::readProfiles(file.toStdString(), a.columns);
            for (size_t i = 0; i < profiles.size(); ++i) {
                const QString name =
                    profiles.size() == 1 ? file : QStringLiteral("%1, profile %2").arg(file, QString::number(i + 1));
                all.push_back({name.toStdString(), profiles[i]});
            }
        } catch (const KxInspect::Error& error) {
            unreadable.push_back("'" + error.source().file + "' " + error.reason());
        }
    }
    return all;
}

CalibrationResult measureAll(const Arguments& a, Progress& progress) {
    std::vector<std::string> unreadable;
    const auto profiles = readAll(a, progress, unreadable);
    CalibrationResult result =
        measurePoses(profiles, a.task, progress.callback(), {"--position", "--oblique", "--sensor-y", "--plane-y"});
    result.unreadable = std::move(unreadable);
    return result;
}

/// Why there is no pose.
QString faultOf(const CalibrationResult& result) {
    if (!result.average.fault.empty()) {
        return QString::fromStdString(result.average.fault);
    }
    if (result.profiles.size() > 1) {
        return QStringLiteral("none of %1 profiles has a pose").arg(result.profiles.size());
    }
    const ProfilePose& only = result.profiles.front();
    return QString::fromStdString("'" + only.name + "' " + only.fault);
}

/// Prints what went wrong. @return the exit code
ExitCode printFaults(const CalibrationResult& result) {
    for (const std::string& file : result.unreadable) {
        printLine(kName, QString::fromStdString(file));
    }
    for (const std::string& warning : result.warnings) {
        printLine(kName, QString::fromStdString("warning: " + warning));
    }
    if (!result.hasPose() && !result.profiles.empty()) {
        printLine(kName, faultOf(result));
    }
    if (!result.unreadable.empty()) {
        return BadInput;
    }
    return result.hasPose() ? Done : NoResult;
}

int run(const Arguments& a) {
    checkOutputs({&a.settings, &a.json, &a.report}, a.files);
    const bool hasFile = a.settings.isWanted() && !a.settings.isStandardOutput();
    const std::string settings = hasFile ? readSettings(a.settingsName) : std::string();
    if (hasFile) {
        settingsWith(settings, a, {}); // settings that take no keys are refused before long work
    }
    Progress progress;
    const CalibrationResult result = measureAll(a, progress);
    progress.wipe();
    const ExitCode code = printFaults(result);
    if (a.report.isWanted()) {
        a.report.write(kxreport::calibrationReport(result));
    }
    if (a.json.isWanted()) {
        a.json.write(QString::fromStdString(toJson(result)));
    }
    if (result.hasPose() && !a.json.isStandardOutput() && !a.report.isStandardOutput() &&
        !a.settings.isStandardOutput()) {
        printOutput(calibrationText(result));
    }
    if (a.settings.isWanted() && code == Done) {
        a.settings.write(QString::fromStdString(settingsWith(settings, a, result.average.pose)));
    }
    return code;
}

int runChecked(const QStringList& arguments) {
    Options options(kName, "PROFILE... --position N [options]", QLatin1String(kDescription));
    addOptions(options);
    return options.parse(arguments) ? run(readArguments(options)) : Done;
}

} // namespace

int runCalibrate(const QStringList& arguments) {
    return runCommand(kName, [&] { return runChecked(arguments); });
}

} // namespace kxtool
