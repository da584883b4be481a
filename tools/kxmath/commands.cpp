// The list of commands; runs the one that the arguments name.
#include "tools/kxmath/commands.h"

#include "tools/kxmath/console/exitCodes.h"
#include "tools/kxmath/console/printable.h"

#include <KxMath/KxMathVersion.h>

#include <algorithm>
#include <array>
#include <cstdio>

namespace kxtool {

namespace {

constexpr std::array kCommands = {
    Command{"simulate", "write the recordings of a simulated train, and the truth about it", runSimulate},
    Command{"train", "measure the wheels of a train and their back-to-back distances from two recordings", runTrain},
    Command{"conicity", "calculate the equivalent conicity of a wheel-set on a track from four profiles", runConicity},
    Command{"wheel", "measure flange height and flange thickness from wheel profiles", runWheel},
    Command{"calibrate", "find the pose of a sensor from profiles of the calibration object", runCalibrate},
    Command{"grid", "make a height map of a scan, with block means and flat patches", runGrid},
    Command{"info", "list what files hold: kinds, counts, ranges, the first bad byte", runInfo},
    Command{"convert", "convert points from one kind of file to another", runConvert},
};

void printUsage(FILE* stream) {
    std::fputs("Usage: kxmath COMMAND [options]\n\nCommands:\n", stream);
    for (const Command& command : allCommands()) {
        std::fprintf(stream, "  %-10s %s\n", command.name, command.summary);
    }
    std::fputs("\nkxmath COMMAND --help lists the options of a command, kxmath --version prints the version.\n",
               stream);
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
        std::fprintf(stderr, "kxmath: unknown command '%s', see kxmath --help\n", qPrintable(printable(first)));
        return WrongUse;
    }
    QStringList rest = arguments;
    rest.removeAt(1);
    return found->run(rest);
}

} // namespace kxtool
