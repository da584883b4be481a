// kxmath grid: from a scan to its height map, block means and seeds.
#include "inspect/scan/scanGrid.h"
#include "report/grid/gridReport.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/grid/gridText.h"
#include "tools/kxmath/grid/patchFiles.h"

#include <cmath>

namespace kxtool {

namespace {

constexpr const char* kName = "grid";

constexpr const char* kDescription =
    R"(Makes a height map of a scan: a row for each profile, columns S apart, and the height of the profile in each cell.
Finds its seeds: connected patches without steps, searched on the mean heights of blocks of cells.

SET is a profile set (profile records; the positions in the file are not used) or a file of 2-D cloud sections.)";

constexpr const char* kDetails =
    R"(
--seeds takes START,END,STEP,TOLERANCE,MINCOUNT,MAXDROP. A field that is empty or missing has its default:
  START      height at which the search starts; default: the largest block mean
  END        height at which it ends; default: the smallest block mean
  STEP       distance of the heights from START down to END; default: TOLERANCE
  TOLERANCE  a seed starts at a mean closer than this to one of these heights, and grows to neighbours that differ by
             less than this. Default: ten times the median difference of neighbouring means, at least 1/500 of
             the range of the means. Steps in height below blocks times TOLERANCE are bridged.
  MINCOUNT   least number of cells; default: twice the longer side of the grid
  MAXDROP    from a mean that lies this much below the first one a seed only grows downwards; default: no limit

The files of --out are 3-D clouds, seed-001.bin and so on, in the coordinates of the scan. A folder that holds such
files already is refused.

JSON fields: command, version, set, records, emptyRecords, step, gap, rows, columns, originX, originZ, heights,
heightRange, blockSize, meanRange, edgeCut, search, folder, seeds (seed, cells, area, mean, deviation, x, y, z, file),
warnings. A missing value is null; lengths are in mm.

Exit codes:
  0  done, also when there is no seed
  1  the pitch gives no height map
  2  wrong use
  3  the scan is missing, unreadable, damaged or without points
  4  output could not be written
)";

float toNumber(const QString& text, const QString& what) {
    bool isNumber = false;
    const float number = text.toFloat(&isNumber);
    if (!isNumber || !std::isfinite(number)) {
        failUse(kName, QStringLiteral("%1 is no number: '%2'").arg(what, text));
    }
    return number;
}

float toNumberAbove0(const QString& text, const QString& what) {
    const float number = toNumber(text, what);
    if (!(number > 0.0f)) {
        failUse(kName, QStringLiteral("%1 must be above 0").arg(what));
    }
    return number;
}

int toCount(const QString& text, const QString& what, int largest) {
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber || number < 1 || number > largest) {
        failUse(kName, QStringLiteral("%1 is no whole number from 1 to %2: '%3'").arg(what).arg(largest).arg(text));
    }
    return number;
}

SeedOptions toSeedOptions(const QString& text) {
    QStringList fields = text.split(QLatin1Char(','));
    constexpr qsizetype kFields = 6;
    if (fields.size() > kFields) {
        failUse(kName, QStringLiteral("--seeds has more than %1 fields").arg(kFields));
    }
    fields.resize(kFields);
    const auto number = [&](qsizetype field, const char* name) -> std::optional<float> {
        const QString value = fields.at(field).trimmed();
        return value.isEmpty() ? std::nullopt : std::optional(toNumber(value, QLatin1String(name)));
    };
    SeedOptions seeds;
    seeds.start = number(0, "START of --seeds");
    seeds.end = number(1, "END of --seeds");
    seeds.step = number(2, "STEP of --seeds");
    seeds.tolerance = number(3, "TOLERANCE of --seeds");
    if (seeds.tolerance && !(*seeds.tolerance > 0.0f)) {
        failUse(kName, QStringLiteral("TOLERANCE of --seeds must be above 0"));
    }
    if (const QString count = fields.at(4).trimmed(); !count.isEmpty()) {
        seeds.minCount = toCount(count, QStringLiteral("MINCOUNT of --seeds"), std::numeric_limits<int>::max());
    }
    seeds.maxDrop = number(5, "MAXDROP of --seeds").value_or(seeds.maxDrop);
    return seeds;
}

class GridParser {
public:
    GridParser() {
        parser_.setApplicationDescription(QLatin1String(kDescription));
        parser_.addPositionalArgument(QStringLiteral("SET"), QStringLiteral("The scan."));
        parser_.addOptions({step_, z0_, dz_, gap_, blocks_, edgeCut_, seeds_, out_, json_, report_});
    }

    /// Throws a CommandError when the arguments are wrong. Empty when help was asked for and printed.
    std::optional<GridOptions> parse(const QStringList& arguments) {
        if (!parseOrHelp(parser_, arguments, kName, "SET --step S [options]", kDetails)) {
            return std::nullopt;
        }
        const QStringList names = parser_.positionalArguments();
        if (names.size() != 1) {
            failUse(kName, QStringLiteral("one scan is needed, not %1").arg(names.size()));
        }
        if (!parser_.isSet(step_)) {
            failUse(kName, QStringLiteral("--step S is needed"));
        }
        constexpr int kLargestBlock = 1000;
        GridOptions options{names[0],
                            0.0f,
                            0.0f,
                            std::nullopt,
                            std::nullopt,
                            1,
                            std::nullopt,
                            {},
                            {},
                            outputOption(parser_, "json"),
                            outputOption(parser_, "report")};
        options.step = toNumberAbove0(parser_.value(step_), QStringLiteral("--step"));
        options.z0 = toNumber(parser_.value(z0_), QStringLiteral("--z0"));
        options.blockSize = toCount(parser_.value(blocks_), QStringLiteral("--blocks"), kLargestBlock);
        options.seeds = toSeedOptions(parser_.value(seeds_));
        if (parser_.isSet(dz_)) {
            options.dz = toNumberAbove0(parser_.value(dz_), QStringLiteral("--dz"));
        }
        if (parser_.isSet(gap_)) {
            options.gap = toNumberAbove0(parser_.value(gap_), QStringLiteral("--gap"));
        }
        if (parser_.isSet(edgeCut_)) {
            options.edgeCut = toNumber(parser_.value(edgeCut_), QStringLiteral("--edge-cut"));
        }
        options.seedFolder = outputOption(parser_, "out").isWanted() ? parser_.value(out_) : QString();
        return options;
    }

private:
    static QCommandLineOption option(const char* name, const char* description, const char* value,
                                     const char* byDefault = "") {
        return {QLatin1String(name), QLatin1String(description), QLatin1String(value), QLatin1String(byDefault)};
    }

    QCommandLineParser parser_;
    const QCommandLineOption step_ = option("step", "Pitch of the grid along both axes, mm.", "S");
    const QCommandLineOption z0_ = option("z0", "Position of the first profile. Default: 0.", "Z", "0");
    const QCommandLineOption dz_ =
        option("dz", "Distance of the profiles. Default: S; otherwise the scan is cut into slices S apart first.", "D");
    const QCommandLineOption gap_ =
        option("gap",
               "Largest distance of neighbouring points between which heights are interpolated. Default: 2.5 times "
               "the larger of S and the median distance of the points.",
               "G");
    const QCommandLineOption blocks_ =
        option("blocks", "Rows and columns of the blocks that means are taken of. Default: 4.", "N", "4");
    const QCommandLineOption edgeCut_ =
        option("edge-cut",
               "Cuts away the rims of the scan first: in its outer thirds, where the block mean minus that of the "
               "neighbour towards the border is less than T (-5: where it drops inwards by more than 5 mm).",
               "T");
    const QCommandLineOption seeds_ = option("seeds", "Limits of the search for seeds, see below.", "LIST");
    const QCommandLineOption out_ =
        option("out", "Writes each seed as a cloud file into this folder, which is made where it is missing.", "DIR");
    const QCommandLineOption json_ =
        option("json", "Writes the result as JSON; - for the standard output, in place of the table.", "FILE");
    const QCommandLineOption report_ =
        option("report", "Writes an HTML page with pictures that needs no other file.", "FILE");
};

int run(const GridOptions& options) {
    Progress progress;
    checkOutputs({&options.json, &options.report}, {options.set});
    if (!options.seedFolder.isEmpty()) {
        checkPatchFolder(options.seedFolder);
    }
    Scan scan;
    readScan(options, progress, scan);
    ScanGrid grid = measureGrid(options, scan, progress);
    if (!options.seedFolder.isEmpty()) {
        writePatches(options.seedFolder, grid);
    }
    progress.wipe();
    if (options.report.isWanted()) {
        options.report.write(gridReport(options, grid));
    }
    if (options.json.isWanted()) {
        options.json.write(gridJson(options, grid));
    }
    if (!options.json.isStandardOutput() && !options.report.isStandardOutput()) {
        printOutput(gridText(options, grid));
    }
    for (const QString& warning : grid.warnings) {
        printLine(kName, QStringLiteral("warning: ") + warning);
    }
    return Done;
}

} // namespace

int runGrid(const QStringList& arguments) {
    return runCommand(kName, [&] {
        const std::optional<GridOptions> options = GridParser().parse(arguments);
        return options ? run(*options) : Done;
    });
}

} // namespace kxtool
