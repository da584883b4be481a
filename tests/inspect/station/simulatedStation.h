// Passes at a simulated station whose two sensors differ.
#pragma once

#include "simulator/simulation.h"
#include "support/tempFiles.h"

#include <KxInspect/StationSetup.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <functional>

namespace station_test {

using Change = std::function<void(kxsim::Parameters&)>;

/// A pass of one car with four wheel pairs. Each sensor is that of a station of its own, past which the same train runs.
inline KxInspect::KnownPass simulate(const testing_support::TempFiles& files, const QString& name, std::uint64_t seed,
                                     const Change& first, const Change& second) {
    KxInspect::KnownPass pass;
    for (const int sensor : {1, 2}) {
        kxsim::Parameters p;
        p.seed = seed;
        p.cars = 1;
        p.rate = 1000.0;
        p.distanceSpread = 1.2;
        (sensor == 1 ? first : second)(p);
        const QString folder = QStringLiteral("%1-%2").arg(name).arg(sensor);
        kxsim::simulatePass(p, files.path(folder), {});
        const QJsonObject truth = QJsonDocument::fromJson(files.read(folder + "/truth.json")).object();
        const QString file = truth["sensors"].toArray()[sensor - 1].toObject()["file"].toString();
        pass.recordings.push_back(files.path(folder + '/' + file).toStdString());
        pass.distances.clear();
        for (const QJsonValue pair : truth["pairs"].toArray()) {
            pass.distances.push_back(pair.toObject()["backToBack"].toDouble());
        }
    }
    return pass;
}

} // namespace station_test
