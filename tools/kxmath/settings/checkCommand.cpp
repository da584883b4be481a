// kxmath settings check: what is wrong with a settings file.
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/options.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/settings/settingsParts.h"

#include <KxInspect/StationSetup.h>

namespace kxtool {

namespace {

using KxInspect::SettingsCheck;
using KxInspect::SettingsFinding;

constexpr const char* kName = "settings check";

constexpr const char* kDescription =
    R"(Says what is missing, out of range or unknown in a settings file, with the nearest known key. With recordings it also
says what does not fit them: a sensor without keys, a level line that no point or every point is below, a reference line
that is not parallel to the wheels, runs of records that are too short for wheels, distances far off the base distance.

Findings are "refused", where kxmath train ends with exit code 3, or "doubtful", where it goes on.

Exit codes: 0 nothing was found; 1 something is doubtful; 2 wrong use; 3 something is refused, or a file is missing,
unreadable or damaged; 4 the findings could not be printed; 6 not enough memory.)";

QString checkText(const QString& file, const SettingsCheck& check) {
    QString text = printable(file) + QLatin1Char('\n');
    for (const std::string& fact : check.facts) {
        text += QStringLiteral("  ") + printable(fromBytes(fact)) + QLatin1Char('\n');
    }
    int refused = 0;
    for (const SettingsFinding& finding : check.findings) {
        refused += finding.isRefused ? 1 : 0;
        text += QLatin1String(finding.isRefused ? "refused: " : "doubtful: ") + printable(fromBytes(finding.text)) +
                QLatin1Char('\n');
    }
    const auto all = static_cast<int>(check.findings.size());
    return text + (all == 0 ? QStringLiteral("All fits.\n")
                            : QStringLiteral("%1 refused, %2 doubtful.\n").arg(refused).arg(all - refused));
}

int run(const Options& options) {
    const QStringList files = options.arguments("files", 1);
    const bool areDefects = options.isSet("defects");
    const qsizetype recordings = files.size() - 1;
    if (recordings > 1 && recordings % 2 != 0) {
        options.fail(QStringLiteral("one recording or two of each pass are needed, got %1").arg(recordings));
    }
    if (areDefects && recordings > 0) {
        options.fail(QStringLiteral("--defects checks a file by itself, without recordings"));
    }
    std::vector<std::string> paths;
    for (qsizetype i = 1; i < files.size(); ++i) {
        paths.push_back(toBytes(files[i]));
    }
    Progress progress;
    const SettingsCheck check = checkSettings(
        toBytes(files.front()), areDefects ? KxInspect::SettingsKind::Defects : KxInspect::SettingsKind::Station, paths,
        options.wholeNumber("mode"), progress.callback());
    progress.wipe();
    printOutput(checkText(files.front(), check));
    if (!check.findings.empty()) {
        const bool isRefused = check.isRefused();
        throw CommandError{
            isRefused ? BadInput : NoResult,
            QStringLiteral("settings '%1' %2, see above")
                .arg(files.front(), isRefused ? QStringLiteral("are refused") : QStringLiteral("are doubtful"))};
    }
    return Done;
}

} // namespace

int runSettingsCheck(const QStringList& arguments) {
    return runCommand(kName, [&] {
        Options options(kName, "FILE [REC...] [options]", QLatin1String(kDescription));
        options.addArgument("FILE", QStringLiteral("The settings."));
        options.addArgument(
            "REC...",
            QStringLiteral("Recordings of one pass after the other; a sensor that comes again begins the next one."));
        options.addFlag("defects", QStringLiteral("FILE is for the judgement of treads, train --defects."));
        options.addOption("mode", QStringLiteral("Mode of the wheel detection; 3 needs low lines. Default: 0."), "N",
                          QStringLiteral("0"));
        return options.parse(arguments) ? run(options) : Done;
    });
}

} // namespace kxtool
