// All commands with what they declare.
#pragma once

#include "tools/kxmath/console/commandDescription.h"

namespace kxmanual {

/// A command and its parts, in the order of the help.
struct CommandPages {
    kxtool::CommandDescription command;
    QString summary; ///< the line of the list of commands
    std::vector<kxtool::CommandDescription> parts;
};

std::vector<CommandPages> allDefinitions();

/// The help of an option up to the end of its first sentence, without the full stop.
QString firstSentence(const QString& help);

/// The options of a name as they are written: "-o", "--out".
QStringList writtenNames(const QCommandLineOption& option);

} // namespace kxmanual
