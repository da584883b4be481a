// kxmath wheel: the measures of wheel profiles.
#include "report/wheel/wheelReport.h"
#include "report/wheel/wheelWords.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/failurePage.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/wheel/wheelOptions.h"
#include "tools/kxmath/wheel/wheelText.h"

#include <algorithm>

namespace kxtool {

namespace {

constexpr const char* kName = "wheel";

using KxInspect::CrossSection;
using KxInspect::WheelResult;
using KxInspect::WheelResults;
using KxInspect::WheelVerdict;

/// Prints what is wrong with a wheel. @return the exit code for it
ExitCode printFaults(const WheelResult& result) {
    const QString file = QString::fromStdString(result.file);
    if (!result.error.empty()) {
        printLine(kName, QStringLiteral("'%1' %2").arg(file, QString::fromStdString(result.error)));
        return BadInput;
    }
    if (!result.reading.empty()) {
        printLine(kName, QStringLiteral("'%1' %2").arg(file, QString::fromStdString(result.reading)));
    }
    for (const std::string& warning : result.warnings) {
        printLine(kName, QStringLiteral("warning: '%1' %2").arg(file, QString::fromStdString(warning)));
    }
    if (!result.isMeasured()) {
        printLine(kName, QStringLiteral("'%1' has no flange or tread to measure: %2")
                             .arg(file, QString::fromStdString(result.reasons.front())));
        return NoResult;
    }
    return Done;
}

/// Prints which wheels could not be judged. @return the exit code for it
ExitCode printNotJudged(const WheelResults& results) {
    for (const WheelResult& result : results.wheels) {
        const std::string reason = reasonNotJudged(result, results.limits);
        if (result.verdict == WheelVerdict::NotMeasured && result.isMeasured()) { // others are told anyway
            printLine(kName, QStringLiteral("warning: '%1' could not be judged: %2")
                                 .arg(QString::fromStdString(result.file), QString::fromStdString(reason)));
        }
    }
    const KxInspect::WheelJudgement judgement = judgementOf(results);
    if (judgement.wheels == 0 || judgement.judged > 0) {
        return Done;
    }
    printLine(kName, kxreport::judgementText(results));
    return NoResult;
}

/// Where no wheel could be read, the page shows what can be.
void writeReport(const OutputFile& report, const std::vector<CrossSection>& wheels, const WheelResults& results) {
    if (!report.isWanted()) {
        return;
    }
    const auto isRead = [](const WheelResult& wheel) { return wheel.error.empty(); };
    if (std::any_of(results.wheels.begin(), results.wheels.end(), isRead)) {
        report.write(kxreport::wheelReport(results, report.origin()));
        return;
    }
    QStringList files;
    for (const CrossSection& wheel : wheels) {
        files.append(fromBytes(wheel.file));
    }
    const WheelResult& first = results.wheels.front();
    const FailurePage page{report, QStringLiteral("Wheel profiles"), files, wheels.front().text};
    page.write(QStringLiteral("'%1' %2").arg(QString::fromStdString(first.file), QString::fromStdString(first.error)));
}

void writeOutputs(const WheelCommandOptions& options, const std::vector<CrossSection>& wheels,
                  const WheelResults& results) {
    const OutputFile json = options.output("json");
    const OutputFile csv = options.output("csv");
    const OutputFile report = options.output("report");
    if (json.isWanted()) {
        json.write(QString::fromStdString(toJson(results)));
    }
    if (csv.isWanted()) {
        csv.write(wheelCsv(results));
    }
    writeReport(report, wheels, results);
    const bool isAnyRead =
        std::any_of(results.wheels.begin(), results.wheels.end(), [](const WheelResult& r) { return r.error.empty(); });
    if (isAnyRead && !json.isStandardOutput() && !csv.isStandardOutput() && !report.isStandardOutput()) {
        printOutput(wheelTable(results));
    }
}

int runChecked(const QStringList& arguments) {
    WheelCommandOptions options;
    if (!options.parse(arguments)) {
        return Done;
    }
    const OutputFile json = options.output("json");
    const OutputFile csv = options.output("csv");
    const OutputFile report = options.output("report");
    const FailOn failOn = options.failOn();
    const std::vector<CrossSection> wheels = options.wheels();
    checkOutputs({&json, &csv, &report}, options.arguments("files", 1) + options.marks());
    const KxInspect::WheelOptions measurement = options.measurement();
    Progress progress;
    const WheelResults results = measureWheels(wheels, measurement, progress.callback());
    progress.wipe();
    ExitCode code = Done;
    for (const WheelResult& result : results.wheels) {
        code = std::max(code, printFaults(result));
    }
    code = std::max(code, printNotJudged(results));
    writeOutputs(options, wheels, results);
    const KxInspect::WheelJudgement judgement = judgementOf(results);
    return failOn.exitCode(
        kName, code, {{Verdict::Out, judgement.outside}, {Verdict::NotJudged, judgement.wheels - judgement.judged}});
}

} // namespace

int runWheel(const QStringList& arguments) {
    return runCommand(kName, [&] { return runChecked(arguments); });
}

} // namespace kxtool
