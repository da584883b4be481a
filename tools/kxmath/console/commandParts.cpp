// Commands that consist of parts: kxmath settings init, kxmath settings check.
#include "tools/kxmath/console/commandParts.h"

#include "tools/kxmath/console/commandDescription.h"
#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/helpText.h"
#include "tools/kxmath/console/options.h"

namespace kxtool {

namespace {

/// "init, check or fit"
QString listed(const QStringList& names) {
    return names.mid(0, names.size() - 1).join(QStringLiteral(", ")) + QStringLiteral(" or ") + names.last();
}

} // namespace

int runParts(const char* command, std::span<const CommandPart> parts, const char* description,
             const QStringList& arguments) {
    const QString name = arguments.value(1);
    const QLatin1String commandName(command);
    QStringList names;
    for (const CommandPart& part : parts) {
        names += QLatin1String(part.name);
        if (name == QLatin1String(part.name)) {
            return part.run(withoutName(arguments));
        }
    }
    const QString usage = QStringLiteral("kxmath %1 %2 ...").arg(commandName, names.join(QLatin1Char('|')));
    const QString help = QStringLiteral("Prints this text; behind %1 their options.").arg(listed(names));
    if (name == describeArgument()) {
        const QCommandLineOption option({QStringLiteral("h"), QStringLiteral("help")}, help);
        throw CommandDescription{commandName, usage, QLatin1String(description), {}, {}, {option}, names};
    }
    if (name == QLatin1String("--help") || name == QLatin1String("-h")) {
        printOutput(wrapped(QStringLiteral("Usage: %1\n\n%2\nOptions:\n  -h, --help  %3\n")
                                .arg(usage, QLatin1String(description), help)));
        return Done;
    }
    throw CommandError{
        WrongUse,
        name.isEmpty()
            ? QStringLiteral("%1 is needed, see kxmath %2 --help").arg(listed(names), commandName)
            : QStringLiteral("unknown '%1'%2, see kxmath %3 --help").arg(name, suggestion(name, names), commandName)};
}

} // namespace kxtool
