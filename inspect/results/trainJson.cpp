// The vehicles of a pass in its JSON form.
#include "inspect/results/trainJson.h"

#include <array>

namespace KxInspect::detail {

namespace {

constexpr int kMostVehicles = 1 << 20;
constexpr std::array<const char*, 3> kOrders = {"passing", "listed", "turned"}; // of VehicleOrder

QJsonValue textValue(const std::optional<std::string>& text) {
    return text ? QJsonValue(QString::fromStdString(*text)) : QJsonValue();
}

QJsonValue reasonValue(const std::string& reason) {
    return reason.empty() ? QJsonValue() : QJsonValue(QString::fromStdString(reason));
}

QJsonValue numberValue(const std::optional<int>& number) {
    return number ? QJsonValue(*number) : QJsonValue();
}

std::optional<int> readNumber(const JsonValue& value) {
    return value.isNull() ? std::nullopt : std::optional(value.wholeNumber(1, kMostVehicles));
}

std::optional<std::string> readText(const JsonValue& value) {
    return value.isNull() ? std::nullopt : std::optional(value.text());
}

PassVehicle readVehicle(const JsonValue& value) {
    PassVehicle vehicle;
    vehicle.number = value["vehicle"].wholeNumber(1, kMostVehicles);
    for (const JsonValue& axles : value["layout"].list()) {
        vehicle.layout.push_back(axles.wholeNumber(1, kMostVehicles));
    }
    vehicle.seen = value["axlesSeen"].wholeNumber(0, kMostVehicles);
    vehicle.mark = readText(value["mark"]);
    vehicle.vehicleNumber = readText(value["number"]);
    vehicle.vehicleClass = readText(value["class"]);
    vehicle.doubt = value["doubt"].textOrNull();
    return vehicle;
}

} // namespace

QJsonObject trainObject(const PassTrain& train) {
    QJsonArray vehicles;
    for (const PassVehicle& vehicle : train.vehicles) {
        vehicles.append(QJsonObject{{QStringLiteral("vehicle"), vehicle.number},
                                    {QStringLiteral("layout"), jsonList(vehicle.layout)},
                                    {QStringLiteral("axles"), vehicle.axles()},
                                    {QStringLiteral("axlesSeen"), vehicle.seen},
                                    {QStringLiteral("mark"), textValue(vehicle.mark)},
                                    {QStringLiteral("number"), textValue(vehicle.vehicleNumber)},
                                    {QStringLiteral("class"), textValue(vehicle.vehicleClass)},
                                    {QStringLiteral("doubt"), reasonValue(vehicle.doubt)}});
    }
    return {{QStringLiteral("vehicles"), vehicles},
            {QStringLiteral("order"), QLatin1String(kOrders[static_cast<std::size_t>(train.order)])},
            {QStringLiteral("isListed"), train.isListed},
            {QStringLiteral("scale"), train.scale ? jsonNumber(*train.scale) : QJsonValue()},
            {QStringLiteral("reason"), reasonValue(train.reason)},
            {QStringLiteral("mismatches"), jsonList(train.mismatches)}};
}

PassTrain readTrain(const JsonValue& value) {
    PassTrain train;
    for (const JsonValue& vehicle : value["vehicles"].list()) {
        train.vehicles.push_back(readVehicle(vehicle));
    }
    const std::string order = value["order"].text();
    std::size_t found = 0;
    while (order != kOrders[found]) {
        if (++found == kOrders.size()) {
            value["order"].failAsNo(QStringLiteral("order of vehicles"));
        }
    }
    train.order = static_cast<VehicleOrder>(found);
    train.isListed = value["isListed"].flag();
    if (!value["scale"].isNull()) {
        train.scale = value["scale"].wideNumber();
    }
    train.reason = value["reason"].textOrNull();
    train.mismatches = value["mismatches"].texts();
    return train;
}

void addAxleNumber(const AxleNumber& number, QJsonObject& pair) {
    pair[QStringLiteral("vehicle")] = numberValue(number.vehicle);
    pair[QStringLiteral("bogie")] = numberValue(number.bogie);
    pair[QStringLiteral("axle")] = numberValue(number.axle);
    pair[QStringLiteral("vehicleReason")] = reasonValue(number.reason);
}

AxleNumber readAxleNumber(const JsonValue& pair) {
    return {readNumber(pair["vehicle"]), readNumber(pair["bogie"]), readNumber(pair["axle"]),
            pair["vehicleReason"].textOrNull()};
}

} // namespace KxInspect::detail
