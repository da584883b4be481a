// kxmath store add: results into a store.
#include "fleet/store/store.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/options.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/store/storeParts.h"
#include "tools/kxmath/train/keptResult.h"

#include <algorithm>

namespace kxtool {

namespace {

constexpr const char* kName = "store add";

constexpr const char* kDescription =
    R"(Adds results of kxmath train to a store, which is made if it does not exist. Each result is added with all of its
wheels or not at all. A result of the same recordings, settings and version is added once; labels make no other pass of it.

Says of each result whether it was added, was already there, or was refused and why. A refused one keeps none of the
others from being added.

Exit codes: 0 all are in the store; 2 wrong use; 3 a result or the store is missing, unreadable, damaged or unsuitable;
4 the store cannot be written; 6 not enough memory.)";

QString outcomeText(const kxfleet::AddedPass& added) {
    QString text = added.outcome == kxfleet::AddOutcome::Added ? QStringLiteral("added, %1 wheels").arg(added.wheels)
                                                               : QStringLiteral("already there");
    if (!added.hasTime) {
        text += QStringLiteral("; it has no time: no series shows it");
    }
    if (added.wheels > 0 && !added.hasVehicles) {
        text += QStringLiteral("; not all wheels have the number of a vehicle: no series shows those");
    }
    return text;
}

int run(const Options& options) {
    const QStringList names = options.arguments("a store and results", 2);
    kxfleet::Store store(toBytes(names.front()), kxfleet::IfMissing::Create);
    int code = Done;
    for (const QString& name : names.mid(1)) {
        const int ended = runCommand(kName, [&] {
            const KeptResult kept = readResult(name);
            kxfleet::AddedPass added;
            try {
                added = store.add(kept.pass);
            } catch (const KxInspect::Error& error) {
                KxInspect::ErrorSource source = error.source();
                if (source.role == "result") {
                    source.file = kept.path;
                }
                throw KxInspect::Error(error.kind(), source, error.reason(), error.place());
            }
            printOutput(printable(name) + QStringLiteral(": ") + outcomeText(added) + QLatin1Char('\n'));
            return Done;
        });
        code = std::max(code, ended);
    }
    return code;
}

} // namespace

int runStoreAdd(const QStringList& arguments) {
    return runCommand(kName, [&] {
        Options options(kName, "STORE RESULT...", QLatin1String(kDescription));
        options.addArgument("STORE", QStringLiteral("The file of SQLite, or postgresql://..."));
        options.addArgument("RESULT...",
                            QStringLiteral("JSON of kxmath train, or folders that hold it as result.json."));
        return options.parse(arguments) ? run(options) : Done;
    });
}

} // namespace kxtool
