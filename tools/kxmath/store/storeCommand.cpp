// kxmath store: results of passes are kept, exported and checked.
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/commandParts.h"
#include "tools/kxmath/store/storeParts.h"

#include <array>

namespace kxtool {

namespace {

constexpr const char* kName = "store";

constexpr std::array kParts = {CommandPart{"add", runStoreAdd}, CommandPart{"export", runStoreExport},
                               CommandPart{"check", runStoreCheck}, CommandPart{"info", runStoreInfo}};

constexpr const char* kDescription =
    R"(Keeps the results of passes in a store: a file of SQLite, or a PostgreSQL database by its URL, postgresql://...
(docs/fleet.md).

  add     adds results of kxmath train; one that is there already changes nothing
  export  writes a row per wheel as CSV
  check   says what is wrong with a store
  info    counts what a store holds
)";

} // namespace

int runStore(const QStringList& arguments) {
    return runCommand(kName, [&] { return runParts(kName, kParts, kDescription, arguments); });
}

} // namespace kxtool
