// kxmath settings init: a new settings file.
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/options.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/settings/settingsParts.h"

#include <KxInspect/StationSetup.h>

#include <QtCore/QFileInfo>

namespace kxtool {

namespace {

constexpr const char* kName = "settings init";

constexpr const char* kDescription =
    R"(Writes a new settings file with every key, its meaning, unit, range and default. Keys that only the station can tell
wait for their values, with a ; before them: kxmath settings fit finds them. Without FILE it is printed.

Exit codes: 0 done; 2 wrong use, or FILE exists and --force is not given; 4 FILE could not be written; 6 not enough
memory.)";

std::vector<int> serialsOf(const Options& options) {
    if (!options.isSet("serials")) {
        return {};
    }
    const QStringList fields = options.text("serials").split(QLatin1Char(','));
    if (fields.size() != 2) {
        options.failNeed(QStringLiteral("--serials"), QStringLiteral("two serial numbers"), options.text("serials"));
    }
    std::vector<int> serials;
    for (const QString& field : fields) {
        serials.push_back(options.toWholeNumber(field.trimmed(), QStringLiteral("--serials"), 1));
    }
    if (serials[0] == serials[1]) {
        options.failNeed(QStringLiteral("--serials"), QStringLiteral("two different numbers"), options.text("serials"));
    }
    return serials;
}

int run(const Options& options) {
    const QStringList files = options.arguments("files", 0, 1);
    const KxInspect::SettingsKind kind =
        options.isSet("defects") ? KxInspect::SettingsKind::Defects : KxInspect::SettingsKind::Station;
    const QString text = QString::fromStdString(newSettings(kind, serialsOf(options)));
    if (files.isEmpty()) {
        printOutput(text);
        return Done;
    }
    const OutputFile file(QStringLiteral("FILE"), files.front());
    if (!file.isWanted()) {
        options.failNeed(QStringLiteral("FILE"), QStringLiteral("the name of a file"), files.front());
    }
    const KxInspect::detail::QtPath path(toBytes(files.front()));
    if (!options.isSet("force") && !file.isStandardOutput() && QFileInfo::exists(path.text())) {
        options.fail(QStringLiteral("'%1' exists, --force overwrites it").arg(files.front()));
    }
    file.write(text);
    return Done;
}

} // namespace

int runSettingsInit(const QStringList& arguments) {
    return runCommand(kName, [&] {
        Options options(kName, "[FILE] [options]", QLatin1String(kDescription));
        options.addArgument("FILE", QStringLiteral("The new file; - for the standard output."));
        options.addFlag("defects", QStringLiteral("Settings for the judgement of treads, train --defects."));
        options.addOption("serials", QStringLiteral("Serial numbers of SENSOR1 and SENSOR2: 101,102."), "N,N");
        options.addFlag("force", QStringLiteral("Overwrites FILE."));
        return options.parse(arguments) ? run(options) : Done;
    });
}

} // namespace kxtool
