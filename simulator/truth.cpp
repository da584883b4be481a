// The truth about a simulated pass.
#include "simulator/truth.h"

#include "simulator/calibration.h"
#include "simulator/json.h"

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
    return json;
}

QJsonObject sensorToJson(const Parameters& p, int sensor, const RecordingTruth& recording) {
    const Pose pose = makePose(p, sensor);
    const CalibratedLines lines = calibrate(p, sensor);
    return {{"serial", serialOf(p, sensor)}, {"file", recording.fileName}, {"side", sensor == 1 ? "left" : "right"},
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

QJsonObject wheelToJson(const Parameters& p, const WheelPair& pair, int number, int sensor,
                        const RecordingTruth& recording) {
    const Wheel& wheel = pair.wheels[static_cast<std::size_t>(sensor - 1)];
    const WheelRecords& records = recording.wheels[static_cast<std::size_t>(number - 1)];
    return {{"sensor", sensor},
            {"side", sensor == 1 ? "left" : "right"},
            {"offset", wheel.backFace - p.backToBack / 2.0},
            {"diameter", wheel.shape.diameter},
            {"flangeThickness", flangeThickness(wheel.contour, wheel.shape.diameter)},
            {"firstRecord", records.first},
            {"lastRecord", records.last},
            {"defects", defectsToJson(p, wheel, number, sensor)}};
}

} // namespace

void writeTruth(const QString& fileName, const Parameters& p, const Train& train,
                const std::array<RecordingTruth, 2>& recordings) {
    QJsonArray pairs;
    int number = 0;
    for (const WheelPair& pair : train.pairs) {
        ++number;
        QJsonArray wheels;
        for (const int sensor : {1, 2}) {
            wheels.append(wheelToJson(p, pair, number, sensor, recordings[static_cast<std::size_t>(sensor - 1)]));
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
    const QJsonObject truth = {
        {"parameters", parametersToJson(p)},
        {"profileStep", 1000.0 * p.speed / p.rate},
        {"sensors", QJsonArray{sensorToJson(p, 1, recordings[0]), sensorToJson(p, 2, recordings[1])}},
        {"pairs", pairs},
        {"equipment", equipment}};
    KxInspect::writeWholeFile({{}, fileName.toStdString(), {}}, QJsonDocument(truth).toJson().toStdString());
}

} // namespace kxsim
