// Prints how many wheels with flats kxmath train finds out of round, over the length of the flats and their distance
// from the place that rolls over the sensors, and how many sound wheels it accuses under other conditions.
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

constexpr double kRadius = 430.0; // mm, of a new wheel

QByteArray runTool(const QString& folder, const QStringList& arguments) {
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(QStringLiteral(KXMATH_TOOL), arguments);
    if (!process.waitForFinished(-1) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
        std::fprintf(stderr, "kxmath %s failed: %s\n", qPrintable(arguments.join(QLatin1Char(' '))),
                     process.readAllStandardError().constData());
        std::exit(1);
    }
    return process.readAllStandardOutput();
}

/// What was said of the wheels of some passes.
struct Tally {
    int wheels = 0;
    int out = 0; ///< of round
    int defective = 0;
    int notCompared = 0;
    int treadsNotJudged = 0;
    double farthest = 0.0; ///< off the circle, mm
    double limit = 0.0; ///< the largest, mm
};

QJsonArray pairsOfCar(int seed, const QStringList& options) {
    const QTemporaryDir folder;
    const QStringList simulate = {"simulate", "pass", "--cars", "1", "--seed", QString::number(seed)};
    runTool(folder.path(), simulate + options);
    const QByteArray json =
        runTool(folder.path(), {"train", "pass/train_101.bin", "pass/train_102.bin", "--settings", "pass/settings.ini",
                                "--defects", "pass/defects.ini", "--json", "-"});
    return QJsonDocument::fromJson(json).object()["pairs"].toArray();
}

void addCar(int seed, const QStringList& options, Tally& tally) {
    const QJsonArray pairs = pairsOfCar(seed, options);
    for (const QJsonValue pair : pairs) {
        for (const QJsonValue side : pair["sides"].toArray()) {
            const QJsonValue roundness = side["roundness"];
            const QJsonValue isDefective = side["defects"]["isDefective"];
            ++tally.wheels;
            tally.out += roundness["isOutOfRound"].toBool() ? 1 : 0;
            tally.notCompared += roundness.isObject() ? 0 : 1;
            tally.defective += isDefective.toBool() ? 1 : 0;
            tally.treadsNotJudged += isDefective.isBool() ? 0 : 1;
            tally.farthest = std::max(tally.farthest, roundness["largestDeviation"].toDouble());
            tally.limit = std::max(tally.limit, roundness["limit"].toDouble());
        }
    }
}

Tally tallyOfFlats(double length, double phase, const char* shape) {
    QStringList options = {"--yaw", "2", "--flat-shape", shape};
    for (const int pair : {1, 3}) {
        for (const int sensor : {1, 2}) {
            options += {"--flat", QStringLiteral("%1:%2:%3:%4").arg(pair).arg(sensor).arg(length).arg(phase)};
        }
    }
    Tally tally;
    addCar(1, options, tally);
    return tally;
}

void printFlats() {
    constexpr double kPhases[] = {0, 10, 20};
    std::printf("| flat, mm | depth, mm |");
    for (const double phase : kPhases) {
        std::printf(" %g mm |", phase);
    }
    std::printf("\n| --- | --- | --- | --- | --- |\n");
    for (const double length : {15.0, 25.0, 40.0, 60.0}) {
        std::printf("| %g | %.2f |", length, length * length / (8.0 * kRadius));
        for (const double phase : kPhases) {
            std::printf(" %d / %d |", tallyOfFlats(length, phase, "even").out,
                        tallyOfFlats(length, phase, "plane").out);
        }
        std::printf("\n");
        std::fflush(stdout);
    }
}

void printSound() {
    constexpr int kSeeds = 1;
    std::printf(
        "\n| sound wheels | out of round | defective | not compared | treads not judged | off, mm | limit, mm |\n"
        "| --- | --- | --- | --- | --- | --- | --- |\n");
    for (const char* const options :
         {"", "--noise 0", "--noise 0.1", "--noise 0.2", "--noise 0.3", "--stand-off 100", "--stand-off 200",
          "--stand-off 300", "--beta 75", "--beta 88", "--beta 105", "--turn1 2 --turn2 2", "--half-angle 18",
          "--yaw 5", "--yaw -5 --noise 0.1", "--speed 3", "--speed 30", "--speed 60",
          "--speed 60 --noise 0.3 --stand-off 300 --beta 75"}) {
        const QString text = QLatin1String(options);
        Tally tally;
        for (int seed = 1; seed <= kSeeds; ++seed) {
            addCar(seed, text.split(QLatin1Char(' '), Qt::SkipEmptyParts), tally);
        }
        std::printf("| %d%s%s | %d | %d | %d | %d | %.3f | %.3f |\n", tally.wheels, *options == '\0' ? "" : ", ",
                    options, tally.out, tally.defective, tally.notCompared, tally.treadsNotJudged, tally.farthest,
                    tally.limit);
    }
}

/// How often the 95 % intervals of sound wheels hold the truth, which is 0: of one profile of each wheel, since the
/// profiles of a wheel share its axle.
void printCoverage(int passes) {
    int values = 0;
    int held = 0;
    for (int seed = 1; seed <= passes; ++seed) {
        const QJsonArray pairs = pairsOfCar(seed, {"--yaw-spread", "2"});
        for (const QJsonValue pair : pairs) {
            for (const QJsonValue side : pair["sides"].toArray()) {
                const QJsonArray radii = side["roundness"]["radii"].toArray();
                if (!radii.isEmpty()) {
                    const QJsonValue interval = radii[seed % radii.size()]["interval"];
                    ++values;
                    held += interval[0].toDouble() <= 0.0 && interval[1].toDouble() >= 0.0 ? 1 : 0;
                }
            }
        }
    }
    std::printf("%d of %d intervals hold the truth, %.1f %%.\n", held, values, 100.0 * held / std::max(values, 1));
}

} // namespace

/// With a number: the coverage of intervals over so many passes.
int main(int argc, char** argv) {
    if (argc > 1) {
        printCoverage(static_cast<int>(std::strtol(argv[1], nullptr, 10)));
        return 0;
    }
    printFlats();
    printSound();
    return 0;
}
