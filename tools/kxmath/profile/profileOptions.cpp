// The arguments of kxmath profile.
#include "tools/kxmath/profile/profileOptions.h"

#include "report/elements/textList.h"
#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/fileKind.h"
#include "tools/kxmath/console/textOptions.h"

#include <KxInspect/Error.h>

#include <array>

namespace kxtool {

namespace {

using KxInspect::ProfileFeature;

constexpr const char* kName = "profile";

constexpr const char* kDescription =
    R"(Runs a chain of operations on a profile, one after the other, and shows it before and after: the
right parameters are found by looking. kxmath profile --list explains each operation. Steps stand
between blanks, arguments behind a colon:

  kxmath profile scan.bin --record 12 --do "removeNoise:3,1,1.5 trimX:-10,10 kihFilter20" --line
      --report page.html -o clean.csv

Windows count points, lengths are in mm, angles in degrees; nan is no bound. An operation that cannot
work or leaves no points ends the chain, and the sentence on stderr says which and why. Then, and
where something that is looked for is not found, the exit code is 1.)";

constexpr const char* kDetails =
    R"(
--detect takes weld, circle, cuts and joint. cuts finds steps of the level: a ridge or groove in which
the sum of y of WINDOW points behind a place less that of those before it is beyond THRESHOLD on both
sides; cuts alone is cuts:5,1.5.

JSON fields: command, version, file, record, points, pointsAfter, reason (why the chain ended early), x,
y (what the points hold at the end), steps (step, before, after, missing: points; isChanged), findings
(name, reason, values, points). A missing value is null.

Exit codes: 0 done, 1 a step failed, or something that was looked for was not found, 2 wrong use, 3 the
file is missing, unreadable or damaged, or no profile, 4 an output could not be written, 6 not enough
memory.
)";

void declare(Options& options) {
    const auto add = [&](const char* name, const char* help, const char* value) {
        options.addOption(name, QLatin1String(help), value);
    };
    options.addArgument("FILE",
                        QStringLiteral("The profile: any file of points with x and y, or a scan or recording."));
    add("do", "The operations, in their order, between blanks.", "STEPS");
    options.addFlag("list", QStringLiteral("Explains each operation in one line."));
    options.addFlag("line", QStringLiteral("Fits a line to the resulting points, by least squares of y."));
    options.addFlag("circle", QStringLiteral("Fits a circle to the resulting points."));
    add("polynom", "Fits a polynomial of degree N, 0 to 15, to the resulting points.", "N");
    add("detect",
        "Looks for features in the resulting points, between blanks: weld, circle, cuts[:WINDOW,THRESHOLD], joint.",
        "FEATURES");
    add("record", "Takes record N of a scan or recording, counted from 1.", "N");
    add("report", "Writes an HTML page: the profile before and after, what was found, the steps.", "PAGE");
    add("json", "Writes the results as JSON; - is the standard output.", "FILE");
    add("out",
        "Writes the resulting profile; the ending of the name is its kind, as for kxmath convert; - is the standard "
        "output.",
        "OUT");
    add("to", "Kind of OUT.", "kind");
    addTextOptions(options);
}

/// Reads "cuts:5,1.5".
void readCuts(const Options& options, const QString& text, KxInspect::ProfileOptions& chain) {
    constexpr int kMost = 65535;
    constexpr Bounds kThresholds{0.0, 1e6, true};
    const QStringList fields = text.section(QLatin1Char(':'), 1).split(QLatin1Char(','));
    if (fields.size() != 2) {
        options.failNeed(QStringLiteral("cuts of --detect"), QStringLiteral("WINDOW,THRESHOLD behind its colon"), text);
    }
    chain.cutWindow = options.toWholeNumber(fields[0], QStringLiteral("WINDOW of --detect cuts"), 1, kMost);
    chain.cutThreshold =
        static_cast<float>(options.toNumber(fields[1], QStringLiteral("THRESHOLD of --detect cuts"), kThresholds));
}

void readFeatures(const Options& options, KxInspect::ProfileOptions& chain) {
    constexpr std::array kFeatures = {ProfileFeature::Weld, ProfileFeature::Circle, ProfileFeature::Cuts,
                                      ProfileFeature::Joint};
    QStringList names;
    for (const ProfileFeature feature : kFeatures) {
        names.append(QLatin1String(nameOf(feature)));
    }
    for (const QString& text : options.text("detect").simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const bool isCuts = text.startsWith(QStringLiteral("cuts:"));
        const QString name = isCuts ? QStringLiteral("cuts") : text;
        options.checkChoice(name, QStringLiteral("--detect"), names);
        chain.features.push_back(kFeatures[static_cast<std::size_t>(names.indexOf(name))]);
        if (isCuts) {
            readCuts(options, text, chain);
        }
    }
    if (options.isSet("detect") && chain.features.empty()) {
        options.checkChoice(options.text("detect"), QStringLiteral("--detect"), names);
    }
}

KxInspect::ProfileOptions chainOf(const Options& options) {
    KxInspect::ProfileOptions chain;
    try {
        chain.steps = KxInspect::profileSteps(options.text("do").toStdString());
    } catch (const KxInspect::Error& error) {
        throw CommandError{WrongUse,
                           QStringLiteral("--do, %1, see kxmath profile --list").arg(QString::fromUtf8(error.what()))};
    }
    chain.line = options.isSet("line");
    chain.circle = options.isSet("circle");
    if (options.isSet("polynom")) {
        chain.polynomial = options.wholeNumber("polynom", 0, KxInspect::kMostDegree);
    }
    readFeatures(options, chain);
    return chain;
}

} // namespace

std::optional<std::variant<ProfileArguments, ListOfOperations>> parseProfileArguments(const QStringList& arguments) {
    Options options(kName, "FILE [--do STEPS] [options]", QLatin1String(kDescription), kDetails);
    declare(options);
    if (!options.parse(arguments)) {
        return {};
    }
    if (options.isSet("list")) {
        options.arguments("files beside --list", 0, 0);
        return ListOfOperations();
    }
    const QStringList files = options.arguments("file", 1, 1);
    const OutputFile out = options.output("out");
    ProfileArguments profile{files.constFirst(),          {},
                             textOptions(options, files), chainOf(options),
                             options.text("out"),         KxInspect::FileKind::Cloud,
                             options.output("json"),      options.output("report")};
    if (options.isSet("record")) {
        profile.record = options.wholeNumber("record", 1);
    }
    if (options.isSet("to") && !out.isWanted()) {
        options.fail(QStringLiteral("--to needs --out"));
    }
    if (out.isWanted()) {
        profile.kind = kindOfFile(options, "to", profile.out, false);
    }
    checkOutputs({&out, &profile.json, &profile.report}, files);
    return profile;
}

} // namespace kxtool
