// What a command declares, as data: for manual pages and completions.
#include "tools/kxmath/console/commandDescription.h"

namespace kxtool {

QString describeArgument() {
    return QChar(u'\0') + QStringLiteral("describe");
}

CommandDescription describeCommand(int (*run)(const QStringList& arguments), const QString& part) {
    QStringList arguments(QStringLiteral("kxmath"));
    if (!part.isEmpty()) {
        arguments.append(part);
    }
    arguments.append(describeArgument());
    try {
        run(arguments);
    } catch (const CommandDescription& description) {
        return description;
    }
    return {};
}

} // namespace kxtool
