// What the user of kxmath watch asks for.
#include "tools/kxmath/watch/watchOptions.h"

#include "tools/kxmath/console/fileNames.h"

#include <KxInspect/RecordingGroups.h>

#include <filesystem>
#include <limits>
#include <system_error>
#include <utility>

namespace kxtool {

namespace {

constexpr const char* kDescription =
    R"(Measures the passes whose recordings are in a folder: each group of recordings of one station and time becomes a
folder of a pass, as kxmath train makes it, once. Without --follow it measures what is complete and ends.

A group is complete when it has a recording of each sensor that the settings name, all of them end with a whole record,
and none has changed for the time of --settle. What is not complete is left for later and listed with the reason. After
the time of --give-up it is measured with the recordings that are there; a recording that comes later is reported, and
the result stays as it is until it is removed.

The result of a group is OUT/STATION/TIME_SERIALS, as results/A12/20261121T081500Z_101+102. It appears with all that is
in it by one rename. A group that has it is done; remove it to measure the group again. A group that cannot be measured
leaves TIME_SERIALS.failed.txt with the reason, and is tried again when one of its recordings, the settings or the
program changes, or when that file is removed. What a killed run leaves begins with "incomplete-"; the next run removes
it and measures the group anew.)";

constexpr const char* kDetails =
    R"(
Layout: where station, time and sensor stand in the path of a recording below DIR. {station}: any name, which becomes
the station of the result. {time}: when the train passed, ISO 8601 with a zone, as 20261121T081500Z,
20261121T091500+0100 or 2026-11-21T08-15-00Z; it becomes the time of the result. {prefix}: any text. {serial}: the
serial number of the sensor; the name of the file ends in _{serial}.bin. Links below DIR are not followed. Names that
begin with '.' or "incomplete-" are not looked at.

JSON fields of a group: station, time, state (measured, done, waiting, failed, no result), serials, folder, pairs,
distances, reason. A missing value is null.

Exit codes:
  0  every complete group has a result; groups may be waiting
  1  no group has a result, or one gave none: no wheel, no distance
  2  wrong use
  3  a group could not be measured because of its recordings or settings, now or in an earlier run; DIR, a folder in it
     or the settings cannot be read
  4  output could not be written; another watch uses OUT
  5  a verdict that --fail-on lists was given on a group that this run measured
  6  not enough memory
With --follow it runs until SIGINT or SIGTERM and ends with 130 or 143, or with 2, 3, 4 or 6 when it cannot go on; a
group that fails does not end it.
)";

void addOptions(Options& options) {
    options.addArgument("DIR", QStringLiteral("The folder of the recordings."));
    options.addOption("settings", QStringLiteral("INI file of the station, see kxmath help train."), "FILE");
    options.addOption("out", QStringLiteral("Where the results are put; made where it is missing. Not inside DIR."),
                      "OUT");
    options.addOption("layout",
                      QStringLiteral("Where station, time and sensor stand in the path of a recording. Default: %1.")
                          .arg(QLatin1String(KxInspect::kDefaultLayout)),
                      "LAYOUT", QLatin1String(KxInspect::kDefaultLayout));
    options.addOption("station", QStringLiteral("Name of the station, for a layout without {station}."), "TEXT");
    options.addOption("settle",
                      QStringLiteral("For so long a recording must not have changed. Choose it longer than the longest "
                                     "pause between two writes of a recorder. Default: 30 s."),
                      "SECONDS", QStringLiteral("30"));
    options.addOption(
        "give-up",
        QStringLiteral("An incomplete group whose recordings have not changed for so long is measured with "
                       "those that are there; 'never' waits for ever. Default: 3600 s."),
        "SECONDS", QStringLiteral("3600"));
    options.addFlag("follow", QStringLiteral("Goes on until it gets SIGINT or SIGTERM."));
    options.addOption("poll", QStringLiteral("With --follow looks again after so many seconds. Default: 5 s."),
                      "SECONDS", QStringLiteral("5"));
    options.addFlag("json-lines", QStringLiteral("Prints a JSON document in one line for each group."));
    addMeasuringOptions(options);
}

/// For how many seconds an incomplete group is waited for; infinite for "never".
double giveUpOf(const Options& options) {
    const QString text = options.text("give-up");
    return text == QLatin1String("never") ? std::numeric_limits<double>::infinity()
                                          : options.toNumber(text, QStringLiteral("--give-up"), kNotNegative);
}

/// Whether `inner` is `outer` or lies inside.
bool isWithin(const std::string& inner, const std::string& outer) {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path in = fs::weakly_canonical(inner, error);
    const fs::path out = error ? fs::path() : fs::weakly_canonical(outer, error);
    const fs::path relative = in.lexically_relative(out);
    return !error && !relative.empty() && *relative.begin() != "..";
}

void check(const Options& options, const WatchOptions& watch) {
    if (options.isSet("poll") && !watch.isFollowing) {
        options.fail(QStringLiteral("--poll is for --follow"));
    }
    if (watch.failOn.isSet() && watch.isFollowing) {
        options.fail(QStringLiteral("--fail-on is for runs without --follow"));
    }
    if (options.isSet("station") && watch.layout.find("{station}") != std::string::npos) {
        options.fail(QStringLiteral("--station is for a --layout without {station}"));
    }
    if (isWithin(watch.out, watch.folder)) {
        options.fail(QStringLiteral("--out names '%1', which is inside of '%2': results are no recordings")
                         .arg(fromBytes(watch.out), fromBytes(watch.folder)));
    }
}

} // namespace

std::optional<WatchOptions> parseWatchOptions(const QStringList& arguments) {
    Options options("watch", "DIR --settings FILE --out OUT [options]", QLatin1String(kDescription), kDetails);
    addOptions(options);
    if (!options.parse(arguments)) {
        return std::nullopt;
    }
    constexpr Bounds kPolls{0.1, 86400.0};
    const QString folder = options.arguments("folder", 1, 1).front();
    MeasuringOptions measuring = measuringOptions(options);
    measuring.files.settings = options.needed("settings");
    measuring.labels.station = labelOf(options, "station", KxInspect::whyNoLabel);
    WatchOptions watch{std::move(measuring),
                       toBytes(folder),
                       toBytes(options.needed("out")),
                       toBytes(options.text("layout")),
                       {static_cast<double>(options.number("settle", kNotNegative)), giveUpOf(options)},
                       options.isSet("follow"),
                       static_cast<double>(options.number("poll", kPolls)),
                       options.isSet("json-lines")};
    check(options, watch);
    return watch;
}

} // namespace kxtool
