// Passes into rows, and rows into series.
#include "fleet/store/store.h"

#include "fleet/store/passKey.h"
#include "fleet/store/schema.h"

#include <KxInspect/Error.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <map>
#include <tuple>
#include <utility>

namespace kxfleet {

namespace {

using KxInspect::Error;
using KxInspect::ErrorKind;
using KxInspect::MeasureInfo;
using KxInspect::MeasureOf;
using KxInspect::PassResult;
using KxInspect::SheetRow;
using KxInspect::SheetValue;

Field textField(const std::optional<std::string>& text) {
    return text && !text->empty() ? Field(*text) : Field();
}

/// As a float: PostgreSQL keeps four bytes, and both engines are to keep the same.
Field numberField(double number) {
    return std::isfinite(number) ? Field(static_cast<double>(static_cast<float>(number))) : Field();
}

template <class Enum>
Field codeField(const std::optional<Enum>& code) {
    return code ? Field(static_cast<std::int64_t>(*code)) : Field();
}

/// A text of the vehicle of a wheel, NULL where it is not known.
Field vehicleText(const PassResult& pass, const SheetRow& row,
                  std::optional<std::string> KxInspect::PassVehicle::*text) {
    for (const KxInspect::PassVehicle& vehicle : pass.train.vehicles) {
        if (row.axle.vehicle == vehicle.number) {
            return textField(vehicle.*text);
        }
    }
    return {};
}

/// The side of a vehicle whose wheel ran on a side of the track.
std::string sideOfVehicle(const std::string& trackSide, std::int64_t order) {
    if (order != static_cast<std::int64_t>(KxInspect::VehicleOrder::Turned)) {
        return trackSide;
    }
    for (const auto& [one, other] : {std::pair{"left", "right"}, std::pair{"1", "2"}}) {
        if (trackSide == one || trackSide == other) {
            return trackSide == one ? other : one;
        }
    }
    return trackSide;
}

std::string sideOf(const SheetRow& row) {
    return row.trackSide ? KxInspect::textOf(*row.trackSide) : std::to_string(row.side);
}

/// "INSERT INTO wheel (...) VALUES ($1, ...)" for a table of wheels or axles.
std::string insertInto(const std::string& table, std::vector<std::string> columns, MeasureOf of) {
    for (const MeasureInfo& info : storedMeasures(of)) {
        for (const char* const end : {"", "_low", "_high", "_reason", "_verdict"}) {
            columns.push_back(columnOf(info.name) + end);
        }
    }
    std::string names;
    std::string places;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        names += (i > 0 ? ", " : "") + columns[i];
        places += (i > 0 ? ", $" : "$") + std::to_string(i + 1);
    }
    return "INSERT INTO " + table + " (" + names + ") VALUES (" + places + ")";
}

std::string textIn(const Field& field) {
    const auto* const text = std::get_if<std::string>(&field);
    return text != nullptr ? *text : std::string();
}

float floatIn(const Field& field) {
    const auto* const number = std::get_if<double>(&field);
    return number != nullptr ? static_cast<float>(*number) : std::numeric_limits<float>::quiet_NaN();
}

} // namespace

std::string columnOf(const std::string& measure) {
    std::string column;
    for (const char c : measure) {
        if (c >= 'A' && c <= 'Z') {
            column += '_';
            column += static_cast<char>(c - 'A' + 'a');
        } else {
            column += c;
        }
    }
    return column;
}

std::vector<MeasureInfo> storedMeasures(MeasureOf of) {
    std::vector<MeasureInfo> found;
    for (const MeasureInfo& info : KxInspect::measureInfos()) {
        if (info.of == of) {
            found.push_back(info);
        }
    }
    return found;
}

// NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the member frees it
Store::Store(const std::string& name, IfMissing ifMissing) : name_(name), database_(connect(name, ifMissing)) {
    if (ifMissing == IfMissing::Refuse && storeVersion(*database_, name) == 0) {
        throw Error(ErrorKind::Unsuitable, {"store", shownName(name), {}},
                    "is empty: kxmath store add makes its tables");
    }
    migrate(*database_, name);
}

Field Store::reasonId(const std::string& text) {
    if (text.empty()) {
        return {};
    }
    database_->run("INSERT INTO reason (text) VALUES ($1) ON CONFLICT DO NOTHING", {text});
    return database_->number("SELECT id FROM reason WHERE text = $1", {text});
}

void Store::addMeasures(Row& row, const SheetRow& sheet, MeasureOf of) {
    const std::vector<MeasureInfo>& infos = KxInspect::measureInfos();
    for (std::size_t i = 0; i < infos.size(); ++i) {
        if (infos[i].of == of) {
            const SheetValue value = i < sheet.values.size() ? sheet.values[i] : SheetValue();
            row.push_back(value.value ? numberField(*value.value) : Field());
            row.push_back(numberField(static_cast<double>(value.interval.low)));
            row.push_back(numberField(static_cast<double>(value.interval.high)));
            row.push_back(reasonId(value.reason));
            row.push_back(codeField(value.verdict));
        }
    }
}

AddedPass Store::add(const PassResult& pass) {
    AddedPass added;
    const std::optional<std::string> key = passKey(pass);
    if (!key) {
        throw Error(ErrorKind::Unsuitable, {"result", {}, {}},
                    "holds no hash of a recording, which would identify the pass");
    }
    added.key = *key;
    const KxInspect::PassLabels& labels = pass.identity.labels;
    Field time;
    if (labels.time) {
        const std::optional<std::int64_t> utc = utcMilliseconds(*labels.time);
        if (!utc) {
            throw Error(ErrorKind::Unsuitable, {"result", {}, "time"}, "holds a time that is none: " + *labels.time);
        }
        time = *utc;
    }
    added.hasTime = labels.time.has_value();
    Transaction transaction(*database_);
    const std::optional<KxInspect::LimitVerdict> verdict =
        pass.assessment ? pass.assessment->ofPass() : std::optional<KxInspect::LimitVerdict>();
    const std::vector<Row> ids = database_->rows(
        "INSERT INTO pass (key, station, line, track, direction, time_ms, time, speed, vehicle_order, version, "
        "verdict, "
        "warnings) VALUES ($1, $2, $3, $4, $5, $6, $7, $8, $9, $10, $11, $12) ON CONFLICT DO NOTHING RETURNING id",
        {*key, textField(labels.station), textField(labels.line), textField(labels.track), textField(labels.direction),
         time, textField(labels.time), labels.speed ? numberField(static_cast<double>(*labels.speed)) : Field(),
         static_cast<std::int64_t>(pass.train.order), pass.identity.version, codeField(verdict),
         static_cast<std::int64_t>(pass.warnings.size())});
    if (ids.empty()) {
        added.outcome = AddOutcome::AlreadyThere;
    }
    const std::string addWheel = insertInto(
        "wheel", {"pass", "number", "vehicle", "vehicle_class", "axle", "side", "verdict"}, MeasureOf::Wheel);
    const std::string addAxle = insertInto("axle", {"pass", "number", "vehicle", "axle"}, MeasureOf::Axle);
    added.hasVehicles = true;
    int lastPair = 0;
    for (const SheetRow& sheet : KxInspect::sheetOf(pass)) {
        if (sheet.pair < 1) {
            continue; // an axle that no sensor saw
        }
        ++added.wheels;
        const Field vehicle = vehicleText(pass, sheet, &KxInspect::PassVehicle::vehicleNumber);
        added.hasVehicles = added.hasVehicles && !std::holds_alternative<std::monostate>(vehicle);
        if (ids.empty()) {
            continue;
        }
        const Field number = std::int64_t{sheet.pair};
        Row wheel{ids[0][0],
                  number,
                  vehicle,
                  vehicleText(pass, sheet, &KxInspect::PassVehicle::vehicleClass),
                  codeField(sheet.axle.axle),
                  sideOf(sheet),
                  codeField(sheet.verdict)};
        addMeasures(wheel, sheet, MeasureOf::Wheel);
        database_->run(addWheel, wheel);
        if (sheet.pair != lastPair) {
            Row axle{ids[0][0], number, vehicle, codeField(sheet.axle.axle)};
            addMeasures(axle, sheet, MeasureOf::Axle);
            database_->run(addAxle, axle);
            lastPair = sheet.pair;
        }
    }
    transaction.commit();
    return added;
}

void Store::series(const std::string& measure, const std::string& vehicle,
                   const std::function<void(const StoredReading&)>& onReading) {
    const std::vector<MeasureInfo> known = storedMeasures(MeasureOf::Wheel);
    if (std::none_of(known.begin(), known.end(), [&](const MeasureInfo& info) { return info.name == measure; })) {
        throw Error(ErrorKind::BadArgument, {{}, {}, "measure"}, "is no stored measure of wheels: " + measure);
    }
    const std::string column = "w." + columnOf(measure);
    const std::string sql =
        "SELECT w.vehicle, w.axle, w.side, w.vehicle_class, p.vehicle_order, p.station, p.time_ms, " + column + ", " +
        column + "_low, " + column + "_high, " + column +
        "_verdict FROM pass p JOIN wheel w ON w.pass = p.id WHERE w.vehicle " +
        (vehicle.empty() ? "IS NOT NULL" : "= $1") + " AND w.axle IS NOT NULL AND " + column +
        " IS NOT NULL AND p.time_ms IS NOT NULL ORDER BY p.time_ms, p.id";
    using Place = std::tuple<std::string, std::string, std::int64_t, std::string>;
    std::map<Place, StoredReading> held; // those of one time, of each the last one, by station, vehicle, axle, side
    const auto release = [&] {
        for (const auto& [place, reading] : held) {
            onReading(reading);
        }
        held.clear();
    };
    database_->run(sql, vehicle.empty() ? Row() : Row{vehicle}, [&](const Row& row) {
        StoredReading reading;
        reading.trackSide = textIn(row[2]);
        reading.wheel = {textIn(row[0]), std::get<std::int64_t>(row[1]),
                         sideOfVehicle(reading.trackSide, std::get<std::int64_t>(row[4]))};
        reading.vehicleClass = textIn(row[3]);
        reading.station = textIn(row[5]);
        reading.milliseconds = std::get<std::int64_t>(row[6]);
        reading.value = std::get<double>(row[7]);
        reading.interval = {floatIn(row[8]), floatIn(row[9])};
        if (const auto* const verdict = std::get_if<std::int64_t>(&row[10])) {
            reading.verdict = static_cast<KxInspect::LimitVerdict>(*verdict);
        }
        if (!held.empty() && held.begin()->second.milliseconds != reading.milliseconds) {
            release();
        }
        held[{reading.station, reading.wheel.vehicle, reading.wheel.axle, reading.trackSide}] = reading;
    });
    release();
}

StoreInfo Store::info() {
    StoreInfo info;
    info.schemaVersion = storeVersion(*database_, name_);
    info.passes = database_->number("SELECT count(*) FROM pass");
    info.withoutTime = database_->number("SELECT count(*) FROM pass WHERE time_ms IS NULL");
    info.wheels = database_->number("SELECT count(*) FROM wheel");
    info.axles = database_->number("SELECT count(*) FROM axle");
    const Row span = database_->rows("SELECT min(time_ms), max(time_ms) FROM pass").at(0);
    if (const auto* const first = std::get_if<std::int64_t>(span.data())) {
        info.first = *first;
        info.last = std::get<std::int64_t>(span[1]);
    }
    database_->run("SELECT DISTINCT version FROM pass ORDER BY version", {},
                   [&](const Row& row) { info.versions.push_back(textIn(row[0])); });
    return info;
}

std::vector<std::string> Store::faults() {
    std::vector<std::string> found = database_->faults();
    const auto count = [&](const std::string& sql, const char* what) {
        const std::int64_t rows = database_->number(sql);
        if (rows > 0) {
            found.push_back(std::to_string(rows) + ' ' + what);
        }
    };
    count("SELECT count(*) FROM wheel w LEFT JOIN pass p ON p.id = w.pass WHERE p.id IS NULL",
          "wheels without their pass");
    count("SELECT count(*) FROM axle a LEFT JOIN pass p ON p.id = a.pass WHERE p.id IS NULL",
          "axles without their pass");
    count(
        "SELECT count(*) FROM wheel w LEFT JOIN axle a ON a.pass = w.pass AND a.number = w.number WHERE a.pass IS NULL",
        "wheels without their axle");
    for (const MeasureOf of : {MeasureOf::Wheel, MeasureOf::Axle}) {
        const std::string table = of == MeasureOf::Wheel ? "wheel" : "axle";
        for (const MeasureInfo& info : storedMeasures(of)) {
            const std::string reason = "t." + columnOf(info.name) + "_reason";
            std::string query = "SELECT count(*) FROM " + table;
            query.append(" t LEFT JOIN reason r ON r.id = ").append(reason);
            query.append(" WHERE ").append(reason).append(" IS NOT NULL AND r.id IS NULL");
            count(query, "values whose reason is missing");
        }
    }
    return found;
}

} // namespace kxfleet
