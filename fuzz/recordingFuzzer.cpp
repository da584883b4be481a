// Any bytes as settings and two recordings, through detection, distances and defects.
#include "input.h"
#include "scratch.h"

#include <KxMath/KxMetro.h>

#include <QtCore/QDir>
#include <QtCore/QSettings>

#include <vector>

using namespace KxMath;

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
