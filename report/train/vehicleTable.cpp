// The identity and the vehicles of a pass, for text and page.
#include "report/train/vehicleTable.h"

#include "report/elements/numbers.h"
#include "report/elements/textList.h"
#include "report/train/passWords.h"

namespace kxreport {

using namespace KxInspect;

namespace {

QString textOrDash(const std::optional<std::string>& text) {
    return text && !text->empty() ? QString::fromStdString(*text) : QStringLiteral("-");
}

QString layoutText(const PassVehicle& vehicle) {
    QStringList axles;
    for (const int count : vehicle.layout) {
        axles.append(QString::number(count));
    }
    return axles.join(QLatin1Char('+'));
}

/// The numbers of the pairs of a vehicle.
std::vector<int> pairsOf(const PassResult& pass, const PassVehicle& vehicle) {
    std::vector<int> pairs;
    for (std::size_t i = 0; i < pass.pairs.size(); ++i) {
        if (pass.pairs[i].axle.vehicle == vehicle.number) {
            pairs.push_back(static_cast<int>(i) + 1);
        }
    }
    return pairs;
}

PairColumn column(const char* key, PairValue (*value)(const PassResult& pass, const WheelPair& pair)) {
    return {QLatin1String(key), QLatin1String(key),
            [value](const PassResult& pass, size_t index) { return value(pass, pass.pairs[index]); }};
}

PairValue numberValue(const std::optional<int>& number) {
    return number ? PairValue(*number) : PairValue();
}

PairValue textValue(const PassVehicle* vehicle, std::optional<std::string> PassVehicle::*text) {
    const bool isThere = vehicle != nullptr && vehicle->*text;
    return isThere ? PairValue(QString::fromStdString(*(vehicle->*text))) : PairValue();
}

} // namespace

QString identityText(const PassResult& pass) {
    const PassLabels& labels = pass.identity.labels;
    QStringList parts;
    const std::pair<const char*, const std::optional<std::string>*> texts[] = {{"station ", &labels.station},
                                                                               {"line ", &labels.line},
                                                                               {"track ", &labels.track},
                                                                               {"direction ", &labels.direction},
                                                                               {"", &labels.time}};
    for (const auto& [name, text] : texts) {
        if (*text) {
            parts.append(QLatin1String(name) + QString::fromStdString(**text));
        }
    }
    if (labels.speed) {
        parts.append(QStringLiteral("%1 km/h").arg(shortestText(*labels.speed)));
    }
    return parts.join(QStringLiteral(", "));
}

std::vector<QStringList> vehicleRows(const PassResult& pass) {
    if (pass.train.vehicles.empty()) {
        return {};
    }
    std::vector<QStringList> rows;
    rows.push_back(
        textList({QStringLiteral("vehicle"), QStringLiteral("mark"), QStringLiteral("number"), QStringLiteral("class"),
                  QStringLiteral("bogies"), QStringLiteral("axles"), QStringLiteral("seen"), QStringLiteral("pairs")}));
    for (const PassVehicle& vehicle : pass.train.vehicles) {
        rows.push_back(
            textList({QString::number(vehicle.number), textOrDash(vehicle.mark), textOrDash(vehicle.vehicleNumber),
                      textOrDash(vehicle.vehicleClass), layoutText(vehicle), QString::number(vehicle.axles()),
                      QString::number(vehicle.seen), runsText(pairsOf(pass, vehicle))}));
    }
    return rows;
}

QStringList vehicleNotes(const PassResult& pass) {
    const PassTrain& train = pass.train;
    QStringList notes;
    if (!train.reason.empty()) {
        notes.append(QStringLiteral("No vehicles: %1.").arg(QString::fromStdString(train.reason)));
    } else if (train.order == VehicleOrder::Passing) {
        notes.append(QStringLiteral("Vehicles are counted as they passed, by the gaps between axles."));
    } else {
        notes.append(QStringLiteral("Vehicles are counted as listed; the %1 vehicle of the list passed first.")
                         .arg(train.order == VehicleOrder::Turned ? QStringLiteral("last") : QStringLiteral("first")));
    }
    for (const PassVehicle& vehicle : train.vehicles) {
        if (!vehicle.doubt.empty()) {
            notes.append(QStringLiteral("Vehicle %1 is doubtful: %2.")
                             .arg(QString::number(vehicle.number), QString::fromStdString(vehicle.doubt)));
        }
    }
    for (const std::string& mismatch : train.mismatches) {
        notes.append(QStringLiteral("Mismatch: %1.").arg(QString::fromStdString(mismatch)));
    }
    return notes;
}

const std::vector<PairColumn>& axleColumns() {
    static const std::vector<PairColumn> columns = {
        column("vehicle", [](const PassResult&, const WheelPair& pair) { return numberValue(pair.axle.vehicle); }),
        column("bogie", [](const PassResult&, const WheelPair& pair) { return numberValue(pair.axle.bogie); }),
        column("axle", [](const PassResult&, const WheelPair& pair) { return numberValue(pair.axle.axle); }),
        column("mark", [](const PassResult& pass,
                          const WheelPair& pair) { return textValue(pass.vehicleOf(pair), &PassVehicle::mark); }),
        column("number",
               [](const PassResult& pass, const WheelPair& pair) {
                   return textValue(pass.vehicleOf(pair), &PassVehicle::vehicleNumber);
               }),
        column("vehicle_reason", [](const PassResult&, const WheelPair& pair) {
            return pair.axle.reason.empty() ? PairValue() : PairValue(QString::fromStdString(pair.axle.reason));
        })};
    return columns;
}

} // namespace kxreport
