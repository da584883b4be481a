// All commands with what they declare.
#include "tools/manual/definitions.h"

#include "tools/kxmath/commands.h"

namespace kxmanual {

std::vector<CommandPages> allDefinitions() {
    std::vector<CommandPages> definitions;
    for (const kxtool::Command& command : kxtool::allCommands()) {
        CommandPages pages{kxtool::describeCommand(command.run), QLatin1String(command.summary), {}};
        for (const QString& part : pages.command.parts) {
            pages.parts.push_back(kxtool::describeCommand(command.run, part));
        }
        definitions.push_back(std::move(pages));
    }
    return definitions;
}

QString firstSentence(const QString& help) {
    const qsizetype end = help.indexOf(QStringLiteral(". "));
    const QString sentence = (end < 0 ? help : help.left(end)).simplified();
    return sentence.endsWith(QLatin1Char('.')) ? sentence.chopped(1) : sentence;
}

QStringList writtenNames(const QCommandLineOption& option) {
    QStringList written;
    for (const QString& name : option.names()) {
        written.append((name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + name);
    }
    return written;
}

} // namespace kxmanual
