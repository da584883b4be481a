// The trends of wheels as a page.
#include "tools/kxmath/trend/trendPage.h"

#include "report/elements/svg.h"
#include "report/elements/textList.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/trend/trendText.h"

#include <algorithm>
#include <map>

namespace kxtool {

namespace {

using kxreport::Mark;
using kxreport::numberText;

QString measureText(const WheelTrend& wheel) {
    return QString::fromStdString(wheel.measure.name + ", " + wheel.measure.unit);
}

Mark markOf(const WheelTrend& wheel, double lead) {
    const kxfleet::Trend& trend = wheel.trend;
    if (wheel.isBeyond) {
        return Mark::Alarm;
    }
    if (!trend.line) {
        return Mark::NotMeasured;
    }
    if (!wheel.limits.low && !wheel.limits.high) {
        return Mark::None;
    }
    if (trend.daysToLimit) {
        return trend.daysToLimit->soonest <= lead ? Mark::Warning : Mark::Ok;
    }
    return trend.changedAtOnce ? Mark::NotMeasured : Mark::Ok;
}

/// When the limit is reached, or why that is not known.
QString remarkOf(const WheelTrend& wheel) {
    const kxfleet::Trend& trend = wheel.trend;
    if (wheel.isBeyond) {
        return QStringLiteral("beyond the limit");
    }
    return trend.daysToLimit ? QStringLiteral("days to the limit: ") + daysText(*trend.daysToLimit)
                             : QString::fromStdString(trend.line ? trend.daysReason : trend.reason);
}

QString wordsOf(const WheelTrend& wheel) {
    const kxfleet::Trend& trend = wheel.trend;
    const QString measure = QString::fromStdString(wheel.measure.name);
    if (!trend.line) {
        return measure + QStringLiteral(": no trend, ") + QString::fromStdString(trend.reason);
    }
    return QStringLiteral("%1 %2 %3; %4")
        .arg(measure, numberText(trend.level, 2), QString::fromStdString(wheel.measure.unit), remarkOf(wheel));
}

/// @param last day from which the page counts
kxreport::TrendCurve curveOf(const WheelTrend& wheel, double lead, double last) {
    kxreport::TrendCurve curve;
    curve.wheel = placeOnVehicle(wheel.wheel.wheel);
    curve.measure = measureText(wheel);
    curve.words = wordsOf(wheel);
    curve.mark = markOf(wheel, lead);
    curve.low = wheel.limits.low;
    curve.high = wheel.limits.high;
    for (const kxfleet::Reading& reading : wheel.readings) {
        curve.readings.emplace_back(reading.day - last, reading.value);
    }
    for (const std::size_t outlier : wheel.trend.outliers) {
        curve.outliers.push_back(curve.readings[outlier]);
    }
    if (wheel.lifeBegins > 0) {
        curve.lifeStarts.push_back(wheel.readings[wheel.lifeBegins].day - last);
    }
    if (wheel.trend.line) {
        const kxfleet::Trend& trend = wheel.trend;
        const auto at = [&](double day) {
            return QPointF(day - last, trend.level + trend.line->slope * (day - trend.to));
        };
        curve.line = {at(trend.from), at(trend.to + lead)};
    }
    return curve;
}

QStringList rowOf(const WheelTrend& wheel, double lead) {
    const kxfleet::Trend& trend = wheel.trend;
    constexpr double kDaysOfYear = 365.25;
    const auto perYear = [&](double slope) { return numberText(slope * kDaysOfYear, 2); };
    const auto ifLine = [&](const QString& text) { return trend.line ? text : QString(); };
    return {printable(QString::fromStdString(wheel.wheel.wheel.vehicle)),
            placeOnVehicle(wheel.wheel.wheel),
            measureText(wheel),
            textOf(markOf(wheel, lead)),
            trend.daysToLimit && !wheel.isBeyond ? QString() : remarkOf(wheel),
            dateText(trend.to),
            QString::number(trend.readings),
            ifLine(numberText(trend.level, 2)),
            trend.line ? perYear(trend.line->slope) : QString(),
            trend.line ? perYear(trend.line->low) + QStringLiteral(" to ") + perYear(trend.line->high) : QString(),
            trend.daysToLimit ? daysText(*trend.daysToLimit) : QString()};
}

double lastDayOf(const FleetTrends& trends, const std::string& vehicle) {
    double last = 0.0;
    for (const WheelTrend& wheel : trends.wheels) {
        last = wheel.wheel.wheel.vehicle == vehicle ? std::max(last, wheel.trend.to) : last;
    }
    return last;
}

} // namespace

QString shiftText(const PlaceShift& shift) {
    return QStringLiteral("The sensors at %1 have measured %2 differently by %3 since %4; named on %5.")
        .arg(textOf(shift.place), QString::fromStdString(shift.measure), numberText(shift.shift.size, 2),
             dateText(shift.shift.began), dateText(shift.shift.day));
}

kxreport::TrendPage trendPage(const FleetTrends& trends, double lead, int most) {
    kxreport::TrendPage page;
    page.columns = kxreport::textList({"vehicle", "wheel", "measure", "verdict", "remark", "last reading", "readings",
                                       "level", "per year", "95 % interval", "days to limit"});
    page.textColumns = 6;
    std::vector<std::string> vehicles; // in the order of their first wheel, the most urgent one
    std::size_t beyond = 0;
    std::size_t due = 0;
    std::size_t unknown = 0;
    for (const WheelTrend& wheel : trends.wheels) {
        const Mark mark = markOf(wheel, lead);
        beyond += mark == Mark::Alarm ? 1 : 0;
        due += mark == Mark::Warning ? 1 : 0;
        unknown += mark == Mark::NotMeasured ? 1 : 0;
        page.mark = mark == Mark::Alarm || (mark == Mark::Warning && page.mark != Mark::Alarm) ? mark : page.mark;
        page.rows.push_back(rowOf(wheel, lead));
        if (std::find(vehicles.begin(), vehicles.end(), wheel.wheel.wheel.vehicle) == vehicles.end()) {
            vehicles.push_back(wheel.wheel.wheel.vehicle);
        }
    }
    const bool hasLimits = std::any_of(trends.wheels.begin(), trends.wheels.end(),
                                       [](const WheelTrend& w) { return w.limits.low || w.limits.high; });
    if (page.mark == Mark::None && hasLimits) {
        page.mark = unknown < trends.wheels.size() ? Mark::Ok : Mark::NotMeasured;
    }
    page.verdict = hasLimits
                       ? QStringLiteral("of %1 values %2 are beyond a limit, %3 may reach one within %4 days, %5 are "
                                        "not known")
                             .arg(trends.wheels.size())
                             .arg(beyond)
                             .arg(due)
                             .arg(lead)
                             .arg(unknown)
                       : QStringLiteral("%1 values, %2 without a trend; no limits were given")
                             .arg(trends.wheels.size())
                             .arg(unknown);
    for (const PlaceShift& shift : trends.shifts) {
        page.warnings.append(shiftText(shift));
    }
    const std::size_t shown = std::min(vehicles.size(), static_cast<std::size_t>(most));
    page.further = static_cast<int>(vehicles.size() - shown);
    for (std::size_t v = 0; v < shown; ++v) {
        const double last = lastDayOf(trends, vehicles[v]);
        kxreport::TrendVehicle vehicle{printable(QString::fromStdString(vehicles[v])), dateText(last), {}};
        for (const WheelTrend& wheel : trends.wheels) {
            if (wheel.wheel.wheel.vehicle == vehicles[v]) {
                vehicle.curves.push_back(curveOf(wheel, lead, last));
            }
        }
        page.vehicles.push_back(std::move(vehicle));
    }
    return page;
}

} // namespace kxtool
