// The results of kxmath trend as text.
#include "tools/kxmath/trend/trendText.h"

#include "report/elements/svg.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/console/textTable.h"
#include "tools/kxmath/trend/fleetJson.h"

#include <QtCore/QDateTime>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <cmath>

namespace kxtool {

namespace {

using kxreport::numberText;

constexpr double kDaysOfYear = 365.25;

QString slopeText(const kxfleet::Trend& trend) {
    const kxfleet::TheilSenLine& line = *trend.line;
    return QStringLiteral("%1 (%2 to %3)")
        .arg(numberText(line.slope * kDaysOfYear, 2), numberText(line.low * kDaysOfYear, 2),
             numberText(line.high * kDaysOfYear, 2));
}

QJsonObject lineJson(const kxfleet::Trend& trend) {
    return {{QStringLiteral("level"), trend.level},
            {QStringLiteral("levelLow"), trend.level - trend.levelHalfWidth},
            {QStringLiteral("levelHigh"), trend.level + trend.levelHalfWidth},
            {QStringLiteral("slopePerDay"), trend.line->slope},
            {QStringLiteral("slopeLow"), trend.line->low},
            {QStringLiteral("slopeHigh"), trend.line->high},
            {QStringLiteral("noise"), trend.noise}};
}

QJsonObject wheelJson(const WheelTrend& wheel) {
    QJsonArray outliers;
    for (const std::size_t outlier : wheel.trend.outliers) {
        outliers.append(QJsonObject{{QStringLiteral("time"), timeJson(wheel.readings[outlier].day)},
                                    {QStringLiteral("value"), wheel.readings[outlier].value}});
    }
    QJsonObject json = toJson(wheel.wheel.wheel);
    json.insert(QStringLiteral("measure"), QString::fromStdString(wheel.measure.name));
    json.insert(QStringLiteral("unit"), QString::fromStdString(wheel.measure.unit));
    json.insert(QStringLiteral("class"), textJson(wheel.wheel.vehicleClass));
    json.insert(QStringLiteral("lives"), static_cast<qint64>(wheel.lives));
    json.insert(QStringLiteral("readings"), static_cast<qint64>(wheel.trend.readings));
    json.insert(QStringLiteral("from"), timeJson(wheel.trend.from));
    json.insert(QStringLiteral("to"), timeJson(wheel.trend.to));
    json.insert(QStringLiteral("trend"), wheel.trend.line ? QJsonValue(lineJson(wheel.trend)) : QJsonValue());
    json.insert(QStringLiteral("reason"), textJson(wheel.trend.reason));
    json.insert(QStringLiteral("outliers"), outliers);
    json.insert(QStringLiteral("isBeyond"), wheel.isBeyond);
    json.insert(QStringLiteral("daysToLimit"),
                wheel.trend.daysToLimit ? QJsonValue(toJson(*wheel.trend.daysToLimit, wheel.limits)) : QJsonValue());
    json.insert(QStringLiteral("daysReason"), textJson(wheel.trend.daysReason));
    return json;
}

} // namespace

QString daysText(const kxfleet::DaysToLimit& days) {
    if (days.days <= 0.0) {
        return QStringLiteral("reached");
    }
    constexpr double kFar = 3652.5; // ten years; readings of months tell no more
    if (days.soonest > kFar) {
        return QStringLiteral("more than 10 years");
    }
    const QString latest =
        days.latest ? QStringLiteral("to ") + numberText(std::ceil(*days.latest), 0) : QStringLiteral("or more");
    return QStringLiteral("%1 (%2 %3)").arg(numberText(days.days, 0), numberText(std::floor(days.soonest), 0), latest);
}

QString dateText(double day) {
    constexpr double kMillisecondsOfDay = 86400000.0;
    return QDateTime::fromMSecsSinceEpoch(static_cast<qint64>(std::llround(day * kMillisecondsOfDay)), Qt::UTC)
        .toString(QStringLiteral("yyyy-MM-dd"));
}

QString placeOnVehicle(const kxfleet::StoredWheel& wheel) {
    return QStringLiteral("axle %1 %2").arg(QString::number(wheel.axle), printable(QString::fromStdString(wheel.side)));
}

QString textOf(const kxfleet::MeasuringPlace& place) {
    const QString station =
        place.station.empty() ? QStringLiteral("no station") : printable(QString::fromStdString(place.station));
    return station + QStringLiteral(", ") + printable(QString::fromStdString(place.trackSide));
}

QString trendTable(const FleetTrends& trends) {
    std::vector<QStringList> rows = {{QStringLiteral("vehicle"), QStringLiteral("wheel"), QStringLiteral("measure"),
                                      QStringLiteral("level"), QStringLiteral("per year"),
                                      QStringLiteral("days to limit")}};
    for (const WheelTrend& wheel : trends.wheels) {
        const kxfleet::Trend& trend = wheel.trend;
        rows.push_back({printable(QString::fromStdString(wheel.wheel.wheel.vehicle)), placeOnVehicle(wheel.wheel.wheel),
                        QString::fromStdString(wheel.measure.name),
                        trend.line ? numberText(trend.level, 2) : QStringLiteral("-"),
                        trend.line ? slopeText(trend) : QString::fromStdString(trend.reason),
                        wheel.isBeyond      ? QStringLiteral("beyond")
                        : trend.daysToLimit ? daysText(*trend.daysToLimit)
                                            : QStringLiteral("-")});
    }
    QString text = textTable(rows);
    for (const PlaceShift& shift : trends.shifts) {
        text += QStringLiteral("\nshift of the sensors at %1: %2 by %3 since %4, taken off")
                    .arg(textOf(shift.place), QString::fromStdString(shift.measure), numberText(shift.shift.size, 2),
                         dateText(shift.shift.began));
    }
    return trends.shifts.empty() ? text : text + QLatin1Char('\n');
}

QByteArray trendJson(const FleetTrends& trends) {
    QJsonArray wheels;
    for (const WheelTrend& wheel : trends.wheels) {
        wheels.append(wheelJson(wheel));
    }
    QJsonArray shifts;
    for (const PlaceShift& shift : trends.shifts) {
        shifts.append(toJson(shift));
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("command"), QStringLiteral("trend")},
                                     {QStringLiteral("wheels"), wheels},
                                     {QStringLiteral("shifts"), shifts}})
        .toJson();
}

} // namespace kxtool
