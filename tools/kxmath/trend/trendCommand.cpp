// kxmath trend: where the values of wheels go, and when they reach a limit.
#include "report/fleet/trendReport.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/failOn.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/options.h"
#include "tools/kxmath/trend/storeMeasures.h"
#include "tools/kxmath/trend/trendPage.h"
#include "tools/kxmath/trend/trendText.h"

#include <algorithm>

namespace kxtool {

namespace {

constexpr const char* kName = "trend";

constexpr const char* kDescription =
    R"(Says for each wheel of a store where its values go: a line by medians through the readings since it was last turned
or replaced, its slope, and the days until a limit, with 95 % intervals (docs/fleet.md). A step up of the thickness of
the flange or of the diameter begins a new life. Shifts of the sensors of a station are found in all wheels and taken
off.

JSON fields: command; wheels: vehicle, axle, side, measure, unit, class, lives, readings, from, to, trend (level,
levelLow, levelHigh, slopePerDay, slopeLow, slopeHigh, noise), reason, outliers (time, value), isBeyond (2 of the last 3
readings were beyond the limit), daysToLimit (days, soonest, latest, limit, isLow), daysReason; shifts: measure, station, side, named, began, size. A missing value is null
and has its reason.

Exit codes: 0 done; 1 no wheel has a trend; 2 wrong use; 3 the store or the limits are missing, unreadable, damaged or
unsuitable; 4 an output cannot be written; 5 a verdict of --fail-on was given; 6 not enough memory.)";

const std::vector<PossibleVerdict> kVerdicts = {{Verdict::Alarm, "a value is beyond a limit"},
                                                {Verdict::Warning, "a value may reach a limit within the lead"},
                                                {Verdict::NotJudged, "a value has no trend"}};

int run(const Options& options) {
    const QString name = options.arguments("one store", 1, 1).front();
    const OutputFile json = options.output("json");
    const OutputFile report = options.output("report");
    const double lead = static_cast<double>(options.number("lead", {0.0, 3650.0}));
    const int most = options.wholeNumber("pictures", 0, 1000);
    const FailOn failOn(options, kVerdicts);
    const std::vector<KxInspect::MeasureInfo> measures = measureOptions(options);
    checkOutputs({&json, &report}, {name});
    const KxInspect::Limits limits = limitsOption(options);
    kxfleet::Store store(toBytes(name), kxfleet::IfMissing::Refuse);
    const FleetTrends trends = trendsOf(store, measures, toBytes(options.text("vehicle")), limits);
    if (!json.isStandardOutput() && !report.isStandardOutput()) {
        printOutput(trendTable(trends));
    }
    if (json.isWanted()) {
        json.write(QString::fromUtf8(trendJson(trends)));
    }
    if (report.isWanted()) {
        report.write(kxreport::trendReport(trendPage(trends, lead, most), report.origin()));
    }
    const auto count = [&](auto condition) {
        return static_cast<std::size_t>(std::count_if(trends.wheels.begin(), trends.wheels.end(), condition));
    };
    const std::size_t withTrend = count([](const WheelTrend& wheel) { return wheel.trend.line.has_value(); });
    if (withTrend == 0) {
        printLine(kName, trends.wheels.empty() ? QStringLiteral("the store holds no such reading of a known wheel")
                                               : QStringLiteral("no wheel has a trend, see above"));
        return NoResult;
    }
    const std::size_t due = count([&](const WheelTrend& wheel) {
        return !wheel.isBeyond && wheel.trend.daysToLimit && wheel.trend.daysToLimit->soonest <= lead;
    });
    return failOn.exitCode(kName, Done,
                           {{Verdict::Alarm, count([](const WheelTrend& wheel) { return wheel.isBeyond; })},
                            {Verdict::Warning, due},
                            {Verdict::NotJudged, trends.wheels.size() - withTrend}});
}

} // namespace

int runTrend(const QStringList& arguments) {
    return runCommand(kName, [&] {
        Options options(kName, "STORE [options]", QLatin1String(kDescription));
        options.addArgument("STORE", QStringLiteral("The file of SQLite, or postgresql://..."));
        addMeasureOption(options);
        options.addOption("vehicle", QStringLiteral("Only the wheels of the vehicle with this number."), "NUMBER");
        addLimitsOptionOfStore(options);
        options.addOption("lead", QStringLiteral("Limits that may be reached within so many days are marked."), "DAYS",
                          QStringLiteral("30"));
        options.addOption("pictures",
                          QStringLiteral("How many vehicles get pictures on the page, the most urgent ones."), "N",
                          QStringLiteral("20"));
        options.addOption("json", QStringLiteral("Writes the trends as JSON; - is the standard output."), "FILE");
        options.addOption("report", QStringLiteral("Writes a page with small pictures of each vehicle."), "FILE");
        FailOn::declare(options, kVerdicts);
        return options.parse(arguments) ? run(options) : Done;
    });
}

} // namespace kxtool
