// Profiles of the calibration object as files, and a file with the truth.
#include "simulator/calibrationShots.h"

#include "simulator/calibrationTrial.h"
#include "simulator/json.h"

#include <KxMath/KxProfileZ.h>

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QSaveFile>

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

} // namespace

QString writeCalibrationShots(const CalibrationShots& shots, const QString& directory) {
    const QDir dir(directory);
    const QString truthFile = dir.filePath(QStringLiteral("truth.json"));
    const auto cannotWrite = [](const QString& name) { return QStringLiteral("cannot write '%1'").arg(name); };
    if (!dir.mkpath(QStringLiteral("."))) {
        return QStringLiteral("cannot create the directory '%1'").arg(directory);
    }
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
        if (!profile.writeToFile(dir.filePath(name))) {
            return cannotWrite(dir.filePath(name));
        }
        files.append(name);
    }
    QSaveFile truth(truthFile);
    const QByteArray text = QJsonDocument(truthOf(shots, pose, files, isInView)).toJson();
    const bool isWritten = truth.open(QIODevice::WriteOnly) && truth.write(text) == text.size() && truth.commit();
    return isWritten ? QString() : cannotWrite(truthFile);
}

} // namespace kxsim
