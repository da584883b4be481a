// Commands that consist of parts: kxmath settings init, kxmath settings check.
#pragma once

#include <QtCore/QStringList>

#include <span>

namespace kxtool {

/// A part. `run` takes the program name followed by the part's arguments and returns an exit code.
struct CommandPart {
    const char* name;
    int (*run)(const QStringList& arguments);
};

/// Runs the part that the first argument names, or prints the help. Throws a CommandError (WrongUse) for any other name.
/// @param command its name: "settings"
/// @param description the middle of its help: what it does, and a line for each part
/// @return the exit code of the part
int runParts(const char* command, std::span<const CommandPart> parts, const char* description,
             const QStringList& arguments);

} // namespace kxtool
