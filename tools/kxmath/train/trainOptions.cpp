// What the user of kxmath train asks for.
#include "tools/kxmath/train/trainOptions.h"

#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/taskRunner.h"

#include "tools/kxmath/console/options.h"

#include <KxInspect/Settings.h>
#include <KxInspect/Train.h>

#include <filesystem>
#include <system_error>

namespace kxtool {

namespace {

constexpr const char* kDescription =
    R"(Finds the wheels in the recordings of sensors beside a track: measures the distance across each wheel pair from two
that face each other, and diameter, flange, hollow and rim of each wheel from all sensors of its side. With --defects it
also judges the treads of the wheels.

A recording is a file of profile records or 2-D cloud sections named PREFIX_SERIAL.bin; SERIAL is the serial number
of the sensor, which the settings name as SENSORn/SN. Two recordings are those of SENSOR1 and SENSOR2. With more the
settings give the side of each sensor and its pose; the first ones between the rails on either side give the distances, and
one of the recordings may be missing or damaged, which is a warning. The work is done in a fresh folder inside the
--out folder: its name begins with "incomplete-" until the pass is done and is then pass-NAME1-NAME2, with a number
behind it where that is taken. It holds result.json, copies of the settings and, unless --keep says otherwise, the
profiles that were chosen for the distances and the cross-sections of the wheels as one profile set, profiles.bin. It
holds no link and names no other folder: it may be moved and copied. A run that fails removes it, a killed run leaves
the incomplete one.

--again RESULT --recordings DIR measures such a result again, with the settings beside it: it finds the recordings by
their hashes, whatever they are called now, and says whether the same bytes come out, or which input is missing or has
changed. Nothing is written; with --out the new result is kept there.)";

constexpr const char* kDetails =
    R"(
Settings (INI file), n being the number of the sensor:
  needed:   SENSORn/SN, SENSORn/level_k, SENSORn/level_b (level line y = k x + b, points below it are wheel),
            SENSORn/k2, SENSORn/b2 (reference line), calibrLines2 (base distance between the reference lines);
            in mode 3 also SENSORn/lowlevel_k, SENSORn/lowlevel_b
  optional: minProfsInWheel (5), SENSORn/wndSize (3), SENSORn/higherPoinInWnd (1), SENSORn/maxdY (1.5),
            SENSORn/minPointsIn (2); SENSORn/side (left or right) and the pose SENSORn/x, y, z, alpha, beta, gamma, for
            the measures of wheels; in mode 3 SENSORn/maxCorr (1), SENSORn/parts (0), SENSORn/maxDist (10)
Values out of range are refused. Warnings name unknown keys with the nearest known one, level lines that no point or
every point is below, and reference lines that are more than 3 degrees off the wheels.

Defects: --defects names an INI file with other lines. Each profile of each wheel is cut between the low line
(SENSORn/lowLevel_k, lowLevel_b) and the level line (SENSORn/level_k, level_b) of that file, which keep out the flange
and what is beyond the tread, and is compared with a smooth curve (a polynomial of degree 20). Optional keys:
maxDeviation (0.3 mm), pointsHigher (5: with more points farther off the curve than maxDeviation a profile is
defective), minimalDefectsProf (1: with more defective profiles a wheel is defective). The key "use" is not read.

Roundness: a flat across the whole tread does not show in a single profile. With --defects the radius of the tread in
all profiles of a wheel is therefore compared with a circle about the axle, which is the centre of the circle of the
flange tip. The recordings must hold z in mm along the track. Where the laser planes stand askew, the
settings should hold the poses of the sensors (SENSORn/alpha, beta, gamma). Optional keys: maxRadiusDeviation (0.03 mm), radiusProfiles (3: a wheel is out of round when its tread is farther off the circle,
to one side, in so many successive profiles). Both limits grow with the noise found in the profiles. A pass shows
only part of the circumference, which is told as seen.

Both need the tread, 45 to 95 mm behind the reference line. A wheel that does not show enough of it between the lines
is "not judged", which is neither sound nor defective; all outputs say how many of how many were judged, and why the
others were not.

Wheels are paired by number. Where the recordings hold different numbers of wheels, they are paired by their place
along the pass: the z of profile records where both recordings have one that rises, else the record number. A wheel
without partner is listed without a distance, and a warning is printed.

CSV fields: pair; for each side s wheel_s, profiles_s, first_record_s, last_record_s, chosen_profile_s, points_s;
distance, deviation, verdict (ok or out); with --defects for each side judged_profiles_s, defective_profiles_s,
defective_numbers_s, deviating_points_s, largest_deviation_s, tread_limit_s, tread_s (sound or defective), then for
each side compared_profiles_s, off_circle_numbers_s, radius_deviation_s, radius_deviation_low_s, radius_deviation_high_s
(the 95 % interval), roundness_limit_s, seen_s, roundness_s (round or out of round); distance_reason,
and with --defects for each side tread_reason_s, roundness_reason_s: why there is no verdict; vehicle, bogie, axle,
mark, number, vehicle_reason; with --limits for each side wheel_verdict_s. JSON fields: schema, identity (station,
line, track, direction, time, speed, settings, defects, consist, limits), command, version, mode, settings,
recordings, baseDistance, nominal, tolerance, distances, judged (of distances, treads and roundness: judged, of),
defectLimits, pairs (pair, sides, backToBack, distance (the same), deviation, inTolerance, verdict, reason, vehicle,
bogie, axle), train (vehicles), assessment (limits, values, verdicts), kept (keep, profiles: file, records: which
profile each record of profiles.bin is), warnings. A missing value is an empty field in
CSV and null in JSON. --sheet has a line per wheel with the same fields for every pass: which wheel it is, verdict, and for
each measure MEASURE, MEASURE_low, MEASURE_high, MEASURE_interval_holds, its limits, MEASURE_verdict, MEASURE_doubtful and
MEASURE_reason; docs/train.md lists them. Records and profiles are counted from 1; lengths are in mm.

Exit codes:
  0  done
  1  --again: the result is not the same; else no result: no wheel, no pair with a distance, or with --defects no tread that could be judged (files that were
     asked for are written)
  2  wrong use
  3  --again: an input is missing or has changed; else a recording or the settings are missing, unreadable, damaged or do not fit each other
  4  output could not be written
  5  a verdict that --fail-on lists was given
  6  not enough memory
)";

void addOptions(Options& options) {
    options.addArgument("REC...", QStringLiteral("Recordings, one of each sensor; or the folder that holds them."));
    options.addOption("settings",
                      QStringLiteral("INI file with the keys below. Default for a folder: its settings.ini."), "FILE");
    addMeasuringOptions(options);
    options.addOption("station", QStringLiteral("Name of the station, for the result. Nothing is assumed without it."),
                      "TEXT");
    options.addOption("time", QStringLiteral("When it passed: ISO 8601 with zone, as in 2026-03-29T01:59:07+01:00."),
                      "TIME");
    options.addOption("speed", QStringLiteral("How fast it was; records do not hold it."), "KM/H");
    options.addOption("out",
                      QStringLiteral("Where the folder of the pass is made; made too where it is missing. Default: the "
                                     "current folder."),
                      "DIR", QStringLiteral("."));
    options.addOption(
        "json", QStringLiteral("Writes the result as JSON; - for the standard output, in place of the table."), "FILE");
    options.addOption("csv", QStringLiteral("The same as CSV."), "FILE");
    options.addOption("sheet", QStringLiteral("Writes the sheet as CSV: a row per wheel with all measures."), "FILE");
    options.addOption("report",
                      QStringLiteral("Writes an HTML page with the sheet and plots that needs no other file."), "FILE");
    options.addOption("wheel", QStringLiteral("The wheel pair whose profiles the page shows. Default: 1."), "N",
                      QStringLiteral("1"));
    options.addOption("again",
                      QStringLiteral("Measures a result again, with its own settings and options, and compares: "
                                     "result.json or the folder that holds it. Takes no REC."),
                      "RESULT");
    options.addOption("recordings",
                      QStringLiteral("Where its recordings are looked for, by their SHA-256, folders inside it too."),
                      "DIR");
}

bool isDirectory(const QString& path) {
    std::error_code ignored; // what is not known to be one is none
    return std::filesystem::is_directory(toBytes(path), ignored);
}

AgainOptions againOptions(const Options& options) {
    const QStringList given = options.namesGiven();
    for (const QString& option : given) {
        if (option != QLatin1String("again") && option != QLatin1String("recordings") &&
            option != QLatin1String("out") && option != QLatin1String("jobs")) {
            options.fail(QStringLiteral("--%1 is not for --again, which measures as the result says").arg(option));
        }
    }
    options.arguments("recordings beside --again", 0, 0);
    const QString result = nameOf(options, "again", QStringLiteral("a result"));
    const QString recordings = options.needed("recordings");
    const QString out = options.isSet("out") ? nameOf(options, "out", QStringLiteral("a folder")) : QString();
    return {result, recordings, out, jobsOf(options)};
}

} // namespace

std::optional<std::variant<TrainOptions, AgainOptions>> parseTrainOptions(const QStringList& arguments) {
    Options options("train", "REC... --settings FILE [options]", QLatin1String(kDescription), kDetails);
    addOptions(options);
    if (!options.parse(arguments)) {
        return std::nullopt;
    }
    if (options.isSet("again")) {
        return againOptions(options);
    }
    if (options.isSet("recordings")) {
        options.fail(QStringLiteral("--recordings is for --again RESULT"));
    }
    std::vector<std::string> recordings;
    const QStringList given = options.arguments("recordings", 0);
    const bool isFolder = given.size() == 1 && isDirectory(given.front());
    const QString settings = isFolder && !options.isSet("settings") ? given.front() + QStringLiteral("/settings.ini")
                                                                    : options.needed("settings");
    if (isFolder) {
        recordings = KxInspect::recordingsIn(toBytes(given.front()), KxInspect::readStationSettings(toBytes(settings)));
    } else {
        for (const QString& path : options.arguments("recordings", 2)) {
            recordings.push_back(toBytes(path));
        }
    }
    MeasuringOptions measuring = measuringOptions(options);
    measuring.files.recordings = std::move(recordings);
    measuring.files.settings = settings;
    constexpr Bounds kSpeeds{0.0, 1000.0, true};
    measuring.labels.station = labelOf(options, "station", KxInspect::whyNoLabel);
    measuring.labels.time = labelOf(options, "time", KxInspect::whyNoTime);
    measuring.labels.speed = options.numberIfSet("speed", kSpeeds);
    return TrainOptions{std::move(measuring),     nameOf(options, "out", QStringLiteral("a folder")),
                        options.output("json"),   options.output("csv"),
                        options.output("report"), options.wholeNumber("wheel", 1),
                        options.output("sheet")};
}

} // namespace kxtool
