// Arbitrary bytes as settings and two recordings, through detection, distances and defects, over files and in memory.
#include "input.h"
#include "scratch.h"

#include <KxInspect/KxInspect.h>
#include <KxMath/KxMetro.h>

#include <QtCore/QDir>
#include <QtCore/QSettings>

#include <vector>

using namespace KxMath;

namespace {

/// Measures the pass in memory. What is no pass is refused; a result reads back from its JSON.
/// @param counts the wheels that detection has found in mode 0; measuring finds the same
void measureInMemory(const QStringList& paths, const QString& settingsFile, int mode, const int* counts) {
    try {
        KxInspect::PassOptions options;
        options.mode = mode;
        options.shownPairs = {1, 3};
        options.defects = KxInspect::readDefectSettings(settingsFile.toStdString());
        options.wheelFolder = kxfuzz::scratchFile(QStringLiteral("pass/wheels")).toStdString();
        const KxInspect::PassResult pass =
            KxInspect::measurePass({paths[0].toStdString(), paths[1].toStdString()},
                                   KxInspect::readStationSettings(settingsFile.toStdString()), options);
        for (size_t side = 0; side < 2 && mode == 0; ++side) {
            kxfuzz::require(static_cast<int>(pass.sides[side].wheels.size()) == counts[side]);
        }
        const std::string json = toJson(pass, KxInspect::Pictures::Included);
        kxfuzz::require(toJson(KxInspect::passFromJson(json), KxInspect::Pictures::Included) == json);
    } catch (const KxInspect::Error& error) {
        kxfuzz::require(error.kind() != KxInspect::ErrorKind::Unwritable);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
    const QList<QByteArray> files = kxfuzz::splitFiles(data, size, 3);
    // QSettings keeps what it has read from a file of the same name, size and time.
    static int run = 0;
    const QString settingsFile = kxfuzz::scratchFile(QStringLiteral("settings-%1.ini").arg(++run));
    const QString folder = kxfuzz::scratchFile(QStringLiteral("pass"));
    QDir().mkpath(folder);
    QDir::setCurrent(folder);
    kxfuzz::writeFile(settingsFile, files[0]);
    const QStringList names = {QStringLiteral("a_1.bin"), QStringLiteral("b_2.bin")};
    int wheels = 0;
    {
        QSettings settings(settingsFile, QSettings::IniFormat);
        QSettings results(QStringLiteral("results.ini"), QSettings::IniFormat);
        int found[] = {0, 0};
        for (int side = 0; side < 2; ++side) {
            kxfuzz::writeFile(names[side], files[side + 1]);
            for (const int mode : {0, 3}) {
                int count = 0;
                if (METRO_detectWheels(names[side], &settings, mode, &count)) {
                    kxfuzz::require(count >= 0);
                    wheels = std::max(wheels, count);
                }
            }
            int count = 0;
            METRO_detectWheels_Test(names[side], &settings, 0, &count, &results);
            found[side] = count;
        }
        const QStringList paths = {folder + QLatin1Char('/') + names[0], folder + QLatin1Char('/') + names[1]};
        for (const int mode : {0, 3}) {
            measureInMemory(paths, settingsFile, mode, found);
        }
        std::vector<float> distances(static_cast<size_t>(wheels) + 1);
        METRO_calcWheelsDistInTrain(names[0], names[1], wheels + 1, &settings, distances.data());
        std::vector<unsigned char> low(static_cast<size_t>(wheels) + 1, 1);
        std::vector<unsigned char> high(low);
        METRO_detectDefectsInTrain(names[0], &settings, low.data(), high.data(), wheels);
    }
    QFile::remove(settingsFile);
    QDir::setCurrent(QDir::tempPath());
    QDir(folder).removeRecursively();
    return 0;
}
