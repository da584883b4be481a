// What trends and alarms have in common, as JSON.
#include "tools/kxmath/trend/fleetJson.h"

#include <QtCore/QDateTime>

#include <cmath>

namespace kxtool {

QJsonValue timeJson(double day) {
    constexpr double kMillisecondsOfDay = 86400000.0;
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(std::llround(day * kMillisecondsOfDay)), Qt::UTC)
        .toString(Qt::ISODate);
}

QJsonValue textJson(const std::string& text) {
    return text.empty() ? QJsonValue() : QJsonValue(QString::fromStdString(text));
}

QJsonObject toJson(const kxfleet::StoredWheel& wheel) {
    return {{QStringLiteral("vehicle"), QString::fromStdString(wheel.vehicle)},
            {QStringLiteral("axle"), static_cast<qint64>(wheel.axle)},
            {QStringLiteral("side"), QString::fromStdString(wheel.side)}};
}

QJsonObject toJson(const kxfleet::DaysToLimit& days, const kxfleet::Limits& limits) {
    const std::optional<double>& limit = days.isLow ? limits.low : limits.high;
    return {{QStringLiteral("days"), days.days},
            {QStringLiteral("soonest"), days.soonest},
            {QStringLiteral("latest"), days.latest ? QJsonValue(*days.latest) : QJsonValue()},
            {QStringLiteral("limit"), limit ? QJsonValue(*limit) : QJsonValue()},
            {QStringLiteral("isLow"), days.isLow}};
}

QJsonObject toJson(const PlaceShift& shift) {
    return {{QStringLiteral("measure"), QString::fromStdString(shift.measure)},
            {QStringLiteral("station"), textJson(shift.place.station)},
            {QStringLiteral("side"), textJson(shift.place.trackSide)},
            {QStringLiteral("named"), timeJson(shift.shift.day)},
            {QStringLiteral("began"), timeJson(shift.shift.began)},
            {QStringLiteral("size"), shift.shift.size}};
}

} // namespace kxtool
