// The arguments of kxmath grid.
#include "tools/kxmath/grid/gridOptions.h"

#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/options.h"

namespace kxtool {

namespace {

constexpr const char* kName = "grid";

constexpr const char* kDescription =
    R"(Makes a height map of a scan: one row per profile, columns S apart, the height of the profile in
each cell. Finds its seeds: connected patches without steps, searched on the mean heights of blocks
of cells.

SET is a profile set (profile records; the positions in the file are not used) or a file of 2-D
cloud sections.)";

constexpr const char* kDetails =
    R"(
--seeds takes START,END,STEP,TOLERANCE,MINCOUNT,MAXDROP. An empty or missing field has its default:
  START      height at which the search starts, mm; default: the largest block mean
  END        height at which it ends, mm; default: the smallest block mean
  STEP       distance of the search levels from START down to END, mm; default: TOLERANCE
  TOLERANCE  a seed starts at a mean closer than this to a search level, and grows to neighbours
             that differ by less than this, mm. Default: ten times the median difference of
             neighbouring means, at least 1/500 of the range of the means. Steps in height below
             blocks times TOLERANCE are bridged.
  MINCOUNT   smallest number of cells; default: twice the longer side of the grid
  MAXDROP    once its mean is this much below the first one, a seed grows only downwards, mm;
             default: no limit

--out writes 3-D clouds, seed-001.bin and so on, in the coordinates of the scan. A folder that
already holds such files is refused.

JSON fields: command, version, set, records, emptyRecords, step, gap, rows, columns, interpolatedRows,
originX, originZ, heights, heightRange, blockSize, meanRange, edgeCut, search, folder, seeds (seed,
cells, area, mean, deviation, x, y, z, file, reasons), reasons, warnings. A missing value is null,
and reasons says why; lengths are in mm.

Exit codes:
  0  done, also when no seed is found
  1  the pitch gives no height map
  2  wrong use
  3  the scan is missing, unreadable, damaged or without points
  4  an output could not be written
  5  a verdict of --fail-on was given
  6  not enough memory
)";

const std::vector<PossibleVerdict> kVerdicts = {{Verdict::NotJudged, "no seed was found"}};

void declare(Options& options) {
    const auto add = [&](const char* name, const char* help, const char* value, const char* byDefault = "") {
        options.addOption(name, QLatin1String(help), value, QLatin1String(byDefault));
    };
    options.addArgument("SET", QStringLiteral("The scan."));
    add("step", "Pitch of the grid along both axes, mm.", "S");
    add("z0", "Position of the first profile, mm. Default: 0.", "Z", "0");
    add("dz",
        "Distance of the profiles, mm. Default: S. Closer ones are first put into slices S apart; between others "
        "heights are interpolated within G, and profiles further apart than that are refused.",
        "D");
    add("gap",
        "Largest distance of neighbouring points and profiles between which heights are interpolated, mm. Default: 2.5 "
        "times the larger of S and the median distance of the points.",
        "G");
    add("blocks", "Rows and columns of a block for the block means. Default: 4.", "N", "4");
    add("edge-cut",
        "Cuts off the rims of the scan first: in its outer thirds, where the block mean minus that of the neighbour "
        "towards the border is less than T, mm (-5: where it drops inwards by more than 5 mm).",
        "T");
    add("seeds", "Limits of the search for seeds, see below.", "LIST");
    add("out", "Writes each seed as a cloud file into this folder; it is created if missing.", "DIR");
    add("map",
        "Writes the height map; the ending of the name is its kind: .gsf .sdf .vti .stl .npy, or one for points, as of "
        "kxmath convert.",
        "FILE");
    add("json", "Writes the result as JSON; - is the standard output, instead of the table.", "FILE");
    add("report", "Writes a report with pictures, one HTML file.", "FILE");
    FailOn::declare(options, kVerdicts);
}

/// Reads the fields of --seeds. An empty or missing field keeps its default.
void parseSeeds(const Options& options, KxInspect::PatchOptions& patches) {
    constexpr qsizetype kFields = 6;
    QStringList fields = options.text("seeds").split(QLatin1Char(','));
    if (fields.size() > kFields) {
        options.failNeed(QStringLiteral("--seeds"), QStringLiteral("at most %1 fields").arg(kFields),
                         options.text("seeds"));
    }
    fields.resize(kFields);
    const auto what = [](const char* name) { return QLatin1String(name) + QStringLiteral(" of --seeds"); };
    const auto number = [&](qsizetype field, const char* name, const Bounds& bounds = {}) -> std::optional<float> {
        const QString value = fields.at(field).trimmed();
        return value.isEmpty() ? std::nullopt
                               : std::optional(static_cast<float>(options.toNumber(value, what(name), bounds)));
    };
    patches.start = number(0, "START");
    patches.end = number(1, "END");
    patches.step = number(2, "STEP");
    patches.tolerance = number(3, "TOLERANCE", kAbove0);
    if (const QString count = fields.at(4).trimmed(); !count.isEmpty()) {
        patches.minCount = options.toWholeNumber(count, what("MINCOUNT"), 1);
    }
    patches.maxDrop = number(5, "MAXDROP").value_or(patches.maxDrop);
}

KxInspect::GridOptions gridOptions(const Options& options) {
    constexpr int kLargestBlock = 1000;
    constexpr double kFarthest = 1e6; // farther away, floats no longer tell neighbouring rows apart
    options.needed("step");
    KxInspect::GridOptions grid;
    grid.map.pitch = options.number("step", kAbove0);
    grid.map.gap = options.numberIfSet("gap", kAbove0);
    grid.firstZ = options.number("z0", {-kFarthest, kFarthest});
    grid.distance = options.numberIfSet("dz", kAbove0);
    grid.patches.blockSize = options.wholeNumber("blocks", 1, kLargestBlock);
    grid.patches.edgeCut = options.numberIfSet("edge-cut");
    parseSeeds(options, grid.patches);
    return grid;
}

/// The kind of the file of --map.
KxInspect::FileKind mapKind(const Options& options) {
    const std::optional<KxInspect::FileKind> kind = KxInspect::kindByFileName(toBytes(options.text("map")));
    if (!kind && options.isSet("map")) {
        options.failNeed(QStringLiteral("--map"), QStringLiteral("a file name whose ending names a kind"),
                         options.text("map"));
    }
    return kind.value_or(KxInspect::FileKind::Gsf);
}

} // namespace

std::optional<GridArguments> parseGridArguments(const QStringList& arguments) {
    Options options(kName, "SET --step S [options]", QLatin1String(kDescription), kDetails);
    declare(options);
    if (!options.parse(arguments)) {
        return {};
    }
    options.output("out"); // an empty name is refused
    return GridArguments{options.arguments("scan", 1, 1).constFirst(),
                         gridOptions(options),
                         options.text("out"),
                         options.text("map"),
                         mapKind(options),
                         options.output("json"),
                         options.output("report"),
                         FailOn(options, kVerdicts)};
}

} // namespace kxtool
