// kxmath settings: settings files are made, checked, and fitted to recordings.
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/helpText.h"
#include "tools/kxmath/console/options.h"
#include "tools/kxmath/settings/settingsParts.h"

#include <algorithm>
#include <array>

namespace kxtool {

namespace {

constexpr const char* kName = "settings";

struct Part {
    const char* name;
    int (*run)(const QStringList& arguments);
};

constexpr std::array kParts = {Part{"init", runSettingsInit}, Part{"check", runSettingsCheck},
                               Part{"fit", runSettingsFit}};

constexpr const char* kHelp = R"(Usage: kxmath settings init|check|fit ...

Makes, checks and finds the settings of a station (docs/station.md leads through all three).

  init   writes a new settings file: every key with its meaning, unit, range and default
  check  says what is missing, unknown or out of range in a file, and what does not fit recordings
  fit    finds lines and base distance from recordings of wheel pairs with known distances

Options:
  -h, --help  Prints this text; behind init, check or fit their options.
)";

int runPart(const QStringList& arguments) {
    const QString name = arguments.value(1);
    if (name == QLatin1String("--help") || name == QLatin1String("-h")) {
        printOutput(wrapped(QLatin1String(kHelp)));
        return Done;
    }
    QStringList names;
    for (const Part& part : kParts) {
        names += QLatin1String(part.name);
        if (name == QLatin1String(part.name)) {
            return part.run(withoutName(arguments));
        }
    }
    throw CommandError{
        WrongUse,
        name.isEmpty()
            ? QStringLiteral("init, check or fit is needed, see kxmath settings --help")
            : QStringLiteral("unknown '%1'%2, see kxmath settings --help").arg(name, suggestion(name, names))};
}

} // namespace

int runSettings(const QStringList& arguments) {
    return runCommand(kName, [&] { return runPart(arguments); });
}

} // namespace kxtool
