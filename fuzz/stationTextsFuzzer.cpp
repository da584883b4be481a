// Arbitrary bytes as the texts beside the recordings of a pass: lists of vehicles, limits, layouts of paths, results that are
// measured again, settings of several sensors. The first byte chooses which.
#include "input.h"
#include "scratch.h"

#include "inspect/recordings/layout.h"
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/exitCodes.h"

#include <KxInspect/KxInspect.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QDir>

#include <string>
#include <vector>

namespace {

using KxInspect::Consist;

/// Calls a function that may throw an Error.
template <typename Call>
void tryCall(Call call) {
    try {
        call();
    } catch (const KxInspect::Error& error) {
        kxfuzz::require(error.kind() != KxInspect::ErrorKind::Unwritable);
    }
}

/// The places of the axles of a list, without one of them, or too far apart.
std::vector<double> placesOf(const Consist& consist, std::size_t leftOut, double scale) {
    std::vector<double> places;
    double place = 0.0;
    std::size_t axle = 0;
    for (const KxInspect::ListedVehicle& vehicle : consist.vehicles) {
        for (std::size_t i = 0; i < vehicle.axles(); ++i, ++axle) {
            if (axle != leftOut) {
                places.push_back(scale * place);
            }
            place += i < vehicle.spacings.size() ? vehicle.spacings[i] : vehicle.toNext;
        }
    }
    return places;
}

/// Reads a list, and matches with it axles like its own. The first byte says which is left out, and the order.
void matchConsist(const std::string& path, std::uint8_t choice) {
    constexpr std::size_t kMostAxles = 200;
    const Consist consist = KxInspect::readConsist(path);
    const std::vector<double> places = placesOf(consist, choice / 8, choice % 2 == 0 ? 1.0 : 1.1);
    if (places.size() > kMostAxles) {
        return;
    }
    std::vector<KxInspect::AxleNumber> numbers;
    for (const Consist* const list : {&consist, static_cast<const Consist*>(nullptr)}) {
        KxInspect::numberAxles(places, list, static_cast<KxInspect::ConsistOrder>(choice / 2 % 3), numbers);
        kxfuzz::require(numbers.size() == places.size());
    }
}

/// The layout and a path, divided by "@@@@".
void readPath(const QList<QByteArray>& texts) {
    const KxInspect::detail::Layout layout(texts[0].toStdString());
    KxInspect::detail::PathValues values;
    const QList<QByteArray> names = texts[1].split('/');
    for (std::size_t level = 0; level < layout.levels() && level < static_cast<std::size_t>(names.size()); ++level) {
        const std::string name = names[static_cast<qsizetype>(level)].toStdString();
        if (!layout.isLookedAt(level, name) || !layout.read(level, name, values).empty()) {
            return;
        }
    }
    kxfuzz::require(values.serial >= 0 && values.station.find('/') == std::string::npos);
}

/// A result reads back from its JSON, and --again finds its recordings or says why not.
void readResult(const QString& folder, const QByteArray& text) {
    kxfuzz::writeFile(folder + QStringLiteral("/result.json"), text);
    kxtool::runTrain(
        {QStringLiteral("kxmath"), QStringLiteral("--again"), folder, QStringLiteral("--recordings"), folder});
    using KxInspect::Pictures;
    const std::string json = toJson(KxInspect::passFromJson(text.toStdString()), Pictures::Included);
    kxfuzz::require(toJson(KxInspect::passFromJson(json), Pictures::Included) == json);
}

/// Settings, then the recordings of three sensors.
void measureSeveral(const QString& folder, const std::string& settingsFile, const QList<QByteArray>& texts) {
    const KxInspect::StationSettings settings = KxInspect::readStationSettings(settingsFile);
    std::vector<std::string> recordings;
    for (const char* const name : {"/a_1.bin", "/b_2.bin", "/c_3.bin"}) {
        const QString path = folder + QLatin1String(name);
        kxfuzz::writeFile(path, texts[static_cast<qsizetype>(recordings.size()) + 1]);
        recordings.push_back(path.toStdString());
    }
    tryCall([&] { KxInspect::checkSettings(settingsFile, KxInspect::SettingsKind::Station, recordings); });
    tryCall([&] {
        const std::string json = toJson(KxInspect::measurePass(recordings, settings));
        kxfuzz::require(toJson(KxInspect::passFromJson(json)) == json);
    });
}

void run(std::uint8_t kind, std::uint8_t choice, const QString& folder, const QString& file,
         const QList<QByteArray>& texts) {
    switch (kind % 5) {
    case 0:
        return matchConsist(file.toStdString(), choice);
    case 1:
        return static_cast<void>(KxInspect::readLimits(file.toStdString()));
    case 2:
        return readPath(texts);
    case 3:
        return readResult(folder, texts[0]);
    default:
        return measureSeveral(folder, file.toStdString(), texts);
    }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    static const QCoreApplication application(*argc, *argv);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
    kxfuzz::Input in(data, size);
    const std::uint8_t kind = in.byte();
    const std::uint8_t choice = in.byte();
    const size_t chosen = std::min<size_t>(size, 2);
    const QList<QByteArray> texts = kxfuzz::splitFiles(data + chosen, size - chosen, 4);
    // QSettings keeps what it has read from a file of the same name, size and time.
    static int number = 0;
    const QString file = kxfuzz::scratchFile(QStringLiteral("text-%1.ini").arg(++number));
    const QString folder = kxfuzz::scratchFile(QStringLiteral("pass"));
    QDir().mkpath(folder);
    kxfuzz::writeFile(file, texts[0]);
    tryCall([&] { run(kind, choice, folder, file, texts); });
    QFile::remove(file);
    QDir(folder).removeRecursively();
    return 0;
}
