// Profiles of the calibration object as files, and a file with the truth.
#include "simulator/calibrationShots.h"

#include "simulator/calibrationTrial.h"
#include "simulator/directory.h"
#include "simulator/json.h"

#include <KxInspect/AtomicFile.h>
#include <KxMath/KxProfileZ.h>

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

namespace kxsim {

namespace {

QJsonObject truthOf(const CalibrationShots& shots, const Pose& pose, const QJsonArray& files, bool isInView) {
    const CalibrationSensor& sensor = shots.sensor;
    return {{"position", shots.placement},
            {"seed", QString::number(shots.seed)}, // JSON numbers do not hold 64 bits
            {"object", toJson(shots.object)},
            {"sensor", QJsonObject{{"points", sensor.points},
                                   {"halfAngle", sensor.fan / 2.0},
                                   {"maxRange", sensor.range},
                                   {"noise", sensor.noise}}},
            {"pose", toJson(pose)},
            {"isInView", isInView},
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
    bool isInView = false;
    QJsonArray files;
    for (int i = 1; i <= shots.profiles; ++i) {
        Random random({shots.seed, static_cast<std::uint64_t>(i)});
        KxMath::KxProfileZ profile;
        profile.z = 0.0f;
        isInView = takeCalibrationProfile(shots.object, shots.placement, pose, shots.sensor, random, profile);
        const QString name = QStringLiteral("calibration-%1.bin").arg(i);
        writeShot(dir.filePath(name), profile);
        files.append(name);
    }
    const QByteArray truth = QJsonDocument(truthOf(shots, pose, files, isInView)).toJson();
    KxInspect::writeWholeFile({{}, truthFile.toStdString(), {}}, truth.toStdString());
}

} // namespace kxsim
