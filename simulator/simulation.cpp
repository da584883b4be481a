// A simulated pass from parameters to files.
#include "simulator/simulation.h"

#include "simulator/directory.h"
#include "simulator/recorder.h"
#include "simulator/sensor.h"
#include "simulator/settingsFile.h"
#include "simulator/train.h"
#include "simulator/truth.h"

#include <QtCore/QDir>
#include <QtCore/QFile>

#include <cstdint>
#include <vector>

namespace kxsim {

namespace {

/// The position of the first axle at the start of the recording, and its steps, such that the whole train passes.
struct Travel {
    double start;
    double step;
    std::uint64_t profiles;
};

Travel planTravel(const Parameters& p, const Train& train) {
    const double margin = 2000.0 + p.diameter + p.maxRange;
    const double step = 1000.0 * p.speed / p.rate;
    const double length = train.pairs.back().behind + 2.0 * margin;
    return {-margin, step, static_cast<std::uint64_t>(length / step)};
}

void record(const Parameters& p, const Train& train, int sensorNumber, Recorder& recorder, const Progress& progress) {
    constexpr std::uint64_t kProgressInterval = 64;
    const Sensor sensor(p, train, sensorNumber);
    const Travel travel = planTravel(p, train);
    KxMath::KxProfile profile;
    for (std::uint64_t i = 0; i < travel.profiles; ++i) {
        const double trainX = travel.start + static_cast<double>(i) * travel.step;
        // Profiles farther from the train than this are never recorded.
        if (sensor.isNearTrain(trainX, travel.step * (p.idleProfiles + 1))) {
            const View view = sensor.measure(trainX, i, profile);
            recorder.add(profile, trainX, view);
        }
        if (i % kProgressInterval == 0 && progress) {
            const double share = static_cast<double>(i) / static_cast<double>(travel.profiles);
            progress((sensorNumber - 1 + share) / sensorsOf(p));
        }
    }
    recorder.finish();
}

} // namespace

void simulatePass(const Parameters& p, const QString& directory, const Progress& progress) {
    const QDir dir(directory);
    const QString truthFile = dir.filePath(QStringLiteral("truth.json"));
    makeDirectory(directory);
    QFile::remove(truthFile); // its presence means a complete pass
    const Train train = makeTrain(p);
    std::vector<RecordingTruth> recordings;
    for (int sensor = 1; sensor <= sensorsOf(p); ++sensor) {
        const QString name = QStringLiteral("%1_%2.bin").arg(QString::fromStdString(p.prefix)).arg(serialOf(p, sensor));
        Recorder recorder(dir.filePath(name), p);
        record(p, train, sensor, recorder, progress);
        recordings.push_back({name, recorder.records(), recorder.wheels()});
    }
    for (const auto& [name, band] :
         {std::pair{"settings.ini", DefectBand::BackFace}, {"defects.ini", DefectBand::Tread}}) {
        writeSettings(dir.filePath(QLatin1String(name)), p, band);
    }
    writeWheelTruth(dir.filePath(QStringLiteral("truth.csv")), train);
    writeTruth(truthFile, p, train, recordings);
    if (progress) {
        progress(1.0);
    }
}

} // namespace kxsim
