// kxmath train: from the two recordings of a pass to the distances of its wheel pairs.
#include "report/train/passReport.h"
#include "report/train/passWords.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/train/passFolder.h"
#include "tools/kxmath/train/passText.h"
#include "tools/kxmath/train/trainOptions.h"

#include <KxInspect/Train.h>

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
        .arg(options.files.defects, kxreport::notJudgedTexts(pass, KxInspect::PassQuestion::Tread).value(0));
}

KxInspect::PassOptions passOptions(const TrainOptions& options) {
    KxInspect::PassOptions pass;
    pass.mode = options.mode;
    pass.nominal = options.nominal;
    pass.tolerance = options.tolerance;
    pass.labels = options.labels;
    if (!options.files.consist.isEmpty()) {
        pass.consist = KxInspect::readConsist(toBytes(options.files.consist));
    }
    pass.consistOrder = options.consistOrder;
    if (!options.files.limits.isEmpty()) {
        pass.limits = KxInspect::readLimits(toBytes(options.files.limits));
    }
    if (!options.files.defects.isEmpty()) {
        pass.defects = KxInspect::readDefectSettings(toBytes(options.files.defects));
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
    const KxInspect::StationSettings settings = KxInspect::readStationSettings(toBytes(options.files.settings));
    const KxInspect::PassOptions measuring = passOptions(options);
    checkPass(options.files.recordings, settings, measuring);
    checkOutputs({&options.json, &options.csv, &options.report}, options.files.all());
    Progress progress;
    const PassResult pass = measureInNewFolder(options.out, options.files, settings, measuring, progress.callback());
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
