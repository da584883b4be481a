// kxmath train: from the two recordings of a pass to the distances of its wheel pairs.
#include "inspect/results/passJson.h"
#include "inspect/train/pass.h"
#include "report/train/passReport.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/train/passTable.h"
#include "tools/kxmath/train/workFolder.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

#include <cmath>

namespace kxtool {

namespace {

constexpr const char* kName = "train";

constexpr const char* kDescription =
    R"(Finds the wheels in the recordings of two sensors that face each other across the track, and measures the
distance across each wheel pair.

A recording is a file of profile records or 2-D cloud sections named PREFIX_SERIAL.bin; SERIAL is the serial number
of the sensor, which the settings name as SENSOR1/SN or SENSOR2/SN. The work is done in a fresh folder inside the
--out folder: its name begins with "incomplete-" until the pass is done and is then pass-NAME1-NAME2, with a number
behind it where that is taken. It holds links to the recordings, the profiles of each wheel, where the wheels start,
the settings and result.json. A run that fails removes it, a killed run leaves the incomplete one.)";

constexpr const char* kDetails =
    R"(
Settings (INI file), n being the number of the sensor:
  needed:   SENSORn/SN, SENSORn/level_k, SENSORn/level_b (level line y = k x + b, points below it are wheel),
            SENSORn/k2, SENSORn/b2 (reference line), calibrLines2 (base distance between the reference lines);
            in mode 3 also SENSORn/lowlevel_k, SENSORn/lowlevel_b
  optional: minProfsInWheel (5), SENSORn/wndSize (3), SENSORn/higherPoinInWnd (1), SENSORn/maxdY (1.5),
            SENSORn/minPointsIn (2); in mode 3 SENSORn/maxCorr (1), SENSORn/parts (0), SENSORn/maxDist (10)

Defects: with --defects the tread of every profile of every wheel is compared with a smooth curve through it (a
polynomial of degree 20), between the lines SENSORn/lowLevel_k, lowLevel_b and SENSORn/level_k, level_b of that file,
which also names the sensors (SENSORn/SN). Optional keys: maxDeviation (0.3), pointsHigher (5: more points than this
farther off than maxDeviation make a profile defective), minimalDefectsProf (1: more defective profiles than this make
a wheel defective). The low line keeps the flange out. FILE is seldom that of --settings, whose level line lies before
the tread. The key "use" is not asked: the option says it.

Roundness: a flat across the whole tread does not show in a single profile. With --defects the profiles of each wheel
are therefore compared too: the radius of the tread, 45 to 95 mm behind the reference line, with a circle about the
axle, which the flange tips tell. The recordings must hold z in mm along the track, and the laser planes stand straight
across it. Optional keys: maxRadiusDeviation (0.1), radiusProfiles (3: a wheel is out of round when in so many
successive profiles the tread is farther off to one side).

Wheels are paired by number. Where the recordings hold different numbers of wheels, they are paired by their place
along the pass: the z of profile records where both recordings have one that rises, else the record number. A wheel
without partner is listed without a distance, and a warning is printed.

CSV fields: pair; for each side s wheel_s, profiles_s, first_record_s, last_record_s, chosen_profile_s, points_s;
distance, deviation, verdict (ok or out); with --defects for each side also judged_profiles_s, defective_profiles_s,
defective_numbers_s, deviating_points_s, largest_deviation_s, tread_s (sound or defective), and behind those of both
sides compared_profiles_s, off_circle_numbers_s, radius_deviation_s, roundness_s (round or out of round). JSON fields:
command, version, mode, settings, folder, recordings, baseDistance, nominal, tolerance, distances, defectLimits, pairs (pair,
sides, distance, deviation, inTolerance), warnings. A missing value is an empty field in CSV and null in JSON. Records
and profiles are counted from 1; lengths are in mm.

Exit codes:
  0  done; distances out of tolerance do not change it
  1  the data gave no result: no wheel, or no pair with a distance (files that were asked for are written)
  2  wrong use
  3  a recording or the settings are missing, unreadable, damaged or do not fit each other
  4  output could not be written
)";

/// What the user asked for.
struct TrainOptions {
    std::array<QString, 2> recordings;
    QString settings;
    QString out;
    OutputFile json;
    OutputFile csv;
    OutputFile report;
    int mode;
    int pair;
    float tolerance;
    std::optional<float> nominal;
    QString defects; ///< settings of the judgement of defects, empty for none
    std::optional<std::array<float, 2>> defectRange;
};

class TrainParser {
public:
    TrainParser() {
        parser_.setApplicationDescription(QLatin1String(kDescription));
        parser_.addPositionalArgument(QStringLiteral("REC1"), QStringLiteral("Recording of one side."));
        parser_.addPositionalArgument(QStringLiteral("REC2"), QStringLiteral("Recording of the other side."));
        parser_.addOptions(
            {settings_, mode_, out_, nominal_, tolerance_, json_, csv_, report_, wheel_, defects_, defectRange_});
    }

    /// Throws a CommandError when the arguments are wrong. Empty when help was asked for and printed.
    std::optional<TrainOptions> parse(const QStringList& arguments) {
        if (!parseOrHelp(parser_, arguments, kName, "REC1 REC2 --settings FILE [options]", kDetails)) {
            return std::nullopt;
        }
        const QStringList names = parser_.positionalArguments();
        if (names.size() != 2) {
            failUse(kName, QStringLiteral("two recordings are needed, not %1").arg(names.size()));
        }
        if (parser_.value(settings_).isEmpty()) {
            failUse(kName, QStringLiteral("--settings FILE is needed"));
        }
        TrainOptions options = {{names[0], names[1]},
                                parser_.value(settings_),
                                parser_.value(out_),
                                outputOption(parser_, "json"),
                                outputOption(parser_, "csv"),
                                outputOption(parser_, "report"),
                                0,
                                1,
                                number(tolerance_),
                                std::nullopt,
                                parser_.value(defects_),
                                std::nullopt};
        options.mode = wholeNumber(mode_);
        options.pair = wholeNumber(wheel_);
        if (parser_.isSet(nominal_)) {
            options.nominal = number(nominal_);
        }
        if (parser_.isSet(defects_) && options.defects.isEmpty()) {
            failUse(kName, QStringLiteral("--defects names no file"));
        }
        if (parser_.isSet(defectRange_)) {
            options.defectRange = range(defectRange_);
        }
        if (options.pair < 1) {
            failUse(kName, QStringLiteral("--wheel begins at 1"));
        }
        if (options.defectRange && options.defects.isEmpty()) {
            failUse(kName, QStringLiteral("--defect-range is for --defects FILE"));
        }
        if (options.tolerance < 0.0f) {
            failUse(kName, QStringLiteral("--tolerance must not be negative"));
        }
        if (options.out.isEmpty()) {
            failUse(kName, QStringLiteral("--out names no folder"));
        }
        return options;
    }

private:
    int wholeNumber(const QCommandLineOption& option) const {
        bool isNumber = false;
        const int result = parser_.value(option).toInt(&isNumber);
        if (!isNumber) {
            failUse(kName, QStringLiteral("--%1 is no whole number").arg(option.names().constLast()));
        }
        return result;
    }

    float number(const QCommandLineOption& option) const {
        bool isNumber = false;
        const float result = parser_.value(option).toFloat(&isNumber);
        if (!isNumber || !std::isfinite(result)) {
            failUse(kName, QStringLiteral("--%1 is no number").arg(option.names().constLast()));
        }
        return result;
    }

    std::array<float, 2> range(const QCommandLineOption& option) const {
        const QStringList fields = parser_.value(option).split(QLatin1Char(':'));
        std::array<float, 2> result = {};
        std::array<bool, 2> areNumbers = {};
        for (size_t i = 0; i < 2 && fields.size() == 2; ++i) {
            result[i] = fields[static_cast<qsizetype>(i)].toFloat(&areNumbers[i]);
        }
        if (!areNumbers[0] || !areNumbers[1] || !(result[0] < result[1])) {
            failUse(kName, QStringLiteral("--%1 is not MIN:MAX").arg(option.names().constLast()));
        }
        return result;
    }

    QCommandLineParser parser_;
    const QCommandLineOption settings_{QStringLiteral("settings"), QStringLiteral("INI file with the keys below."),
                                       QStringLiteral("FILE")};
    const QCommandLineOption mode_{
        QStringLiteral("mode"),
        QStringLiteral("3: straight parts are removed and wheel points lie between a low line and the level line; any "
                       "other number: below the level line. Default: 0."),
        QStringLiteral("N"), QStringLiteral("0")};
    const QCommandLineOption out_{
        QStringLiteral("out"),
        QStringLiteral("Where the folder of the pass is made; made too where it is missing. Default: the current "
                       "folder."),
        QStringLiteral("DIR"), QStringLiteral(".")};
    const QCommandLineOption nominal_{QStringLiteral("nominal"),
                                      QStringLiteral("Nominal distance. Default: the base distance calibrLines2."),
                                      QStringLiteral("MM")};
    const QCommandLineOption tolerance_{
        QStringLiteral("tolerance"),
        QStringLiteral("Allowed deviation to both sides, the limit included. Default: 3 mm."), QStringLiteral("MM"),
        QStringLiteral("3")};
    const QCommandLineOption json_{QStringLiteral("json"),
                                   QStringLiteral("Writes the result as JSON; - for the standard output, in place of "
                                                  "the table."),
                                   QStringLiteral("FILE")};
    const QCommandLineOption csv_{QStringLiteral("csv"), QStringLiteral("The same as CSV."), QStringLiteral("FILE")};
    const QCommandLineOption report_{QStringLiteral("report"),
                                     QStringLiteral("Writes an HTML page with plots that needs no other file."),
                                     QStringLiteral("FILE")};
    const QCommandLineOption wheel_{QStringLiteral("wheel"),
                                    QStringLiteral("The wheel pair whose profiles the page shows. Default: 1."),
                                    QStringLiteral("N"), QStringLiteral("1")};
    const QCommandLineOption defects_{QStringLiteral("defects"),
                                      QStringLiteral("Judges the treads too, with the lines of this INI file."),
                                      QStringLiteral("FILE")};
    const QCommandLineOption defectRange_{
        QStringLiteral("defect-range"),
        QStringLiteral("Judges only points with x of the sensor in this range. Default: all between the lines."),
        QStringLiteral("MIN:MAX")};
};

std::array<RecordingFile, 2> openRecordings(const TrainOptions& options) {
    std::array<RecordingFile, 2> recordings = {openRecording(options.recordings[0]),
                                               openRecording(options.recordings[1])};
    const auto& [first, second] = recordings;
    if (first.linkName == second.linkName) {
        failUse(
            kName,
            QStringLiteral("both recordings are named '%1', so that their wheel files would mix").arg(first.linkName));
    }
    if (first.serial == second.serial) {
        failUse(kName, QStringLiteral("both recordings are of the sensor with the serial number %1").arg(first.serial));
    }
    return recordings;
}

QString noResultText(const Pass& pass) {
    const size_t first = pass.sides[0].wheels.size();
    const size_t second = pass.sides[1].wheels.size();
    return QStringLiteral("no distance: %1 wheels in '%2', %3 in '%4'%5")
        .arg(
            QString::number(first), pass.sides[0].recording.name, QString::number(second), pass.sides[1].recording.name,
            first > 0 && second > 0 ? QStringLiteral(", none of them with a profile that can be measured") : QString());
}

/// Runs the pass in its folder. The folder has its result.json when it gets its final name.
Pass runPass(const TrainOptions& options, const std::array<RecordingFile, 2>& recordings, TrainSettings& settings,
             const std::optional<DefectSettings>& defects, WorkFolder& folder, Progress& progress) {
    for (const RecordingFile& recording : recordings) {
        folder.link(recording);
    }
    folder.copy(settings.store->fileName(), QStringLiteral("settings.ini"));
    Pass pass = measurePass(recordings, settings, options.mode, progress);
    pass.settingsName = options.settings;
    pass.tolerance = {options.nominal.value_or(settings.baseDistance), options.tolerance};
    if (defects) {
        folder.copy(defects->fileName, QStringLiteral("defects.ini"));
        judgeDefects(pass, *defects, progress);
    }
    if (options.report.isWanted() && static_cast<size_t>(options.pair) > pass.pairs.size() && !pass.pairs.empty()) {
        pass.warnings.append(QStringLiteral("there is no wheel pair %1 to show, the last is %2")
                                 .arg(options.pair)
                                 .arg(pass.pairs.size()));
    }
    if (pass.distances() > 0) {
        OutputFile(QStringLiteral("result"), QStringLiteral("result.json")).write(passJson(pass, {}));
        folder.finish();
        pass.folder = folder.path();
    }
    return pass;
}

void writeOutputs(const TrainOptions& options, const Pass& pass) {
    const QString keptFolder = pass.distances() > 0 ? pass.folder : QString();
    if (options.report.isWanted()) {
        options.report.write(passReport(pass, options.pair));
    }
    if (options.json.isWanted()) {
        options.json.write(passJson(pass, keptFolder));
    }
    if (options.csv.isWanted()) {
        options.csv.write(passCsv(pass));
    }
    const bool isTaken =
        options.report.isStandardOutput() || options.json.isStandardOutput() || options.csv.isStandardOutput();
    if (!isTaken && pass.distances() > 0) {
        printOutput(passText(pass, keptFolder));
    }
}

std::optional<DefectSettings> readDefects(const TrainOptions& options, const std::array<RecordingFile, 2>& recordings) {
    if (options.defects.isEmpty()) {
        return std::nullopt;
    }
    DefectSettings defects = readDefectSettings(options.defects, recordings);
    if (options.defectRange) {
        defects.limits.fromX = options.defectRange->front();
        defects.limits.toX = options.defectRange->back();
    }
    return defects;
}

int run(const TrainOptions& options) {
    Progress progress;
    std::array<RecordingFile, 2> recordings = openRecordings(options);
    TrainSettings settings = readTrainSettings(options.settings, recordings, options.mode);
    const std::optional<DefectSettings> defects = readDefects(options, recordings);
    QStringList inputs = {recordings[0].path, recordings[1].path, settings.store->fileName()};
    if (defects) {
        inputs.append(defects->fileName);
    }
    checkOutputs({&options.json, &options.csv, &options.report}, inputs);
    WorkFolder folder(options.out, passFolderName(recordings[0], recordings[1]));
    for (RecordingFile& recording : recordings) {
        checkRecords(recording, progress);
    }
    const Pass pass = runPass(options, recordings, settings, defects, folder, progress);
    progress.wipe();
    writeOutputs(options, pass);
    if (pass.distances() == 0) {
        throw CommandError{NoResult, noResultText(pass)};
    }
    for (const QString& warning : pass.warnings) {
        printLine(kName, QStringLiteral("warning: ") + warning);
    }
    return Done;
}

} // namespace

int runTrain(const QStringList& arguments) {
    return runCommand(kName, [&] {
        const std::optional<TrainOptions> options = TrainParser().parse(arguments);
        return options ? run(*options) : Done;
    });
}

} // namespace kxtool
