// A simulated pass in a folder of its own, and what the library makes of it.
#pragma once

#include "railway/workingFolder.h"
#include "simulator/simulation.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <deque>
#include <vector>

namespace simulator_test {

using namespace testing_support;

/// One car with a coarse step: quick, and each wheel still has some thirty profiles.
inline kxsim::Parameters quickPass(std::uint64_t seed) {
    kxsim::Parameters p;
    p.seed = seed;
    p.cars = 1;
    p.rate = 1000.0;
    return p;
}

class Pass : public WorkingFolder { // where the library writes the wheels
public:
    explicit Pass(const kxsim::Parameters& p) {
        kxsim::simulatePass(p, path(""), {});
        truth = QJsonDocument::fromJson(read("truth.json")).object();
    }

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
        METRO_detectWheels_Test(recording(sensor), &settings, mode, &wheels, &results);
        for (int wheel = 1; wheel <= wheels; ++wheel) {
            starts.push_back(results.value(QStringLiteral("Wheel_%1/firstProfInWheel").arg(wheel)).toInt());
        }
        return wheels;
    }

    /// All profiles of a recording with profile records.
    std::deque<KxProfileZ> profiles(int sensor) const {
        std::deque<KxProfileZ> all;
        QFile file(path(recording(sensor)));
        KxProfileZ record;
        file.open(QIODevice::ReadOnly);
        while (record.readFromFile(file) >= 0) {
            all.emplace_back(record);
        }
        return all;
    }

    QJsonObject truth;
};

} // namespace simulator_test
