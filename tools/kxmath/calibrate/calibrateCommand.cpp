// kxmath calibrate: the pose of a sensor from profiles of the calibration object.
#include "report/calibrate/calibrationReport.h"
#include "tools/kxmath/calibrate/calibrationText.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/calibrationObjectOptions.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/console/textOptions.h"

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
    "Finds the pose of a profile sensor in the track frame from profiles of the calibration object,\n"
    "roof ridges along X, one of them oblique (docs/calibration.md draws it).\n"
    "kxmath simulate --calibration makes such profiles.\n"
    "\n"
    "Files are 2-D cloud sections, profile records, other point files, or text columns, in mm.\n"
    "All profiles of all files must be taken from one pose. Their poses are averaged; the table\n"
    "gives the spread.\n"
    "\n"
    "The position is the placement code. 2, 4 and 5 turn beta by 180 degrees and find y; 3 and 4 see\n"
    "the object in the order of -x, with alpha and gamma mirrored.\n"
    "\n"
    "A residual is the distance of a point from the object along Y. A flank is marked as off when\n"
    "the mean of its residuals exceeds 0.02 mm and four standard deviations.\n"
    "\n"
    "--write stores x, y, z in mm, alpha, beta, gamma in degrees, and the position as SENSORn/x and\n"
    "so on in an INI file; other keys do not change. Positions that do not find y leave the key y\n"
    "alone unless --sensor-y gives it.\n"
    "\n"
    "Exit codes: 0 done, profiles without a pose are reported and left out; 1 no pose, or the profiles\n"
    "are not of one pose; 2 wrong use; 3 a file is unreadable or damaged; 4 an output could not be\n"
    "written; 6 not enough memory. SETTINGS is written only with exit code 0.";

struct Arguments {
    QStringList files;
    KxInspect::TextOptions text;
    KxInspect::CalibrationTask task;
    int sensor = 0;
    QString settingsName;
    OutputFile settings;
    OutputFile json;
    OutputFile report;
};

void addOptions(Options& options) {
    options.addArgument("PROFILE...", QStringLiteral("Profiles of the object, of one pose."));
    options.addOption("position", QStringLiteral("Placement code of the sensor; required."), "N");
    addObjectOptions(options);
    options.addOption(
        "sensor-y",
        QStringLiteral("y of the sensor. Positions other than 2, 4 and 5 do not find it. For all positions it decides "
                       "on which side of the crests the sensor is; a rough value is enough."),
        "mm");
    addTextOptions(options);
    options.addOption("sensor", QStringLiteral("Number of the sensor in SETTINGS, 1 to 49; required with --write."),
                      "N");
    options.addOption("write", QStringLiteral("Store the pose in this INI file; it is created if missing."),
                      "SETTINGS");
    options.addOption(
        "json", QStringLiteral("Write the result as JSON; - is the standard output, instead of the tables."), "file");
    options.addOption("report", QStringLiteral("Write a report with drawings, one HTML file."), "file");
}

int sensorOption(const Options& options) {
    constexpr int kMaxSensor = 49;
    if (!options.isSet("sensor")) {
        options.fail(QStringLiteral("--sensor N is needed with --write"));
    }
    return options.wholeNumber("sensor", 1, kMaxSensor);
}

Arguments readArguments(const Options& options) {
    Arguments a{options.arguments("profiles", 1),
                textOptions(options),
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
    const KxInspect::detail::QtPath where(toBytes(path));
    const QFileInfo info(where.text());
    if (!info.exists()) {
        return {};
    }
    if (!info.isFile()) {
        fail(QStringLiteral("cannot be read: not a file"));
    }
    QFile file(where.text());
    if (!file.open(QIODevice::ReadOnly)) {
        fail(QStringLiteral("cannot be read: ") + file.errorString());
    }
    return file.readAll().toStdString();
}

/// The settings with the pose added.
std::string settingsWith(const std::string& text, const Arguments& a, const KxInspect::SensorPose& pose) {
    return KxInspect::withPose(text, {a.sensor, pose, a.task.placement}, toBytes(a.settingsName));
}

/// The profiles of all files with their names.
std::vector<KxInspect::NamedProfile> readAll(const Arguments& a, Progress& progress,
                                             std::vector<std::string>& unreadable) {
    std::vector<KxInspect::NamedProfile> all;
    for (const QString& file : a.files) {
        progress.step(QStringLiteral("reading %1").arg(file));
        try {
            const std::vector<KxInspect::Profile> profiles = KxInspect::readProfiles(toBytes(file), a.text);
            for (size_t i = 0; i < profiles.size(); ++i) {
                const QString name =
                    profiles.size() == 1 ? file : QStringLiteral("%1, profile %2").arg(file, QString::number(i + 1));
                all.push_back({printable(name).toStdString(), profiles[i]});
            }
        } catch (const KxInspect::Error& error) {
            unreadable.push_back(error.what());
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

/// The reason for a missing pose.
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
        settingsWith(settings, a, {}); // refuses settings that cannot hold the keys before the long work starts
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
