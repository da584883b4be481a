// Arbitrary bytes as the files of the commands info, wheel, conicity, grid, train, calibrate, settings, view and profile. The first four bytes
// choose the command and its options.
#include "input.h"
#include "scratch.h"

#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/exitCodes.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>

namespace {

struct Choice {
    std::uint8_t command;
    std::uint8_t options;
    std::uint8_t ending;
    std::uint8_t size;

    bool has(int option) const { return (options >> option & 1) != 0; }
    QString pick(std::initializer_list<const char*> texts) const {
        return QLatin1String(texts.begin()[size % texts.size()]);
    }
};

constexpr const char* kEndings[] = {".bin", ".set", ".csv", ".xyzf", ".xyz", ".ply", ".pcd", ".whl"};

/// Writes the files of an input under names unique to this run: QSettings caches files by name, size and time.
QStringList writeFiles(const QList<QByteArray>& contents, const QString& ending) {
    static int run = 0;
    ++run;
    QStringList paths;
    for (const QByteArray& content : contents) {
        const QString name = QStringLiteral("%1_%2%3").arg(run).arg(paths.size() + 1).arg(ending);
        paths.append(kxfuzz::scratchFile(name));
        kxfuzz::writeFile(paths.last(), content);
    }
    return paths;
}

QString output(const char* name) {
    return kxfuzz::scratchFile(QLatin1String(name));
}

int runWheel(const Choice& choice, const QStringList& files) {
    QStringList arguments = {QStringLiteral("kxmath"), files[0],      QStringLiteral("--json"),   output("json"),
                             QStringLiteral("--csv"),  output("csv"), QStringLiteral("--report"), output("html")};
    if (choice.has(0)) {
        arguments << QStringLiteral("--up");
    }
    if (choice.has(1)) {
        arguments << QStringLiteral("--mirror");
    }
    if (choice.has(2)) {
        arguments << QStringLiteral("--spacing") << choice.pick({"0.01", "0.1", "1"});
    }
    if (choice.has(3)) {
        arguments << QStringLiteral("--columns") << choice.pick({"2,1", "1,3", "7,2147483647"});
    }
    if (choice.has(4)) {
        arguments << QStringLiteral("--flange-back") << choice.pick({"0", "-70", "1e4"});
    }
    if (choice.has(5)) {
        arguments << QStringLiteral("--centre") << choice.pick({"400,0", "1e30,-1e30"});
    }
    return kxtool::runWheel(arguments);
}

int runProfile(const Choice& choice, const QStringList& files) {
    const QString chain =
        choice.pick({"sort trimX:-50,50", "removeNoise:3,1,1.5 kihFilter20", "splashFilter:1,0.5 wndFilter:5",
                     "splashFilterPolar:40,1,2 wndFilterPolar:1,5,3", "removeLineParts:9,0.9,1,3",
                     "removeLowLevel:0,-1e6 interpolate:0.5", "sort calcLineSegment:1,0.5,3",
                     "medFilt:5 addLineSegments:4", "toPolar rotatePolar:30 toEvklid", "polynomFit:7"});
    QStringList arguments = {QStringLiteral("kxmath"), files[0],       QStringLiteral("--do"),     chain,
                             QStringLiteral("--json"), output("json"), QStringLiteral("--report"), output("html")};
    if (choice.has(0)) {
        arguments << QStringLiteral("--record") << QStringLiteral("1");
    }
    if (choice.has(1)) {
        arguments << QStringLiteral("--line") << QStringLiteral("--circle") << QStringLiteral("--polynom")
                  << choice.pick({"0", "3", "15"});
    }
    if (choice.has(2)) {
        arguments << QStringLiteral("--detect") << QStringLiteral("weld circle cuts:2,0.1 joint");
    }
    return kxtool::runProfile(arguments);
}

int runConicity(const Choice& choice, const QStringList& files) {
    QStringList arguments = {QStringLiteral("kxmath"),
                             QStringLiteral("--wheel1"),
                             files[0],
                             QStringLiteral("--rail1"),
                             files[1],
                             QStringLiteral("--wheel2"),
                             files[choice.has(0) ? 2 : 0],
                             QStringLiteral("--rail2"),
                             files[choice.has(0) ? 3 : 1],
                             QStringLiteral("--gauge"),
                             choice.pick({"1435", "100", "10000"}),
                             QStringLiteral("--back-to-back"),
                             choice.pick({"1360", "10000", "100"}),
                             QStringLiteral("--json"),
                             output("json"),
                             QStringLiteral("--csv"),
                             output("csv")};
    if (choice.has(1)) {
        arguments << QStringLiteral("--report") << output("html");
    }
    if (choice.has(2)) {
        arguments << QStringLiteral("--up") << choice.pick({"wheels", "rails", "wheel1,rail2"});
    }
    if (choice.has(3)) {
        arguments << QStringLiteral("--gauge-depth") << choice.pick({"0", "100"});
    }
    return kxtool::runConicity(arguments);
}

int runGrid(const Choice& choice, const QStringList& files) {
    QStringList arguments = {QStringLiteral("kxmath"), files[0],
                             QStringLiteral("--step"), choice.pick({"0.5", "1", "7"}),
                             QStringLiteral("--json"), output("json")};
    if (choice.has(0)) {
        arguments << QStringLiteral("--report") << output("html");
    }
    if (choice.has(1)) {
        arguments << QStringLiteral("--dz") << choice.pick({"0.25", "3", "-1"});
    }
    if (choice.has(2)) {
        arguments << QStringLiteral("--blocks") << choice.pick({"1", "2", "1000"});
    }
    if (choice.has(3)) {
        arguments << QStringLiteral("--seeds") << choice.pick({"", ",,,,1", "2,0,0.5,0.25,3,1", "0,-1e9,1"});
    }
    if (choice.has(4)) {
        arguments << QStringLiteral("--edge-cut") << choice.pick({"-0.5", "1"});
    }
    if (choice.has(5)) {
        arguments << QStringLiteral("--gap") << choice.pick({"1", "1000"});
    }
    if (choice.has(6)) {
        arguments << QStringLiteral("--out") << output("folder");
    }
    return kxtool::runGrid(arguments);
}

/// The last file receives the pose.
int runCalibrate(const Choice& choice, const QStringList& files) {
    QStringList arguments = {QStringLiteral("kxmath"),     files[0],
                             QStringLiteral("--position"), choice.pick({"1", "2", "3", "4", "5"}),
                             QStringLiteral("--json"),     output("json"),
                             QStringLiteral("--write"),    files[3],
                             QStringLiteral("--sensor"),   QStringLiteral("1")};
    if (choice.has(0)) {
        arguments << QStringLiteral("--report") << output("html");
    }
    if (choice.has(1)) {
        arguments << QStringLiteral("--sensor-y") << QStringLiteral("-300");
    } else {
        arguments << QStringLiteral("--side") << choice.pick({"smaller-y", "larger-y"});
    }
    if (choice.has(2)) {
        arguments << files[1];
    }
    return kxtool::runCalibrate(arguments);
}

/// The recordings come first, then the settings and those for defects.
int runTrain(const Choice& choice, const QStringList& files) {
    QStringList arguments = {QStringLiteral("kxmath"),
                             files[0],
                             files[1],
                             QStringLiteral("--settings"),
                             files[2],
                             QStringLiteral("--out"),
                             output("folder"),
                             QStringLiteral("--json"),
                             output("json"),
                             QStringLiteral("--csv"),
                             output("csv")};
    if (choice.has(0)) {
        arguments << QStringLiteral("--mode") << QStringLiteral("3");
    }
    if (choice.has(1)) {
        arguments << QStringLiteral("--report") << output("html");
    }
    if (choice.has(2)) {
        arguments << QStringLiteral("--defects") << files[3];
    }
    return kxtool::runTrain(arguments);
}

/// The recordings come first, then the settings and those for defects.
int runSettings(const Choice& choice, const QStringList& files) {
    const QStringList begin = {QStringLiteral("kxmath"),
                               choice.has(0) ? QStringLiteral("check") : QStringLiteral("fit")};
    if (choice.has(0)) {
        const QStringList recordings = choice.has(1) ? QStringList{files[0]} : QStringList{files[0], files[1]};
        return kxtool::runSettings(begin + QStringList{files[2]} + recordings);
    }
    QStringList arguments = begin + QStringList{files[0],
                                                files[1],
                                                QStringLiteral("--distance"),
                                                choice.pick({"1360", "1360,1361", "-,1359", "1,2,3,4"}),
                                                QStringLiteral("--write"),
                                                files[2],
                                                QStringLiteral("--report"),
                                                output("html")};
    if (choice.has(1)) {
        arguments << QStringLiteral("--defects") << files[3];
    }
    return kxtool::runSettings(arguments);
}

constexpr int kCommands = 9;
constexpr int kTrain = 4;
constexpr int kSettings = 6;
constexpr int kView = 7;
constexpr int kProfile = 8;

int runCommand(const Choice& choice, const QStringList& files) {
    switch (choice.command % kCommands) {
    case 0:
        return kxtool::runInfo({QStringLiteral("kxmath"), files[0]});
    case 1:
        return runWheel(choice, files);
    case 2:
        return runConicity(choice, files);
    case 3:
        return runGrid(choice, files);
    case kTrain:
        return runTrain(choice, files);
    case kSettings:
        return runSettings(choice, files);
    case kView:
        return kxtool::runView({QStringLiteral("kxmath"), files[0], QStringLiteral("-o"), QStringLiteral("/dev/null")});
    case kProfile:
        return runProfile(choice, files);
    default:
        return runCalibrate(choice, files);
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    static const QCoreApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
    kxfuzz::Input in(data, size);
    const Choice choice = {in.byte(), in.byte(), in.byte(), in.byte()};
    const size_t chosen = std::min<size_t>(size, 4);
    const int command = choice.command % kCommands;
    const bool isTrain = command == kTrain || command == kSettings; // whose recordings are named like that
    const QStringList files =
        writeFiles(kxfuzz::splitFiles(data + chosen, size - chosen, 4),
                   QLatin1String(isTrain ? ".bin" : kEndings[choice.ending % std::size(kEndings)]));
    const int code = runCommand(choice, files);
    kxfuzz::require(code != kxtool::OutputFailed);
    for (const QString& file : files) {
        QFile::remove(file);
    }
    QDir(output("folder")).removeRecursively();
    return 0;
}
