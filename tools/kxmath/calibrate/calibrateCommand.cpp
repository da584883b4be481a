// kxmath calibrate: the pose of a sensor from profiles of the calibration object.
#include "report/calibrate/calibrationReport.h"
#include "report/elements/textList.h"
#include "tools/kxmath/calibrate/calibrationText.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/calibrationObjectOptions.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/failOn.h"
#include "tools/kxmath/console/failurePage.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/console/textOptions.h"

#include <KxInspect/Calibration.h>
#include <KxInspect/Error.h>
#include <KxInspect/ProfileFile.h>

#include <algorithm>

namespace kxtool {

namespace {

using KxInspect::CalibrationResult;

constexpr const char* kName = "calibrate";

const char* const kDescription =
    "Finds the pose of a profile sensor in the track frame from profiles of the calibration object,\n"
    "roof ridges along X, one of them oblique (docs/calibration.md draws it).\n"
    "kxmath simulate --calibration makes such profiles.\n"
    "\n"
    "Files are 2-D cloud sections, profile records, other point files, or text columns, in mm.\n"
    "All profiles of all files must be taken from one pose. Their poses are averaged; the table\n"
    "gives the 95 % interval of each value and the spread.\n"
    "\n"
    "One profile looks the same to a sensor on either side of the crests: --sensor-y or --side says\n"
    "where it is. Shots of an object that was moved by a known way (--moved, once per file) show it,\n"
    "and which way X and Z run: they confirm or refute the position and the sign of --oblique.\n"
    "A sensor that is upside down sees the same of an object that is upside down: --oblique-crest\n"
    "says where the oblique crest is, which the position says too; without it, and without shots\n"
    "moved along Z, a warning gives the other pose.\n"
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
    "written; 5 a verdict of --fail-on was given; 6 not enough memory. SETTINGS is written only with\n"
    "exit codes 0 and 5.";

struct Arguments {
    QStringList files;
    KxInspect::TextOptions text;
    KxInspect::CalibrationTask task;
    std::vector<std::array<double, 3>> moves; ///< of the object for each file; none: it was not moved
    int sensor = 0;
    QString settingsName;
    OutputFile settings;
    OutputFile json;
    OutputFile report;
    FailOn failOn;
};

const std::vector<PossibleVerdict> kVerdicts = {{Verdict::Out, "a flank is off the object"},
                                                {Verdict::NotJudged, "a profile has no pose or a flank no points"},
                                                {Verdict::Unconfirmed, "another pose explains the profiles as well"}};

void addOptions(Options& options) {
    options.addArgument("PROFILE...", QStringLiteral("Profiles of the object, of one pose."));
    options.addOption("position", QStringLiteral("Placement code of the sensor, 1 to 5; required."), "N");
    addObjectOptions(options);
    options.addOption(
        "sensor-y",
        QStringLiteral("y of the sensor. Positions other than 2, 4 and 5 do not find it. For all positions it says on "
                       "which side of the crests the sensor is; a rough value is enough."),
        "mm");
    options.addOption("side",
                      QStringLiteral("Side of the sensor, where --sensor-y is not given: smaller-y than the crests, or "
                                     "larger-y. One of the two is needed unless --moved shows the side."),
                      "SIDE");
    options.addOption(
        "oblique-crest",
        QStringLiteral("Where the oblique crest is seen on the object: above the straight ones, or below. "
                       "Confirms the position, which says the same (1, 2, 5: above)."),
        "PLACE");
    addMovedOption(options,
                   QStringLiteral("How far the object was moved from its place for a file, along X, Y and Z of the "
                                  "track, mm; given once for each file, in their order."));
    options.addOption(
        "object-error",
        QStringLiteral("Standard uncertainties of the object, which the intervals then contain: of --pitch "
                       "in mm, of --slope and of --oblique."),
        "MM,M,T", QStringLiteral("0,0,0"));
    addTextOptions(options);
    options.addOption("sensor", QStringLiteral("Number of the sensor in SETTINGS, 1 to 49; required with --write."),
                      "N");
    options.addOption("write", QStringLiteral("Store the pose in this INI file; it is created if missing."),
                      "SETTINGS");
    options.addOption(
        "json", QStringLiteral("Write the result as JSON; - is the standard output, instead of the tables."), "file");
    options.addOption("report", QStringLiteral("Write a report with drawings, one HTML file."), "file");
    FailOn::declare(options, kVerdicts);
}

int sensorOption(const Options& options) {
    constexpr int kMaxSensor = 49;
    if (!options.isSet("sensor")) {
        options.fail(QStringLiteral("--sensor N is needed with --write"));
    }
    return options.wholeNumber("sensor", 1, kMaxSensor);
}

KxInspect::ObjectError objectErrorOption(const Options& options) {
    constexpr double kLargest = 1.0;
    const QString option = QStringLiteral("--object-error");
    const QString text = options.text("object-error");
    const std::array<double, 3> error = threeNumbers(options, text, option, kLargest);
    if (*std::min_element(error.begin(), error.end()) < 0.0) {
        options.failNeed(option, QStringLiteral("3 numbers of at least 0"), text);
    }
    return {error[0], error[1], error[2]};
}

/// Reads what is known of the side, and the object, which faces it.
void readSide(const Options& options, Arguments& a) {
    constexpr double kFarthest = 1e6;
    a.task.sensorY = options.numberIfSet("sensor-y", {-kFarthest, kFarthest});
    if (options.isSet("side")) {
        a.task.side = options.oneOf("side", kxreport::textList({"smaller-y", "larger-y"})) == QLatin1String("smaller-y")
                          ? KxInspect::SensorSide::SmallerY
                          : KxInspect::SensorSide::LargerY;
    }
    if (options.isSet("oblique-crest")) {
        a.task.obliqueCrest =
            options.oneOf("oblique-crest", kxreport::textList({"above", "below"})) == QLatin1String("above")
                ? KxInspect::ObliqueCrest::Above
                : KxInspect::ObliqueCrest::Below;
    }
    a.task.object.crestY = objectOption(options, a.task.placement).crestY;
    a.task.object = objectOption(options, a.task.placement, a.task.givenSide());
    a.task.objectError = objectErrorOption(options);
}

void checkMoves(const Options& options, const Arguments& a) {
    const size_t files = static_cast<size_t>(a.files.size());
    if (!a.moves.empty() && a.moves.size() != files) {
        options.fail(
            QStringLiteral("--moved is needed once for each of %1 files, got %2").arg(files).arg(a.moves.size()));
    }
}

const KxInspect::CalibrationTerms kTerms = {"--position", "--oblique", "--sensor-y",     "--plane-y",
                                            "--side",     "--moved",   "--oblique-crest"};

Arguments readArguments(const Options& options) {
    const QStringList files = options.arguments("profiles", 1);
    Arguments a{files,
                textOptions(options, files),
                {},
                movedOption(options),
                0,
                options.text("write"),
                options.output("write"),
                options.output("json"),
                options.output("report"),
                FailOn(options, kVerdicts)};
    options.needed("position");
    a.task.placement = options.wholeNumber("position", 1, 5); // others would count as 1
    readSide(options, a);
    if (a.settings.isWanted() || options.isSet("sensor")) {
        a.sensor = sensorOption(options);
    }
    checkMoves(options, a);
    checkCalibrationTask(a.task, a.moves, kTerms);
    return a;
}

KxInspect::PoseKeys keysOf(const Arguments& a, const KxInspect::PoseAverage& average) {
    return KxInspect::poseKeysOf(average, a.task.placement, a.sensor);
}

/// Throws an error when the settings cannot hold the keys, before the long work starts.
void checkSettings(const Arguments& a) {
    if (a.settings.isWanted() && !a.settings.isStandardOutput()) {
        const std::string file = toBytes(a.settingsName);
        KxInspect::withPose(KxInspect::readPoseSettings(file), keysOf(a, {}), file);
    }
}

void writeSettings(const Arguments& a, const KxInspect::PoseAverage& average, Progress& progress) {
    if (a.settings.isStandardOutput()) {
        a.settings.write(QString::fromStdString(KxInspect::withPose({}, keysOf(a, average))));
    } else if (a.settings.isWanted()) {
        storePose(toBytes(a.settingsName), keysOf(a, average), progress.callback());
        progress.wipe();
    }
}

/// The profiles of all files with their names.
std::vector<KxInspect::NamedProfile> readAll(const Arguments& a, Progress& progress,
                                             std::vector<std::string>& unreadable) {
    std::vector<KxInspect::NamedProfile> all;
    for (qsizetype number = 0; number < a.files.size(); ++number) {
        const QString& file = a.files[number];
        const auto moved = a.moves.empty() ? std::array<double, 3>{} : a.moves[static_cast<std::size_t>(number)];
        progress.step(QStringLiteral("reading %1").arg(file));
        try {
            std::optional<KxInspect::TextForm> form;
            const std::vector<KxInspect::Profile> profiles = KxInspect::readProfiles(toBytes(file), a.text, &form);
            if (const std::string note = form ? readingNote(*form) : std::string(); !note.empty()) {
                progress.wipe();
                printLine(kName, QStringLiteral("'%1' %2").arg(file, QString::fromStdString(note)));
            }
            for (size_t i = 0; i < profiles.size(); ++i) {
                const QString name =
                    profiles.size() == 1 ? file : QStringLiteral("%1, profile %2").arg(file, QString::number(i + 1));
                all.push_back({printable(name).toStdString(), profiles[i], moved});
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
    CalibrationResult result = measurePoses(profiles, a.task, progress.callback(), kTerms);
    result.unreadable = std::move(unreadable);
    return result;
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
        printLine(kName, QString::fromStdString(reasonWithoutPose(result)));
    }
    if (!result.unreadable.empty()) {
        return BadInput;
    }
    return result.hasPose() ? Done : NoResult;
}

std::vector<GivenVerdict> verdicts(const CalibrationResult& result) {
    const auto& flanks = result.flanks;
    const auto off = std::count_if(flanks.begin(), flanks.end(), [](const auto& flank) { return flank.isOff(); });
    const auto judged = std::count_if(flanks.begin(), flanks.end(), [](const auto& flank) { return flank.isJudged(); });
    const auto withPose = static_cast<std::size_t>(result.average.profiles);
    const std::size_t notJudged = result.profiles.size() - withPose + flanks.size() - static_cast<std::size_t>(judged);
    return {{Verdict::Out, static_cast<std::size_t>(off)},
            {Verdict::NotJudged, notJudged},
            {Verdict::Unconfirmed, result.otherPose ? std::size_t{1} : std::size_t{0}}};
}

/// Where no profile could be read, the page shows what can be.
void writeReport(const Arguments& a, const CalibrationResult& result) {
    if (result.profiles.empty() && !result.unreadable.empty()) {
        const FailurePage page{a.report, QStringLiteral("Pose of a sensor"), a.files, a.text};
        page.write(QString::fromStdString(result.unreadable.front()));
    } else if (a.report.isWanted()) {
        a.report.write(kxreport::calibrationReport(result, a.report.origin()));
    }
}

int run(const Arguments& a) {
    checkOutputs({&a.settings, &a.json, &a.report}, a.files);
    checkSettings(a);
    Progress progress;
    const CalibrationResult result = measureAll(a, progress);
    progress.wipe();
    const ExitCode code = printFaults(result);
    writeReport(a, result);
    if (a.json.isWanted()) {
        a.json.write(QString::fromStdString(toJson(result)));
    }
    if (result.hasPose() && !a.json.isStandardOutput() && !a.report.isStandardOutput() &&
        !a.settings.isStandardOutput()) {
        printOutput(calibrationText(result));
    }
    if (code == Done) {
        writeSettings(a, result.average, progress);
    }
    return a.failOn.exitCode(kName, code, verdicts(result));
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
