// Prints how many wheels with flats kxmath train finds out of round, over the length of the flats and their distance
// from the place that rolls over the sensors, for a largest allowed deviation of 0.1 mm and of 0.05 mm.
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

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

/// How far off the circle the eight wheels of a car are.
std::vector<double> deviationsOfCar(int seed, const QStringList& defects) {
    const QTemporaryDir folder;
    const QStringList simulate = {"simulate", "pass", "--cars", "1", "--seed", QString::number(seed)};
    runTool(folder.path(), simulate + defects);
    const QByteArray json =
        runTool(folder.path(), {"train", "pass/train_101.bin", "pass/train_102.bin", "--settings", "pass/settings.ini",
                                "--defects", "pass/defects.ini", "--json", "-"});
    std::vector<double> result;
    const QJsonArray pairs = QJsonDocument::fromJson(json).object()["pairs"].toArray();
    for (const QJsonValue pair : pairs) {
        for (const QJsonValue side : pair["sides"].toArray()) {
            if (side["roundness"].isObject()) {
                result.push_back(side["roundness"]["largestDeviation"].toDouble());
            }
        }
    }
    return result;
}

std::vector<double> deviationsOfFlats(double length, double phase) {
    QStringList defects;
    for (int wheel = 0; wheel < 8; ++wheel) {
        defects +=
            {"--flat", QStringLiteral("%1:%2:%3:%4").arg(wheel / 2 + 1).arg(wheel % 2 + 1).arg(length).arg(phase)};
    }
    return deviationsOfCar(1, defects);
}

long long countOver(const std::vector<double>& deviations, double limit) {
    return std::count_if(deviations.begin(), deviations.end(), [&](double d) { return d > limit; });
}

} // namespace

int main() {
    constexpr double kPhases[] = {0, 5, 10, 20, 30, 40};
    std::printf("| flat, mm | depth, mm |");
    for (const double phase : kPhases) {
        std::printf(" %g mm |", phase);
    }
    std::printf("\n| --- | --- | --- | --- | --- | --- | --- | --- |\n");
    for (const double length : {10.0, 15.0, 20.0, 25.0, 30.0, 40.0, 50.0, 60.0, 80.0}) {
        std::printf("| %g | %.2f |", length, length * length / (8.0 * kRadius));
        for (const double phase : kPhases) {
            const std::vector<double> deviations = deviationsOfFlats(length, phase);
            std::printf(" %lld / %lld of %zu |", countOver(deviations, 0.1), countOver(deviations, 0.05),
                        deviations.size());
        }
        std::printf("\n");
    }
    constexpr int kSeeds = 20;
    std::vector<double> sound;
    for (int seed = 1; seed <= kSeeds; ++seed) {
        const std::vector<double> car = deviationsOfCar(seed, {});
        sound.insert(sound.end(), car.begin(), car.end());
    }
    std::printf("\nOf %zu wheels without flats, %lld and %lld were found so; the largest deviation was %.3f mm.\n",
                sound.size(), countOver(sound, 0.1), countOver(sound, 0.05),
                *std::max_element(sound.begin(), sound.end()));
    return 0;
}
