// kxmath settings: settings files are made, checked, and fitted to recordings.
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/commandParts.h"
#include "tools/kxmath/settings/settingsParts.h"

#include <algorithm>
#include <array>

namespace kxtool {

namespace {

constexpr const char* kName = "settings";

constexpr std::array kParts = {CommandPart{"init", runSettingsInit}, CommandPart{"check", runSettingsCheck},
                               CommandPart{"fit", runSettingsFit}};

constexpr const char* kDescription =
    R"(Makes, checks and finds the settings of a station (docs/station.md leads through all three).

  init   writes a new settings file: every key with its meaning, unit, range and default
  check  says what is missing, unknown or out of range in a file, and what does not fit recordings
  fit    finds lines and base distance from recordings of wheel pairs with known distances
)";

} // namespace

int runSettings(const QStringList& arguments) {
    return runCommand(kName, [&] { return runParts(kName, kParts, kDescription, arguments); });
}

} // namespace kxtool
