// The list of commands; finds the one that is asked for and runs it.
#include "tools/kxmath/commands.h"

#include "tools/kxmath/console/exitCodes.h"

#include <KxMath/KxMathVersion.h>

#include <algorithm>
#include <array>
#include <cstdio>

namespace kxtool {

namespace {

constexpr std::array kCommands = {
    Command{"simulate", "write the recordings of a simulated train with the truth beside them", runSimulate},
    Command{"train", "wheels of a train and the distances across its wheel pairs, from two recordings", runTrain},
    Command{"conicity", "equivalent conicity of a wheel-set on a track, from four profiles", runConicity},
    Command{"wheel", "height and thickness of flanges, from the profiles of wheels", runWheel},
    Command{"calibrate", "pose of a sensor from profiles of the calibration object", runCalibrate},
    Command{"grid", "height map of a scan, its block means and its flat patches", runGrid},
    Command{"info", "what files hold: kinds, counts, ranges, the first bad byte", runInfo},
    Command{"convert", "points from one kind of file to another", runConvert},
};

void printUsage(FILE* stream) {
    std::fputs("Usage: kxmath COMMAND [options]\n\nCommands:\n", stream);
    for (const Command& command : allCommands()) {
        std::fprintf(stream, "  %-10s %s\n", command.name, command.summary);
    }
    std::fputs("\nkxmath COMMAND --help tells the options of a command, kxmath --version the version.\n", stream);
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
    if (first == QLatin1String("--help") || first == QLatin1String("-h")) {
        printUsage(stdout);
        return Done;
    }
    if (first == QLatin1String("--version") || first == QLatin1String("-v")) {
        std::printf("kxmath %s\n", KxMath_GetVersionString());
        return Done;
    }
    const auto commands = allCommands();
    const auto found = std::find_if(commands.begin(), commands.end(),
                                    [&](const Command& c) { return first == QLatin1String(c.name); });
    if (found == commands.end()) {
        std::fprintf(stderr, "kxmath: unknown command '%s', see kxmath --help\n", qPrintable(first));
        return WrongUse;
    }
    QStringList rest = arguments;
    rest.removeAt(1);
    return found->run(rest);
}

} // namespace kxtool
