// The truth about a simulated pass.
#include "simulator/truth.h"

#include "simulator/calibration.h"
#include "simulator/json.h"
#include "simulator/wornRim.h"

#include <KxInspect/AtomicFile.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

namespace kxsim {

namespace {

QJsonObject toJson(const SensorLine& line) {
    return {{"k", line.k}, {"b", line.b}};
}

QLatin1String shapeName(FlatShape shape) {
    return QLatin1String(shape == FlatShape::Even ? "even" : "plane");
}

const char* sideName(int side) {
    return side > 0 ? "left" : "right";
}

QJsonObject parametersToJson(const Parameters& p) {
    QJsonObject json;
    for (const NumberInfo& info : allNumbers()) {
        json[QLatin1String(info.name)] = valueOf(p, info);
    }
    json["seed"] = QString::number(p.seed); // JSON numbers do not hold 64 bits
    json["prefix"] = QString::fromStdString(p.prefix);
    json["records"] = p.records == RecordKind::Profile ? "profile" : "cloud";
    json["flat-shape"] = shapeName(p.flatShape);
    json["spacing"] = p.hasEqualAngles ? "angle" : "line";
    json["rails"] = p.hasRails;
    json["background"] = p.hasBackground;
    json["objects"] = p.hasObjects;
    if (!p.vehicles.empty()) {
        for (const char* const name : kNumbersOfCars) {
            json.remove(QLatin1String(name));
        }
        json["vehicles"] = static_cast<qint64>(p.vehicles.size());
    }
    if (p.isTurned) {
        json["turned"] = true;
    }
    return json;
}

QJsonObject sensorToJson(const Parameters& p, int sensor, const RecordingTruth& recording) {
    const Pose pose = makePose(p, sensor);
    const CalibratedLines lines = calibrate(p, sensor);
    return {{"serial", serialOf(p, sensor)}, {"file", recording.fileName}, {"side", sideName(sideOf(p, sensor))},
            {"records", recording.records},  {"pose", toJson(pose)},       {"reference", toJson(lines.reference)},
            {"level", toJson(lines.level)}};
}

QJsonArray defectsToJson(const Parameters& p, const Wheel& wheel, int pair, int sensor) {
    QJsonArray json;
    for (const Defect& d : p.defects) {
        if (d.pair == pair && d.sensor == sensor) {
            const bool isFlat = d.kind == Defect::Kind::Flat;
            QJsonObject defect = {
                {"kind", isFlat ? "flat" : "build-up"}, {isFlat ? "length" : "height", d.size}, {"phase", d.phase}};
            if (isFlat) {
                defect["shape"] = shapeName(p.flatShape);
                defect["depth"] = wheel.flatDepth(d.size);
            }
            json.append(defect);
        }
    }
    return json;
}

/// The records that show a wheel to one sensor.
QJsonObject recordsToJson(int number, const RecordingTruth& recording) {
    const WheelRecords& records = recording.wheels[static_cast<std::size_t>(number - 1)];
    return {{"firstRecord", records.first}, {"lastRecord", records.last}};
}

/// @param side 0 for the left wheel, 1 for the right one
QJsonObject wheelToJson(const Parameters& p, const WheelPair& pair, int number, int side,
                        const std::vector<RecordingTruth>& recordings) {
    const Wheel& wheel = pair.wheels[static_cast<std::size_t>(side)];
    QJsonObject json = {{"side", sideName(wheel.side)},
                        {"offset", wheel.backFace - p.backToBack / 2.0},
                        {"diameter", wheel.shape.diameter},
                        {"flangeThickness", flangeThickness(wheel.contour, wheel.shape.diameter)},
                        {"defects", defectsToJson(p, wheel, number, side + 1)}};
    QJsonArray seen;
    for (int sensor = 1; sensor <= sensorsOf(p); ++sensor) {
        if (sideOf(p, sensor) != wheel.side) {
            continue;
        }
        QJsonObject records = recordsToJson(number, recordings[static_cast<std::size_t>(sensor - 1)]);
        records["sensor"] = sensor;
        if (p.layout.empty()) { // the only one of its side
            for (auto at = records.constBegin(); at != records.constEnd(); ++at) {
                json[at.key()] = at.value();
            }
        } else {
            seen.append(records);
        }
    }
    if (!p.layout.empty()) {
        json["seen"] = seen;
    }
    return json;
}

} // namespace

void writeTruth(const QString& fileName, const Parameters& p, const Train& train,
                const std::vector<RecordingTruth>& recordings) {
    QJsonArray pairs;
    int number = 0;
    for (const WheelPair& pair : train.pairs) {
        ++number;
        QJsonArray wheels;
        for (const int side : {0, 1}) {
            wheels.append(wheelToJson(p, pair, number, side, recordings));
        }
        pairs.append(QJsonObject{{"pair", number},
                                 {"car", pair.car},
                                 {"bogie", pair.bogie},
                                 {"axle", pair.axle},
                                 {"behindFirst", pair.behind},
                                 {"backToBack", pair.backToBack},
                                 {"lateralShift", pair.lateralShift},
                                 {"yaw", 1000.0 * pair.yaw},
                                 {"wheels", wheels}});
    }
    QJsonArray equipment;
    for (const Equipment& e : train.equipment) {
        equipment.append(QJsonObject{{"kind", QString::fromStdString(e.kind)},
                                     {"low", QJsonArray{e.box.low.x, e.box.low.y, e.box.low.z}},
                                     {"high", QJsonArray{e.box.high.x, e.box.high.y, e.box.high.z}}});
    }
    QJsonArray sensors;
    for (int sensor = 1; sensor <= sensorsOf(p); ++sensor) {
        sensors.append(sensorToJson(p, sensor, recordings[static_cast<std::size_t>(sensor - 1)]));
    }
    const QJsonObject truth = {{"parameters", parametersToJson(p)},
                               {"profileStep", 1000.0 * p.speed / p.rate},
                               {"sensors", sensors},
                               {"pairs", pairs},
                               {"equipment", equipment}};
    KxInspect::writeWholeFile({{}, fileName.toStdString(), {}}, QJsonDocument(truth).toJson().toStdString());
}

void writeWheelTruth(const QString& fileName, const Train& train) {
    QByteArray text = "pair,car,bogie,axle,side,back_to_back,yaw,diameter,flange_height,flange_thickness,qr,hollow\n";
    int number = 0;
    for (const WheelPair& pair : train.pairs) {
        ++number;
        for (const Wheel& wheel : pair.wheels) {
            const RimTruth rim = trueMeasures(rimOf(wheel.contour, wheel.shape.diameter));
            const double values[] = {pair.backToBack, 1000.0 * pair.yaw, wheel.shape.diameter,
                                     rim.height,      rim.thickness,     rim.flangeSlope,
                                     rim.hollow};
            for (const int count : {number, pair.car, pair.bogie, pair.axle}) {
                text += QByteArray::number(count) + ',';
            }
            text += sideName(wheel.side);
            for (const double value : values) {
                text += ',' + QByteArray::number(value, 'f', 4);
            }
            text += '\n';
        }
    }
    KxInspect::writeWholeFile({{}, fileName.toStdString(), {}}, text.toStdString());
}

} // namespace kxsim
