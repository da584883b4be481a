// kxmath train: from the two recordings of a pass to the distances of its wheel pairs.
#include "report/train/passReport.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/failurePage.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/train/passFolder.h"
#include "tools/kxmath/train/passText.h"
#include "tools/kxmath/train/sheetText.h"
#include "tools/kxmath/train/trainOptions.h"

#include <KxInspect/Train.h>

namespace kxtool {

namespace {

using KxInspect::PassResult;

constexpr const char* kName = "train";

void writeOutputs(const TrainOptions& options, const PassResult& pass) {
    if (options.report.isWanted()) {
        options.report.write(kxreport::passReport(pass, options.report.origin()));
    }
    if (options.json.isWanted()) {
        options.json.write(QString::fromStdString(toJson(pass)));
    }
    if (options.csv.isWanted()) {
        options.csv.write(passCsv(pass));
    }
    if (options.sheet.isWanted()) {
        options.sheet.write(sheetCsv(pass));
    }
    const bool isTaken = options.report.isStandardOutput() || options.json.isStandardOutput() ||
                         options.csv.isStandardOutput() || options.sheet.isStandardOutput();
    if (!isTaken && !pass.pairs.empty()) {
        printOutput(passText(pass));
    }
}

/// A page without the pair that it should show is no doubt about the result.
void warnOfMissingPair(const TrainOptions& options, const PassResult& pass) {
    const auto pairs = static_cast<int>(pass.pairs.size());
    if (options.report.isWanted() && options.pair > pairs && pairs > 0) {
        printLine(
            kName,
            QStringLiteral("warning: there is no wheel pair %1 to show, the last is %2").arg(options.pair).arg(pairs));
    }
}

int run(const TrainOptions& options) {
    const KxInspect::StationSettings settings = KxInspect::readStationSettings(toBytes(options.files.settings));
    KxInspect::PassOptions measuring = passOptions(options);
    if (options.report.isWanted()) {
        measuring.shownPairs = {options.pair};
        measuring.areFindingsShown = true;
    }
    checkOutputs({&options.json, &options.csv, &options.sheet, &options.report}, options.files.all());
    QStringList recordings;
    for (const std::string& recording : options.files.recordings) {
        recordings.append(fromBytes(recording));
    }
    Progress progress;
    const PassResult pass = orFailurePage({options.report, QStringLiteral("Wheels of a train"), recordings}, [&] {
        checkPass(options.files.recordings, settings, measuring);
        return measureInNewFolder(options.out, options.files, settings, measuring, progress.callback());
    });
    progress.wipe();
    writeOutputs(options, pass);
    warnOfMissingPair(options, pass);
    for (const std::string& warning : pass.warnings) {
        printLine(kName, QStringLiteral("warning: ") + QString::fromStdString(warning));
    }
    if (!pass.hasResult()) {
        throw CommandError{NoResult, whyNoResult(pass, options)};
    }
    return options.failOn.exitCode(kName, Done, verdicts(pass));
}

} // namespace

int runTrain(const QStringList& arguments) {
    return runCommand(kName, [&] {
        const auto options = parseTrainOptions(arguments);
        if (!options) {
            return static_cast<int>(Done);
        }
        const auto* const again = std::get_if<AgainOptions>(&*options);
        return again != nullptr ? runAgain(*again) : run(std::get<TrainOptions>(*options));
    });
}

} // namespace kxtool
