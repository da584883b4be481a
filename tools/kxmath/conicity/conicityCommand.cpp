// kxmath conicity: the equivalent conicity of a wheel-set from four measured profiles.
#include "report/conicity/conicityReport.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/conicity/conicityOptions.h"
#include "tools/kxmath/conicity/conicityText.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/failurePage.h"
#include "tools/kxmath/console/fileNames.h"

namespace kxtool {

namespace {

constexpr const char* kName = "conicity";

int runChecked(const QStringList& arguments) {
    ConicityOptions options;
    if (!options.parse(arguments)) {
        return Done;
    }
    const OutputFile json = options.output("json");
    const OutputFile csv = options.output("csv");
    const OutputFile report = options.output("report");
    const FailOn failOn = options.failOn();
    const KxInspect::ConicityInput input = options.input();
    QStringList files;
    for (const KxInspect::CrossSection& section : input.sections) {
        files += fromBytes(section.file);
    }
    checkOutputs({&json, &csv, &report}, files);
    const KxInspect::ConicityResult result =
        orFailurePage({report, QStringLiteral("Equivalent conicity"), files, input.sections.front().text},
                      [&] { return measureConicity(input); });
    for (const KxInspect::PlacedSection& section : result.sections) {
        if (!section.reading.empty()) {
            printLine(kName, QStringLiteral("'%1' %2").arg(QString::fromStdString(section.file),
                                                           QString::fromStdString(section.reading)));
        }
    }
    for (const std::string& warning : result.warnings) {
        printLine(kName, QStringLiteral("warning: ") + QString::fromStdString(warning));
    }
    if (json.isWanted()) {
        json.write(QString::fromStdString(toJson(result)));
    }
    if (csv.isWanted()) {
        csv.write(conicityCsv(result));
    }
    if (report.isWanted()) {
        report.write(kxreport::conicityReport(result, report.origin()));
    }
    if (!result.isCalculated()) { // the outputs say so too
        throw CommandError{NoResult, QString::fromStdString(result.reason)};
    }
    if (!json.isStandardOutput() && !csv.isStandardOutput() && !report.isStandardOutput()) {
        printOutput(conicityTable(result));
    }
    return failOn.exitCode(kName, Done, {{Verdict::NotJudged, result.shownConicity ? 0u : 1u}});
}

} // namespace

int runConicity(const QStringList& arguments) {
    return runCommand(kName, [&] { return runChecked(arguments); });
}

} // namespace kxtool
