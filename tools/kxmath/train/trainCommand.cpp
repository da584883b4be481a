// kxmath train: from the two recordings of a pass to the distances of its wheel pairs.
#include "report/train/passReport.h"
#include "report/train/passWords.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/console/workFolder.h"
#include "tools/kxmath/train/passText.h"
#include "tools/kxmath/train/trainOptions.h"

#include <KxInspect/Recording.h>
#include <KxInspect/Train.h>

#include <QtCore/QFile>

#include <filesystem>
#include <system_error>

namespace kxtool {

namespace {

using KxInspect::PassResult;

constexpr const char* kName = "train";

QString noResultText(const PassResult& pass) {
    const KxInspect::PassSide& first = pass.sides[0];
    const KxInspect::PassSide& second = pass.sides[1];
    return QStringLiteral("no distance: %1 wheels in '%2', %3 in '%4'%5")
        .arg(QString::number(first.wheels.size()), QString::fromStdString(first.file),
             QString::number(second.wheels.size()), QString::fromStdString(second.file),
             !first.wheels.empty() && !second.wheels.empty()
                 ? QStringLiteral(", none of them with a profile that can be measured")
                 : QString());
}

QString noTreadText(const TrainOptions& options, const PassResult& pass) {
    return QStringLiteral("no tread could be judged with the settings '%1': %2")
        .arg(options.defects, kxreport::notJudgedTexts(pass, KxInspect::PassQuestion::Tread).value(0));
}

/// The name of the folder for a pass: "pass-NAME1-NAME2" from the names of the recordings, long ones cut.
QString passFolderName(const QString& first, const QString& second) {
    constexpr int kMostBytes = 90; // two of them and a number stay below what file systems allow
    const auto shortened = [](QString name) {
        while (QFile::encodeName(name).size() > kMostBytes) {
            name.chop(1);
        }
        return name;
    };
    return QStringLiteral("pass-%1-%2").arg(shortened(first), shortened(second));
}

KxInspect::PassOptions passOptions(const TrainOptions& options) {
    KxInspect::PassOptions pass;
    pass.mode = options.mode;
    pass.nominal = options.nominal;
    pass.tolerance = options.tolerance;
    pass.labels = options.labels;
    if (!options.consist.isEmpty()) {
        pass.consist = KxInspect::readConsist(toBytes(options.consist));
    }
    pass.consistOrder = options.consistOrder;
    if (!options.limits.isEmpty()) {
        pass.limits = KxInspect::readLimits(toBytes(options.limits));
    }
    if (!options.defects.isEmpty()) {
        pass.defects = KxInspect::readDefectSettings(toBytes(options.defects));
    }
    if (options.defectRange) {
        pass.defects->limits.fromX = options.defectRange->front();
        pass.defects->limits.toX = options.defectRange->back();
    }
    if (options.report.isWanted()) {
        pass.shownPairs = {options.pair};
    }
    return pass;
}

void checkFiles(const TrainOptions& options) {
    QStringList inputs(options.settings);
    for (const std::string& recording : options.recordings) {
        inputs.append(fromBytes(recording));
    }
    if (!options.defects.isEmpty()) {
        inputs.append(options.defects);
    }
    if (!options.consist.isEmpty()) {
        inputs.append(options.consist);
    }
    if (!options.limits.isEmpty()) {
        inputs.append(options.limits);
    }
    checkOutputs({&options.json, &options.csv, &options.report}, inputs);
}

/// Measures the pass in a folder of its own, which has its result.json when it gets its final name. A pass without a
/// distance leaves no folder.
PassResult runPass(const TrainOptions& options, const KxInspect::StationSettings& settings,
                   KxInspect::PassOptions passOptions, Progress& progress) {
    const auto [first, second] =
        std::pair(KxInspect::recordingName(options.recordings[0]), KxInspect::recordingName(options.recordings[1]));
    WorkFolder folder(options.out,
                      passFolderName(QString::fromStdString(first.base), QString::fromStdString(second.base)));
    for (const std::string& recording : options.recordings) {
        // Of several one may be missing; what cannot be looked at may still be there.
        std::error_code ignored;
        if (std::filesystem::status(recording, ignored).type() != std::filesystem::file_type::not_found) {
            folder.link(fromBytes(recording), QString::fromStdString(KxInspect::recordingName(recording).file));
        }
    }
    folder.copy(options.settings, QStringLiteral("settings.ini"));
    if (passOptions.defects) {
        folder.copy(options.defects, QStringLiteral("defects.ini"));
    }
    if (passOptions.consist) {
        folder.copy(options.consist, QStringLiteral("consist.csv"));
    }
    if (passOptions.limits) {
        folder.copy(options.limits, QStringLiteral("limits.ini"));
    }
    passOptions.wheelFolder = folder.path();
    PassResult pass = measurePass(options.recordings, settings, passOptions, progress.callback());
    pass.folder.clear();
    if (pass.distances() > 0 || pass.hasResult()) {
        const OutputFile json(QStringLiteral("result"), fromBytes(folder.path() + "/result.json"));
        json.write(QString::fromStdString(toJson(pass)));
        folder.finish();
        pass.folder = printable(fromBytes(folder.path())).toStdString();
    }
    return pass;
}

std::vector<GivenVerdict> verdicts(const PassResult& pass) {
    using KxInspect::PassQuestion;
    const KxInspect::VerdictCount distances = pass.count(PassQuestion::Distance);
    const KxInspect::VerdictCount treads = pass.count(PassQuestion::Tread);
    const KxInspect::VerdictCount roundness = pass.count(PassQuestion::Roundness);
    const auto count = [](int number) { return static_cast<std::size_t>(number); };
    const auto byLimits = [&](KxInspect::LimitVerdict verdict) {
        return count(pass.assessment ? pass.assessment->count(verdict) : 0);
    };
    return {{Verdict::Warning, byLimits(KxInspect::LimitVerdict::Warning)},
            {Verdict::Alarm, byLimits(KxInspect::LimitVerdict::Alarm)},
            {Verdict::NotMeasured, byLimits(KxInspect::LimitVerdict::NotMeasured)},
            {Verdict::Out, count(distances.bad)},
            {Verdict::Defect, count(treads.bad + roundness.bad)},
            {Verdict::NotJudged, count(distances.notJudged() + treads.notJudged() + roundness.notJudged())}};
}

void writeOutputs(const TrainOptions& options, const PassResult& pass) {
    if (options.report.isWanted()) {
        options.report.write(kxreport::passReport(pass));
    }
    if (options.json.isWanted()) {
        options.json.write(QString::fromStdString(toJson(pass)));
    }
    if (options.csv.isWanted()) {
        options.csv.write(passCsv(pass));
    }
    const bool isTaken =
        options.report.isStandardOutput() || options.json.isStandardOutput() || options.csv.isStandardOutput();
    if (!isTaken && !pass.pairs.empty()) {
        printOutput(passText(pass));
    }
}

int run(const TrainOptions& options) {
    const KxInspect::StationSettings settings = KxInspect::readStationSettings(toBytes(options.settings));
    const KxInspect::PassOptions measuring = passOptions(options);
    checkPass(options.recordings, settings, measuring);
    checkFiles(options);
    Progress progress;
    const PassResult pass = runPass(options, settings, measuring, progress);
    progress.wipe();
    writeOutputs(options, pass);
    for (const std::string& warning : pass.warnings) {
        printLine(kName, QStringLiteral("warning: ") + QString::fromStdString(warning));
    }
    if (!pass.hasResult()) {
        throw CommandError{NoResult, pass.distances() == 0 ? noResultText(pass) : noTreadText(options, pass)};
    }
    return options.failOn.exitCode(kName, Done, verdicts(pass));
}

} // namespace

int runTrain(const QStringList& arguments) {
    return runCommand(kName, [&] {
        const std::optional<TrainOptions> options = parseTrainOptions(arguments);
        return options ? run(*options) : Done;
    });
}

} // namespace kxtool
