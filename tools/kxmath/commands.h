// The commands of kxmath.
#pragma once

#include <QtCore/QStringList>

#include <span>

namespace kxtool {

/// A command. `run` takes the program name followed by the command's arguments and returns an exit code.
struct Command {
    const char* name;
    const char* summary;
    int (*run)(const QStringList& arguments);
};

/// All commands in the order in which the help lists them.
std::span<const Command> allCommands();

/// Runs the command that the arguments of the program name, or prints the usage. @return the exit code
int runMain(const QStringList& arguments);

int runAlarms(const QStringList& arguments); ///< only with KXMATH_HAS_STORE
int runCalibrate(const QStringList& arguments);
int runConicity(const QStringList& arguments);
int runConvert(const QStringList& arguments);
int runGrid(const QStringList& arguments);
int runInfo(const QStringList& arguments);
int runProfile(const QStringList& arguments);
int runSettings(const QStringList& arguments);
int runSimulate(const QStringList& arguments);
int runStore(const QStringList& arguments); ///< only with KXMATH_HAS_STORE
int runTrain(const QStringList& arguments);
int runTrend(const QStringList& arguments); ///< only with KXMATH_HAS_STORE
int runView(const QStringList& arguments);
int runWatch(const QStringList& arguments);
int runWheel(const QStringList& arguments);

} // namespace kxtool
