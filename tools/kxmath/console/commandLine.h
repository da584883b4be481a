// What the subcommands do alike with their arguments.
#pragma once

#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/outputFile.h"

#include <QtCore/QCommandLineParser>

#include <functional>

namespace kxtool {

/// Gives up because of wrong arguments.
[[noreturn]] void failUse(const QString& message);

/// The same, with a hint where the right ones are told.
[[noreturn]] void failUse(const char* command, const QString& message);

/// Runs the body of a subcommand and prints the CommandError that it may throw. @return the exit code
int runCommand(const char* command, const std::function<int()>& body);

/// Parses the arguments of a subcommand, or prints its help when that is asked for: `usage`, what the parser knows,
/// and `details`. Throws a CommandError when the arguments are wrong.
/// @return false when the help was printed
bool parseOrHelp(QCommandLineParser& parser, const QStringList& arguments, const char* command, const char* usage,
                 const char* details = "");

/// The file that an option names. Throws a CommandError when the name is empty.
OutputFile outputOption(const QCommandLineParser& parser, const char* option);

} // namespace kxtool
