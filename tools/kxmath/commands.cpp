// The list of commands; runs the one that the arguments name.
#include "tools/kxmath/commands.h"

#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/exitCodes.h"
#include "tools/kxmath/console/helpText.h"
#include "tools/kxmath/console/options.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/help/topics.h"

#include <KxMath/KxMathVersion.h>

#include <algorithm>
#include <array>
#include <cstdio>

namespace kxtool {

namespace {

constexpr std::array kCommands = {
    Command{"simulate", "write the recordings of a simulated train, and the truth about it", runSimulate},
    Command{"train", "measure the wheels of a passing train and their distances from its recordings", runTrain},
    Command{"watch", "measure each pass whose recordings are complete in a folder, once", runWatch},
#ifdef KXMATH_HAS_STORE
    Command{"store", "keep the results of passes in a database: add, export, check", runStore},
    Command{"trend", "tell where the values of wheels go, and when they reach a limit, from a store", runTrend},
    Command{"alarms", "tell which wheels are beyond a limit or soon will be, and which sensors have shifted",
            runAlarms},
#endif
    Command{"settings", "make, check or find the settings of a station", runSettings},
    Command{"conicity", "calculate the equivalent conicity of a wheel-set on a track from four profiles", runConicity},
    Command{"wheel", "measure flange height and flange thickness from wheel profiles", runWheel},
    Command{"calibrate", "find the pose of a sensor from profiles of the calibration object", runCalibrate},
    Command{"grid", "make a height map of a scan, with block means and flat patches", runGrid},
    Command{"view", "show what a file holds as a page: profiles, scans, clouds, results", runView},
    Command{"profile", "run operations on a profile, one after the other: before and after, fits, features",
            runProfile},
    Command{"info", "list what files hold: kinds, counts, ranges, the first bad byte", runInfo},
    Command{"convert", "convert points from one kind of file to another", runConvert},
};

const QString kHelp = QStringLiteral("help");

void printUsage(FILE* stream) {
    QString text = QStringLiteral("Usage: kxmath COMMAND [options]\n\nCommands:\n");
    for (const Command& command : allCommands()) {
        text += QStringLiteral("  %1  %2\n").arg(QLatin1String(command.name), -9).arg(QLatin1String(command.summary));
    }
    text += QStringLiteral("\nTopics:\n");
    for (const HelpTopic& topic : helpTopics()) {
        text += QStringLiteral("  %1  %2\n").arg(QLatin1String(topic.name), -10).arg(QLatin1String(topic.title));
    }
    text += QStringLiteral("\nkxmath help COMMAND, or kxmath COMMAND --help, lists the options of a command,\n"
                           "kxmath help TOPIC tells about a topic, kxmath --version prints the version.\n");
    std::fputs(qPrintable(wrapped(text)), stream);
}

/// The command with that name, null for any other.
const Command* findCommand(const QString& name) {
    const auto commands = allCommands();
    const auto found =
        std::find_if(commands.begin(), commands.end(), [&](const Command& c) { return name == QLatin1String(c.name); });
    return found != commands.end() ? &*found : nullptr;
}

QStringList commandNames() {
    QStringList names;
    for (const Command& command : allCommands()) {
        names += QLatin1String(command.name);
    }
    return names;
}

/// @param what it should be: "command"
int failUnknown(const char* what, const QString& name, const QStringList& known) {
    const QString text =
        QStringLiteral("unknown %1 '%2'%3, see kxmath help").arg(QLatin1String(what), name, suggestion(name, known));
    std::fprintf(stderr, "kxmath: %s\n", qPrintable(printable(text)));
    return WrongUse;
}

/// Prints a topic. @return the exit code
int runTopic(const QString& name) {
    QStringList names = commandNames();
    for (const HelpTopic& topic : helpTopics()) {
        if (name == QLatin1String(topic.name)) {
            return runCommand("help", [&] {
                printOutput(wrapped(QLatin1String(topic.text)));
                return Done;
            });
        }
        names += QLatin1String(topic.name);
    }
    return failUnknown("command or topic", name, names);
}

/// kxmath help [COMMAND [PART] | TOPIC]
int runHelp(const QStringList& arguments) {
    if (arguments.size() < 2 || arguments[1] == kHelp) {
        printUsage(stdout);
        return Done;
    }
    const Command* const command = findCommand(arguments[1]);
    const QStringList forward = QStringList(arguments[0]) + arguments.mid(2) + QStringList("--help");
    return command != nullptr ? command->run(forward) : runTopic(arguments[1]);
}

} // namespace

std::span<const Command> allCommands() {
    return kCommands;
}

int runMain(const QStringList& arguments) {
    if (arguments.size() < 2) {
        printUsage(stderr);
        return WrongUse;
    }
    const QString& first = arguments[1];
    const QStringList rest = withoutName(arguments);
    if (first == QLatin1String("--help") || first == QLatin1String("-h")) {
        printUsage(stdout);
        return Done;
    }
    if (first == QLatin1String("--version") || first == QLatin1String("-v")) {
        std::printf("kxmath %s\n", KxMath_GetVersionString());
        return Done;
    }
    if (first == kHelp) {
        return runHelp(rest);
    }
    const Command* const command = findCommand(first);
    return command != nullptr ? command->run(rest) : failUnknown("command", first, commandNames() + QStringList(kHelp));
}

} // namespace kxtool
