// kxmath alarms: wheels beyond their limits or soon there, and sensors that measure differently.
#include "report/elements/page.h"
#include "report/fleet/alarmsReport.h"
#include "tools/kxmath/alarms/alarmsText.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/failOn.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/options.h"
#include "tools/kxmath/trend/storeMeasures.h"
#include "tools/kxmath/trend/trendPage.h"

namespace kxtool {

namespace {

constexpr const char* kName = "alarms";

constexpr const char* kDescription =
    R"(Says which wheels of a store are beyond a limit, which will be soon, and which sensors measure differently than
before (docs/fleet.md).

An alarm opens when 2 of the last 3 readings are beyond an alarm limit, and closes after 3 good ones; with --limits by
those, else by the verdicts that the passes were given. With --limits, a limit that the trend of a wheel may reach
within twice the lead is announced. A shift of all wheels at one side of a station is the sensor's, and taken off.

JSON fields: command, lastReading, judged; alarms: vehicle, axle, side, measure, opened, closed, readings (time, value,
station, side); announced: vehicle, axle, side, measure, days, soonest, latest, isLow; shifts: measure, station, side,
named, began, size. A missing value is null.

Exit codes: 0 done; 1 no value has a limit or a verdict; 2 wrong use; 3 the store or the limits are missing, unreadable,
damaged or unsuitable; 4 an output cannot be written; 5 a verdict of --fail-on was given; 6 not enough memory.)";

const std::vector<PossibleVerdict> kVerdicts = {{Verdict::Alarm, "an alarm is open"},
                                                {Verdict::Warning, "a limit is announced"},
                                                {Verdict::Shift, "a sensor measures differently"}};

/// "2,3" as 2 of 3.
kxfleet::AlarmRule alarmRule(const Options& options) {
    constexpr int kMost = 100;
    kxfleet::AlarmRule rule;
    const std::vector<float> numbers = options.numbers("open", 2, {1.0, kMost});
    rule.bad = options.toWholeNumber(QString::number(static_cast<double>(numbers[0])), QStringLiteral("K of --open"), 1,
                                     kMost);
    rule.of = options.toWholeNumber(QString::number(static_cast<double>(numbers[1])), QStringLiteral("N of --open"),
                                    rule.bad, kMost);
    rule.good = options.wholeNumber("close", 1, kMost);
    return rule;
}

kxreport::AlarmsPage pageOf(const FleetFindings& findings, bool withClosed) {
    kxreport::AlarmsPage page;
    page.mark = findings.openAlarms() > 0      ? kxreport::Mark::Alarm
                : findings.announcements() > 0 ? kxreport::Mark::Warning
                : !findings.shifts.empty()     ? kxreport::Mark::Finding
                : findings.judged() > 0        ? kxreport::Mark::Ok
                                               : kxreport::Mark::NotMeasured;
    page.verdict = summaryOf(findings);
    for (const PlaceShift& shift : findings.shifts) {
        page.shifts.append(shiftText(shift));
    }
    page.alarms = alarmRows(findings, withClosed);
    page.announced = announcementRows(findings);
    return page;
}

int run(const Options& options) {
    const QString name = options.arguments("one store", 1, 1).front();
    const OutputFile json = options.output("json");
    const OutputFile report = options.output("report");
    const bool withClosed = options.isSet("all");
    const FailOn failOn(options, kVerdicts);
    const std::vector<KxInspect::MeasureInfo> measures = measureOptions(options);
    FindingRules rules;
    rules.alarm = alarmRule(options);
    rules.announce.lead = static_cast<double>(options.number("lead", {0.0, 365.0}));
    rules.recent = static_cast<double>(options.number("recent", {0.0, 36500.0}));
    checkOutputs({&json, &report}, {name});
    const KxInspect::Limits limits = limitsOption(options);
    kxfleet::Store store(toBytes(name), kxfleet::IfMissing::Refuse);
    const FleetFindings findings = findingsOf(store, measures, limits, rules);
    if (!json.isStandardOutput() && !report.isStandardOutput()) {
        printOutput(alarmsText(findings, withClosed));
    }
    if (json.isWanted()) {
        json.write(QString::fromUtf8(alarmsJson(findings)));
    }
    if (report.isWanted()) {
        report.write(kxreport::alarmsReport(pageOf(findings, withClosed), report.origin()));
    }
    if (findings.judged() == 0) {
        printLine(kName, QStringLiteral("no value has a limit or a verdict: nothing was judged"));
    }
    return failOn.exitCode(kName, findings.judged() == 0 ? NoResult : Done,
                           {{Verdict::Alarm, findings.openAlarms()},
                            {Verdict::Warning, findings.announcements()},
                            {Verdict::Shift, findings.shifts.size()}});
}

} // namespace

int runAlarms(const QStringList& arguments) {
    return runCommand(kName, [&] {
        Options options(kName, "STORE [options]", QLatin1String(kDescription));
        options.addArgument("STORE", QStringLiteral("The file of SQLite, or postgresql://..."));
        addMeasureOption(options);
        addLimitsOptionOfStore(options);
        options.addOption("open", QStringLiteral("An alarm opens when K of the last N readings are bad."), "K,N",
                          QStringLiteral("2,3"));
        options.addOption("close", QStringLiteral("It closes after so many good readings in a row."), "COUNT",
                          QStringLiteral("3"));
        options.addOption(
            "lead",
            QStringLiteral(
                "Limits are announced at least so many days before: when they may be reached within twice as many."),
            "DAYS", QStringLiteral("14"));
        options.addOption("recent",
                          QStringLiteral("Shifts of sensors are told that were named within so many days before the "
                                         "last reading."),
                          "DAYS", QStringLiteral("14"));
        options.addFlag("all", QStringLiteral("Lists closed alarms, too; JSON always holds them."));
        options.addOption("json", QStringLiteral("Writes the findings as JSON; - is the standard output."), "FILE");
        options.addOption("report", QStringLiteral("Writes the findings as a page."), "FILE");
        FailOn::declare(options, kVerdicts);
        return options.parse(arguments) ? run(options) : Done;
    });
}

} // namespace kxtool
