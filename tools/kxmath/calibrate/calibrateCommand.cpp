// kxmath calibrate: the pose of a sensor from profiles of the calibration object.
#include "inspect/formats/profileFiles.h"
#include "tools/kxmath/calibrate/calibrationResult.h"
#include "tools/kxmath/calibrate/objectOptions.h"
#include "tools/kxmath/calibrate/poseSettings.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/profileOptions.h"

#include <cmath>

namespace kxtool {

namespace {

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
    Columns columns;
    CalibrationTask task;
    int sensor = 0;
    QString settingsName;
    OutputFile settings;
    OutputFile json;
    OutputFile report;
};

void addOptions(QCommandLineParser& parser) {
    const auto add = [&](const char* name, const QString& description, const char* value) {
        parser.addOption({QLatin1String(name), description, QLatin1String(value)});
    };
    parser.addPositionalArgument(QStringLiteral("PROFILE..."), QStringLiteral("Profiles of the object, of one pose."));
    add("position", QStringLiteral("Placement code of the sensor; needed."), "N");
    addObjectOptions(parser);
    add("sensor-y",
        QStringLiteral("y of the sensor. Positions other than 2, 4 and 5 do not find it; for all it tells on which "
                       "side of the crests the sensor stands, which a profile does not: a rough value does."),
        "mm");
    addColumnsOption(parser);
    add("sensor", QStringLiteral("Number of the sensor in SETTINGS, 1 to 49; needed with --write."), "N");
    add("write", QStringLiteral("Put the pose into this INI file, which is made where it is missing."), "SETTINGS");
    add("json", QStringLiteral("Write the result as JSON; - is the standard output, in place of the tables."), "file");
    add("report", QStringLiteral("Write a report with drawings, one HTML file."), "file");
}

int sensorOption(const QCommandLineParser& parser) {
    constexpr int kMaxSensor = 49;
    bool isNumber = false;
    const int sensor = parser.value(QStringLiteral("sensor")).toInt(&isNumber);
    if (!isNumber || sensor < 1 || sensor > kMaxSensor) {
        failUse(parser.isSet(QStringLiteral("sensor"))
                    ? QStringLiteral("--sensor needs a whole number from 1 to %1").arg(kMaxSensor)
                    : QStringLiteral("--write needs the number of the sensor, --sensor N"));
    }
    return sensor;
}

Arguments readArguments(const QCommandLineParser& parser) {
    Arguments a{parser.positionalArguments(),
                columnsOption(parser),
                {},
                0,
                parser.value(QStringLiteral("write")),
                outputOption(parser, "write"),
                outputOption(parser, "json"),
                outputOption(parser, "report")};
    if (a.files.isEmpty()) {
        failUse(kName, QStringLiteral("no profile was named"));
    }
    if (!parser.isSet(QStringLiteral("position"))) {
        failUse(kName, QStringLiteral("--position N is needed"));
    }
    a.task.placement = placementOption(parser, QStringLiteral("position"));
    a.task.object = objectOption(parser, a.task.placement);
    if (parser.isSet(QStringLiteral("sensor-y"))) {
        constexpr float kFarthest = 1e6f;
        a.task.sensorY = numberOption(parser, QStringLiteral("sensor-y"), -kFarthest, kFarthest);
    }
    if (a.settings.isWanted() || parser.isSet(QStringLiteral("sensor"))) {
        a.sensor = sensorOption(parser);
    }
    return a;
}

/// The profiles of all files with their names.
struct Input {
    std::vector<QList<KxMath::KxPointXY>> profiles;
    QStringList names;
};

Input readAll(const Arguments& a, Progress& progress, CalibrationResult& result) {
    Input input;
    for (const QString& file : a.files) {
        progress.step(QStringLiteral("reading %1").arg(file));
        std::vector<QList<KxMath::KxPointXY>> profiles;
        const QString fault = readProfilesOfFile(file, a.columns.x, a.columns.y, profiles);
        if (!fault.isEmpty()) {
            result.unreadable += QStringLiteral("'%1' %2").arg(file, fault);
            continue;
        }
        for (size_t i = 0; i < profiles.size(); ++i) {
            input.names += profiles.size() == 1 ? file : QStringLiteral("%1, profile %2").arg(file).arg(i + 1);
            input.profiles.push_back(profiles[i]);
        }
    }
    return input;
}

void warnAboutY(CalibrationResult& result) {
    constexpr double kMaxDifference = 1.0; // mm
    const double foundY = result.average.foundY;
    if (!result.hasY()) {
        result.warnings +=
            QStringLiteral("position %1 does not find y; tell it with --sensor-y (by the object it is %2 mm)")
                .arg(result.task.placement)
                .arg(foundY, 0, 'f', 2);
    } else if (!result.task.findsY() && std::abs(static_cast<double>(*result.task.sensorY) - foundY) > kMaxDifference) {
        result.warnings += QStringLiteral("--sensor-y and --plane-y do not fit together: by the object y is %1 mm")
                               .arg(foundY, 0, 'f', 2);
    }
}

CalibrationResult measureAll(const Arguments& a, Progress& progress) {
    CalibrationResult result;
    result.task = a.task;
    const Input input = readAll(a, progress, result);
    progress.step(QStringLiteral("calibrating"));
    for (size_t i = 0; i < input.profiles.size(); ++i) {
        progress.part(static_cast<qint64>(i), static_cast<qint64>(input.profiles.size()));
        PoseMeasurement measurement = measurePose(input.profiles[i], a.task);
        measurement.name = input.names[static_cast<qsizetype>(i)];
        if (!measurement.fault.isEmpty() && input.profiles.size() > 1) {
            result.warnings += QStringLiteral("'%1' %2").arg(measurement.name, measurement.fault);
        }
        result.measurements.push_back(std::move(measurement));
    }
    result.average = averagePoses(result.measurements);
    if (result.hasPose()) {
        warnAboutY(result);
    }
    return result;
}

/// Prints what went wrong. @return the exit code
ExitCode tell(const CalibrationResult& result) {
    for (const QString& file : result.unreadable) {
        printLine(kName, file);
    }
    for (const QString& warning : result.warnings) {
        printLine(kName, QStringLiteral("warning: ") + warning);
    }
    if (!result.hasPose() && !result.measurements.empty()) {
        const PoseMeasurement& first = result.measurements.front();
        const bool isOne = result.measurements.size() == 1;
        const QString why = isOne ? QStringLiteral("'%1' %2").arg(first.name, first.fault)
                                  : QStringLiteral("none of %1 profiles has a pose").arg(result.measurements.size());
        printLine(kName, result.average.fault.isEmpty() ? why : result.average.fault);
    }
    if (!result.unreadable.isEmpty()) {
        return BadInput;
    }
    return result.hasPose() ? Done : NoResult;
}

int run(const Arguments& a) {
    checkOutputs({&a.settings, &a.json, &a.report}, a.files);
    const bool hasFile = a.settings.isWanted() && !a.settings.isStandardOutput();
    const QByteArray settingsText = hasFile ? readSettingsText(a.settingsName) : QByteArray();
    Progress progress;
    const CalibrationResult result = measureAll(a, progress);
    progress.wipe();
    const ExitCode code = tell(result);
    if (a.report.isWanted()) {
        a.report.write(calibrationReport(result));
    }
    if (a.json.isWanted()) {
        a.json.write(calibrationJson(result));
    }
    if (result.hasPose() && !a.json.isStandardOutput() && !a.report.isStandardOutput() &&
        !a.settings.isStandardOutput()) {
        printOutput(calibrationText(result));
    }
    if (a.settings.isWanted() && code == Done) {
        const PoseKeys keys{a.sensor, result.average.pose, a.task.placement, result.hasY()};
        a.settings.write(QString::fromUtf8(withPose(settingsText, keys, a.settingsName)));
    }
    return code;
}

int runChecked(const QStringList& arguments) {
    QCommandLineParser parser;
    parser.setApplicationDescription(QLatin1String(kDescription));
    addOptions(parser);
    if (!parseOrHelp(parser, arguments, kName, "PROFILE... --position N [options]")) {
        return Done;
    }
    return run(readArguments(parser));
}

} // namespace

int runCalibrate(const QStringList& arguments) {
    return runCommand(kName, [&] { return runChecked(arguments); });
}

} // namespace kxtool
