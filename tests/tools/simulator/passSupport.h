// A simulated pass in a folder of its own, and what the library makes of it.
#pragma once

#include "simulator/simulation.h"

#include <KxMath/KxMetro.h>
#include <KxMath/KxProfileZ.h>

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QSettings>
#include <QtCore/QTemporaryDir>

#include <array>
#include <deque>
#include <vector>

namespace simulator_test {

inline QByteArray readAll(const QString& fileName) {
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// One car with a coarse step: quick, and each wheel still has some thirty profiles.
inline kxsim::Parameters quickPass(std::uint64_t seed) {
    kxsim::Parameters p;
    p.seed = seed;
    p.cars = 1;
    p.rate = 1000.0;
    return p;
}

class Pass {
public:
    explicit Pass(const kxsim::Parameters& p) : before_(QDir::currentPath()) {
        fault = kxsim::simulatePass(p, folder_.path(), {});
        truth = QJsonDocument::fromJson(readAll(path("truth.json"))).object();
        QDir::setCurrent(folder_.path()); // where the library writes the wheels
    }
    ~Pass() { QDir::setCurrent(before_); }
    Q_DISABLE_COPY_MOVE(Pass)

    QString path(const QString& name) const { return folder_.filePath(name); }
    QJsonArray pairs() const { return truth["pairs"].toArray(); }
    QString recording(int sensor) const { return truth["sensors"].toArray()[sensor - 1].toObject()["file"].toString(); }
    QJsonObject wheel(qsizetype pair, int sensor) const {
        return pairs()[pair].toObject()["wheels"].toArray()[sensor - 1].toObject();
    }

    /// The number of wheels that detection finds; `starts` receives the records with which they start.
    int detect(int sensor, int mode, QSettings& settings, std::vector<int>& starts) const {
        QDir(recording(sensor).chopped(4)).removeRecursively();
        QSettings results(path(QStringLiteral("results.ini")), QSettings::IniFormat);
        int wheels = -1;
        KxMath::METRO_detectWheels_Test(recording(sensor), &settings, mode, &wheels, &results);
        for (int wheel = 1; wheel <= wheels; ++wheel) {
            starts.push_back(results.value(QStringLiteral("Wheel_%1/firstProfInWheel").arg(wheel)).toInt());
        }
        return wheels;
    }

    /// All profiles of a recording with profile records.
    std::deque<KxMath::KxProfileZ> profiles(int sensor) const {
        std::deque<KxMath::KxProfileZ> all;
        QFile file(path(recording(sensor)));
        KxMath::KxProfileZ record;
        file.open(QIODevice::ReadOnly);
        while (record.readFromFile(file) >= 0) {
            all.emplace_back(record);
        }
        return all;
    }

    QString fault;
    QJsonObject truth;

private:
    QTemporaryDir folder_;
    QString before_;
};

} // namespace simulator_test
