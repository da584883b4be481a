// The identity of a pass in its JSON form.
#include "inspect/results/identityJson.h"

#include "inspect/base/error.h"

namespace KxInspect::detail {

namespace {

constexpr const char* kNoSpeed = "the records hold no time, and no speed was given";

QJsonValue textValue(const std::optional<std::string>& text) {
    return text ? QJsonValue(QString::fromStdString(*text)) : QJsonValue();
}

QJsonValue settingsValue(const std::optional<SettingsIdentity>& settings) {
    if (!settings) {
        return QJsonValue();
    }
    QJsonObject values;
    for (const SettingValue& value : settings->values) {
        const auto* const number = std::get_if<double>(&value.value);
        values[QString::fromStdString(value.key)] =
            number != nullptr ? jsonNumber(*number)
                              : QJsonValue(QString::fromStdString(std::get<std::string>(value.value)));
    }
    return QJsonObject{{QStringLiteral("file"), fileValue(settings->file)}, {QStringLiteral("values"), values}};
}

std::optional<std::string> readText(const JsonValue& value) {
    return value.isNull() ? std::nullopt : std::optional(value.text());
}

std::optional<SettingsIdentity> readSettings(const JsonValue& value) {
    if (value.isNull()) {
        return std::nullopt;
    }
    SettingsIdentity settings{readFile(value["file"]), {}};
    for (const std::string& key : value["values"].keys()) {
        const JsonValue member = value["values"][key.c_str()];
        if (member.isText()) {
            settings.values.push_back({key, member.text()});
        } else {
            settings.values.push_back({key, member.wideNumber()});
        }
    }
    return settings;
}

constexpr const char* kOrders[] = {"found", "listed", "turned"}; // as ConsistOrder

QJsonValue orderValue(const std::optional<ConsistOrder>& order) {
    return order ? QJsonValue(QLatin1String(kOrders[static_cast<std::size_t>(*order)])) : QJsonValue();
}

std::optional<ConsistOrder> readOrder(const JsonValue& value) {
    if (value.isNull()) {
        return std::nullopt;
    }
    const std::string word = value.text();
    for (const ConsistOrder order : {ConsistOrder::Found, ConsistOrder::Listed, ConsistOrder::Turned}) {
        if (word == kOrders[static_cast<std::size_t>(order)]) {
            return order;
        }
    }
    value.failAsNo(QStringLiteral("known word"));
}

} // namespace

QJsonValue fileValue(const std::optional<InputFile>& file) {
    if (!file) {
        return QJsonValue();
    }
    return QJsonObject{{QStringLiteral("name"), QString::fromStdString(file->name)},
                       {QStringLiteral("bytes"), static_cast<qint64>(file->bytes)},
                       {QStringLiteral("sha256"), QString::fromStdString(file->sha256)}};
}

std::optional<InputFile> readFile(const JsonValue& value) {
    if (value.isNull()) {
        return std::nullopt;
    }
    return InputFile{value["name"].text(), value["bytes"].wideWholeNumber(), value["sha256"].text()};
}

QJsonObject schemaObject() {
    return {{QStringLiteral("name"), QLatin1String(kPassSchema)}, {QStringLiteral("version"), kPassSchemaVersion}};
}

QJsonObject identityObject(const PassIdentity& identity) {
    const PassLabels& labels = identity.labels;
    return {{QStringLiteral("station"), textValue(labels.station)},
            {QStringLiteral("line"), textValue(labels.line)},
            {QStringLiteral("track"), textValue(labels.track)},
            {QStringLiteral("direction"), textValue(labels.direction)},
            {QStringLiteral("time"), textValue(labels.time)},
            {QStringLiteral("speed"), jsonNumber(labels.speed)},
            {QStringLiteral("speedReason"), labels.speed ? QJsonValue() : QJsonValue(QLatin1String(kNoSpeed))},
            {QStringLiteral("settings"), settingsValue(identity.settings)},
            {QStringLiteral("defects"), settingsValue(identity.defects)},
            {QStringLiteral("consist"), fileValue(identity.consist)},
            {QStringLiteral("consistOrder"), orderValue(identity.consistOrder)},
            {QStringLiteral("limits"), fileValue(identity.limits)},
            {QStringLiteral("contour"), fileValue(identity.contour)}};
}

PassIdentity readIdentity(const JsonValue& document) {
    const JsonValue schema = document["schema"];
    const std::string name = schema["name"].text();
    const int version = schema["version"].wholeNumber();
    if (name != kPassSchema || version != kPassSchemaVersion) {
        fail(ErrorKind::Unsuitable, {"result", {}, "schema"},
             QStringLiteral("has the schema '%1', version %2; '%3', version %4 is known")
                 .arg(QString::fromStdString(name), QString::number(version), QLatin1String(kPassSchema),
                      QString::number(kPassSchemaVersion)));
    }
    const JsonValue value = document["identity"];
    PassIdentity identity;
    identity.labels = {readText(value["station"]),   readText(value["line"]), readText(value["track"]),
                       readText(value["direction"]), readText(value["time"]), value["speed"].numberIfPresent()};
    identity.settings = readSettings(value["settings"]).value_or(SettingsIdentity());
    identity.defects = readSettings(value["defects"]);
    identity.consist = readFile(value["consist"]);
    identity.consistOrder = readOrder(value["consistOrder"]);
    identity.limits = readFile(value["limits"]);
    identity.contour = readFile(value["contour"]);
    identity.version = document["version"].text();
    return identity;
}

} // namespace KxInspect::detail
