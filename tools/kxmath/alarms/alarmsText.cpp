// The results of kxmath alarms as text.
#include "tools/kxmath/alarms/alarmsText.h"

#include "report/elements/svg.h"
#include "report/elements/textList.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/console/textTable.h"
#include "tools/kxmath/trend/fleetJson.h"
#include "tools/kxmath/trend/trendPage.h"
#include "tools/kxmath/trend/trendText.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace kxtool {

namespace {

using kxfleet::Reading;
using kxreport::numberText;

const Reading& readingOf(const MeasureFindings& m, std::size_t wheel, std::size_t reading) {
    return m.history.series[wheel].readings[reading];
}

QStringList wheelCells(const MeasureFindings& m, std::size_t wheel) {
    const kxfleet::StoredWheel& of = m.history.wheels[wheel].wheel;
    return {printable(QString::fromStdString(of.vehicle)), placeOnVehicle(of), QString::fromStdString(m.measure.name)};
}

QJsonArray alarmsArray(const MeasureFindings& m) {
    QJsonArray alarms;
    for (const kxfleet::WheelAlarm& a : m.found.alarms) {
        QJsonArray readings;
        for (const std::size_t i : a.alarm.readings) {
            const Reading& reading = readingOf(m, a.wheel, i);
            const kxfleet::MeasuringPlace& place = m.history.places[static_cast<std::size_t>(reading.station)];
            readings.append(QJsonObject{{QStringLiteral("time"), timeJson(reading.day)},
                                        {QStringLiteral("value"), reading.value},
                                        {QStringLiteral("station"), textJson(place.station)},
                                        {QStringLiteral("side"), textJson(place.trackSide)}});
        }
        QJsonObject json = toJson(m.history.wheels[a.wheel].wheel);
        json.insert(QStringLiteral("measure"), QString::fromStdString(m.measure.name));
        json.insert(QStringLiteral("opened"), timeJson(readingOf(m, a.wheel, a.alarm.opened).day));
        json.insert(QStringLiteral("closed"),
                    a.alarm.closed ? timeJson(readingOf(m, a.wheel, *a.alarm.closed).day) : QJsonValue());
        json.insert(QStringLiteral("readings"), readings);
        alarms.append(json);
    }
    return alarms;
}

QJsonArray announcementsArray(const MeasureFindings& m) {
    QJsonArray announcements;
    for (const kxfleet::WheelAnnouncement& a : m.found.announcements) {
        QJsonObject json = toJson(m.history.wheels[a.wheel].wheel);
        json.insert(QStringLiteral("measure"), QString::fromStdString(m.measure.name));
        const kxfleet::DaysToLimit& days = a.daysToLimit;
        json.insert(QStringLiteral("days"), days.days);
        json.insert(QStringLiteral("soonest"), days.soonest);
        json.insert(QStringLiteral("latest"), days.latest ? QJsonValue(*days.latest) : QJsonValue());
        json.insert(QStringLiteral("isLow"), days.isLow);
        announcements.append(json);
    }
    return announcements;
}

void appendAll(QJsonArray& all, const QJsonArray& more) {
    for (const auto& value : more) {
        all.append(value);
    }
}

} // namespace

QString summaryOf(const FleetFindings& findings) {
    return QStringLiteral("open alarms: %1; limits announced: %2; shifts of sensors: %3; values of wheels judged: %4")
        .arg(findings.openAlarms())
        .arg(findings.announcements())
        .arg(findings.shifts.size())
        .arg(findings.judged());
}

std::vector<QStringList> alarmRows(const FleetFindings& findings, bool withClosed) {
    std::vector<QStringList> rows = {
        kxreport::textList({"vehicle", "wheel", "measure", "opened", "closed", "bad", "last bad value"})};
    for (const MeasureFindings& m : findings.measures) {
        for (const kxfleet::WheelAlarm& a : m.found.alarms) {
            if (a.alarm.closed && !withClosed) {
                continue;
            }
            const Reading& last = readingOf(m, a.wheel, a.alarm.readings.back());
            QStringList row = wheelCells(m, a.wheel);
            row += dateText(readingOf(m, a.wheel, a.alarm.opened).day);
            row += a.alarm.closed ? dateText(readingOf(m, a.wheel, *a.alarm.closed).day) : QStringLiteral("open");
            row += QString::number(a.alarm.readings.size());
            row += numberText(last.value, 2);
            rows.push_back(row);
        }
    }
    return rows;
}

std::vector<QStringList> announcementRows(const FleetFindings& findings) {
    std::vector<QStringList> rows = {kxreport::textList({"vehicle", "wheel", "measure", "days to limit"})};
    for (const MeasureFindings& m : findings.measures) {
        for (const kxfleet::WheelAnnouncement& a : m.found.announcements) {
            QStringList row = wheelCells(m, a.wheel);
            row += daysText(a.daysToLimit);
            rows.push_back(row);
        }
    }
    return rows;
}

QString alarmsText(const FleetFindings& findings, bool withClosed) {
    QString text = summaryOf(findings) + QLatin1Char('\n');
    for (const PlaceShift& shift : findings.shifts) {
        text += QLatin1Char('\n') + shiftText(shift) + QLatin1Char('\n');
    }
    const std::vector<QStringList> alarms = alarmRows(findings, withClosed);
    if (alarms.size() > 1) {
        text += QStringLiteral("\nAlarms\n") + textTable(alarms);
    }
    const std::vector<QStringList> announced = announcementRows(findings);
    if (announced.size() > 1) {
        text += QStringLiteral("\nAnnounced\n") + textTable(announced);
    }
    return text;
}

QByteArray alarmsJson(const FleetFindings& findings) {
    QJsonArray alarms;
    QJsonArray announced;
    QJsonArray shifts;
    for (const MeasureFindings& m : findings.measures) {
        appendAll(alarms, alarmsArray(m));
        appendAll(announced, announcementsArray(m));
    }
    for (const PlaceShift& shift : findings.shifts) {
        shifts.append(toJson(shift));
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("command"), QStringLiteral("alarms")},
                                     {QStringLiteral("lastReading"),
                                      findings.lastDay > 0.0 ? timeJson(findings.lastDay) : QJsonValue()},
                                     {QStringLiteral("judged"), static_cast<qint64>(findings.judged())},
                                     {QStringLiteral("alarms"), alarms},
                                     {QStringLiteral("announced"), announced},
                                     {QStringLiteral("shifts"), shifts}})
        .toJson();
}

} // namespace kxtool
