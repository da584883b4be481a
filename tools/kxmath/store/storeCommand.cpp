// kxmath store: results of passes are kept, exported and checked.
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/helpText.h"
#include "tools/kxmath/console/options.h"
#include "tools/kxmath/store/storeParts.h"

#include <array>

namespace kxtool {

namespace {

constexpr const char* kName = "store";

struct StorePart {
    const char* name;
    int (*run)(const QStringList& arguments);
};

constexpr std::array kParts = {StorePart{"add", runStoreAdd}, StorePart{"export", runStoreExport},
                               StorePart{"check", runStoreCheck}, StorePart{"info", runStoreInfo}};

constexpr const char* kHelp = R"(Usage: kxmath store add|export|check|info ...

Keeps the results of passes in a store: a file of SQLite, or a PostgreSQL database by its URL, postgresql://...
(docs/fleet.md).

  add     adds results of kxmath train; one that is there already changes nothing
  export  writes a row per wheel as CSV
  check   says what is wrong with a store
  info    counts what a store holds

Options:
  -h, --help  Prints this text; behind add, export, check or info their options.
)";

int runPart(const QStringList& arguments) {
    const QString name = arguments.value(1);
    if (name == QLatin1String("--help") || name == QLatin1String("-h")) {
        printOutput(wrapped(QLatin1String(kHelp)));
        return Done;
    }
    QStringList names;
    for (const StorePart& part : kParts) {
        names += QLatin1String(part.name);
        if (name == QLatin1String(part.name)) {
            return part.run(withoutName(arguments));
        }
    }
    throw CommandError{
        WrongUse, name.isEmpty()
                      ? QStringLiteral("add, export, check or info is needed, see kxmath store --help")
                      : QStringLiteral("unknown '%1'%2, see kxmath store --help").arg(name, suggestion(name, names))};
}

} // namespace

int runStore(const QStringList& arguments) {
    return runCommand(kName, [&] { return runPart(arguments); });
}

} // namespace kxtool
