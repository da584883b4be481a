// The arguments of kxmath view.
#include "tools/kxmath/view/viewOptions.h"

#include "report/elements/textList.h"
#include "tools/kxmath/console/textOptions.h"

#include <QtCore/QFileInfo>

namespace kxtool {

namespace {

constexpr const char* kName = "view";

constexpr const char* kDescription =
    R"(Shows what files hold as one HTML page that needs no server, no network and no other file, and
prints its path. The content determines the kind:

  profile    points with x and y; several files on one plot, with cursors, zoom and deviations
  scan       a recording, a profile set or a file of 2-D cloud sections: its height map, one profile at
             a time, and the profiles one above the other
  map        a height map (gsf, sdf, vti, and npy with --step)
  cloud      points with x, y and z, coloured by height or as in the file
  result     the JSON of train, wheel, conicity, calibrate, grid or profile: its report)";

constexpr const char* kDetails =
    R"(
Exit codes: 0 done, 1 a file has no points, 2 wrong use, 3 a file is missing, unreadable or damaged,
4 the page could not be written, 6 not enough memory.
)";

void declare(Options& options) {
    const auto add = [&](const char* name, const char* help, const char* value, const char* byDefault = "") {
        options.addOption(name, QLatin1String(help), value, QLatin1String(byDefault));
    };
    options.addArgument("FILE...", QStringLiteral("The files: one, or several that hold a profile each."));
    add("out",
        "The page; - is the standard output. Default: the name of the first file and .html, in the current folder.",
        "PAGE.html");
    add("compare",
        "Shows the deviations of FILE from FILE2 along y: of two profiles, two height maps, or with --step two scans.",
        "FILE2");
    add("record", "Shows record N of a scan or recording as a profile, counted from 1.", "N");
    add("step",
        "Distance of the rows and columns of the height map, mm: the map that kxmath grid makes. Default: a row for "
        "each "
        "profile, columns at the median distance of the points.",
        "S");
    add("dz", "Distance of the profiles of a scan, mm. Default: S.", "D");
    add("colours", "Colours of heights: viridis, cividis or gray. Deviations have colours about 0.", "NAME", "viridis");
    add("resolution", "The numbers on the page are rounded to this, mm.", "MM", "0.001");
    add("max-size",
        "Largest size of the page, 1 million bytes; a page that would be larger leaves data out and says so.", "MB",
        "20");
    addTextOptions(options, true);
}

kxreport::ViewSettings settingsOf(const Options& options) {
    constexpr double kFinest = 1e-6;
    constexpr double kCoarsest = 1000.0;
    constexpr double kSmallest = 0.2;
    constexpr double kLargest = 500.0;
    constexpr double kMillion = 1e6;
    const QString colours = options.oneOf(
        "colours", kxreport::textList({QStringLiteral("viridis"), QStringLiteral("cividis"), QStringLiteral("gray")}));
    kxreport::ViewSettings settings;
    settings.resolution =
        options.toNumber(options.text("resolution"), QStringLiteral("--resolution"), {kFinest, kCoarsest});
    settings.mostBytes = static_cast<qsizetype>(
        options.toNumber(options.text("max-size"), QStringLiteral("--max-size"), {kSmallest, kLargest}) * kMillion);
    settings.colours = kxreport::colourMapByName(colours).value_or(settings.colours);
    return settings;
}

QString pageName(const Options& options, const QString& file) {
    const QString name = options.text("out");
    return options.isSet("out") ? name : QFileInfo(file).fileName() + QStringLiteral(".html");
}

} // namespace

std::optional<ViewArguments> parseViewArguments(const QStringList& arguments) {
    Options options(kName, "FILE... [options]", QLatin1String(kDescription), kDetails);
    declare(options);
    if (!options.parse(arguments)) {
        return {};
    }
    const QStringList files = options.arguments("files", 1);
    options.output("out"); // an empty name is refused
    QStringList all = files;
    if (options.isSet("compare")) {
        all.append(options.text("compare"));
    }
    const QString page = pageName(options, files.constFirst());
    ViewArguments view{files,
                       options.text("compare"),
                       {},
                       options.numberIfSet("step", kAbove0),
                       options.numberIfSet("dz", kAbove0),
                       textOptions(options, all, true),
                       settingsOf(options),
                       page,
                       OutputFile(QStringLiteral("-o"), page)};
    if (options.isSet("record")) {
        view.record = options.wholeNumber("record", 1);
    }
    if (view.distance && !view.step) {
        options.fail(QStringLiteral("--dz needs --step"));
    }
    checkOutputs({&view.page}, all);
    return view;
}

} // namespace kxtool
