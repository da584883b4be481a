// Running a command, and its arguments.
#pragma once

#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/outputFile.h"

#include <QtCore/QCommandLineParser>

#include <functional>

namespace kxtool {

/// Throws a CommandError (WrongUse).
[[noreturn]] void failUse(const QString& message);

/// The same, with a hint at the help of the command.
[[noreturn]] void failUse(const char* command, const QString& message);

/// Runs the body of a command and prints the CommandError or KxInspect::Error that it throws. @return the exit code
int runCommand(const char* command, const std::function<int()>& body);

/// Parses the arguments of a command, or prints its help on --help: `usage`, what the parser knows, and `details`.
/// Throws a CommandError when the arguments are wrong.
/// @return false when the help was printed
bool parseOrHelp(QCommandLineParser& parser, const QStringList& arguments, const char* command, const char* usage,
                 const char* details = "");

/// The file that an option names. Throws a CommandError when the name is empty.
OutputFile outputOption(const QCommandLineParser& parser, const char* option);

} // namespace kxtool
