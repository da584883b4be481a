// Profiles of the calibration object as files, and a file with the truth.
#include "simulator/calibrationShots.h"

#include "simulator/directory.h"
#include "simulator/json.h"

#include <KxInspect/AtomicFile.h>
#include <KxMath/KxProfileZ.h>

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

namespace kxsim {

namespace {

/// @param moves of the object, for each file
QJsonObject truthOf(const CalibrationShots& shots, const Pose& pose, const QJsonArray& files, const QJsonArray& moves,
                    bool isInView) {
    const CalibrationSensor& sensor = shots.sensor;
    return {{"position", shots.placement},
            {"seed", QString::number(shots.seed)}, // JSON numbers do not hold 64 bits
            {"object", toJson(shots.object)},
            {"sensor", QJsonObject{{"points", sensor.points},
                                   {"halfAngle", sensor.fan / 2.0},
                                   {"maxRange", sensor.range},
                                   {"noise", sensor.noise},
                                   {"spikes", sensor.spikes},
                                   {"spikeSize", sensor.spikeSize}}},
            {"pose", toJson(pose)},
            {"isInView", isInView},
            {"moves", moves},
            {"files", files}};
}

void writeShot(const QString& path, KxMath::KxProfileZ& profile) {
    KxInspect::AtomicFile whole({{}, path.toStdString(), {}});
    QFile file(QString::fromStdString(whole.path()));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || !profile.writeToFile(file) || !file.flush()) {
        whole.fail(file.errorString().toStdString());
    }
    whole.commit(static_cast<std::uint64_t>(file.pos()));
}

} // namespace

void writeCalibrationShots(const CalibrationShots& shots, const QString& directory) {
    const QDir dir(directory);
    const QString truthFile = dir.filePath(QStringLiteral("truth.json"));
    makeDirectory(directory);
    QFile::remove(truthFile); // its presence means complete files
    const Pose pose = offsetPose(nominalCalibrationPose(shots.placement, shots.object), shots.placement, shots.alpha,
                                 shots.beta, shots.gamma, shots.offset);
    bool isInView = true;
    QJsonArray files;
    QJsonArray moves;
    for (const Vec3& move : shots.moves.empty() ? std::vector{Vec3{}} : shots.moves) {
        // What the sensor sees of an object that was moved is what one that was moved back sees.
        Pose seenFrom = pose;
        seenFrom.origin = pose.origin - move;
        for (int i = 0; i < shots.profiles; ++i) {
            const qsizetype number = files.size() + 1;
            Random random({shots.seed, static_cast<std::uint64_t>(number)});
            KxMath::KxProfileZ profile;
            profile.z = 0.0f;
            isInView = takeCalibrationProfile(shots.object, shots.placement, seenFrom, shots.sensor, random, profile) &&
                       isInView;
            const QString name = QStringLiteral("calibration-%1.bin").arg(number);
            writeShot(dir.filePath(name), profile);
            files.append(name);
            moves.append(QJsonArray{move.x, move.y, move.z});
        }
    }
    const QByteArray truth = QJsonDocument(truthOf(shots, pose, files, moves, isInView)).toJson();
    KxInspect::writeWholeFile({{}, truthFile.toStdString(), {}}, truth.toStdString());
}

} // namespace kxsim
