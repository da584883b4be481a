// The columns of the sheet of a pass.
#include "report/train/sheetColumns.h"

#include "report/elements/numbers.h"
#include "report/elements/textList.h"
#include "report/train/passWords.h"

#include <algorithm>
#include <limits>
#include <map>

namespace kxreport {

using namespace KxInspect;

namespace {

/// What people call a measure, and to how many decimals they read it.
struct MeasureWords {
    const char* title;
    int decimals;
};

MeasureWords wordsOf(const MeasureInfo& measure) {
    static const std::map<std::string, MeasureWords> words = {
        {"backToBack", {"back-to-back", 2}},
        {"yaw", {"yaw", 2}},
        {"diameterDifferenceAxle", {"difference of diameters, axle", 2}},
        {"diameterDifferenceBogie", {"difference of diameters, bogie", 2}},
        {"diameterDifferenceVehicle", {"difference of diameters, vehicle", 2}},
        {"roundness", {"out of round by", 3}},
        {"treadDeviation", {"deviation of the tread", 3}}};
    const auto found = words.find(measure.name);
    if (found != words.end()) {
        return found->second;
    }
    for (const PassMeasureInfo& info : kPassMeasureInfos) {
        if (measure.name == info.key) {
            return {info.title, info.decimals};
        }
    }
    return {measure.name.c_str(), 3};
}

/// "backToBack" as "back_to_back".
QString keyOf(const MeasureInfo& measure) {
    QString key;
    for (const QChar letter : QString::fromStdString(measure.name)) {
        key += letter.isUpper() ? QLatin1Char('_') + QString(letter.toLower()) : QString(letter);
    }
    return key;
}

PairValue numberField(const std::optional<double>& value) {
    return value ? PairValue(static_cast<float>(*value)) : PairValue();
}

PairValue numberField(const std::optional<int>& value) {
    return value ? PairValue(*value) : PairValue();
}

PairValue textField(const std::string& text) {
    return text.empty() ? PairValue() : PairValue(QString::fromStdString(text));
}

PairValue verdictField(const std::optional<LimitVerdict>& verdict) {
    return verdict ? PairValue(QLatin1String(textOf(*verdict))) : PairValue();
}

PairValue yesField(const std::optional<bool>& is) {
    return is ? PairValue(*is ? QStringLiteral("yes") : QStringLiteral("no")) : PairValue();
}

const PassVehicle* vehicleOf(const PassResult& pass, const SheetRow& row) {
    for (const PassVehicle& vehicle : pass.train.vehicles) {
        if (row.axle.vehicle == vehicle.number) {
            return &vehicle;
        }
    }
    return nullptr;
}

QString sideText(const SheetRow& row) {
    return row.trackSide  ? QLatin1String(textOf(*row.trackSide))
           : row.side > 0 ? QStringLiteral("side %1").arg(row.side)
                          : QStringLiteral("-");
}

/// A column of one field that people read as it is.
SheetColumn plain(const char* key, const char* title,
                  const std::function<PairValue(const PassResult& pass, const SheetRow& row)>& value) {
    SheetColumn column{
        QString::fromUtf8(title), textList({QLatin1String(key)}),
        [value](const PassResult& pass, const SheetRow& row) { return std::vector<PairValue>{value(pass, row)}; }};
    column.cell = [value](const PassResult& pass, const SheetRow& row) {
        return Cell{textForPeople(value(pass, row))};
    };
    return column;
}

/// A text of the vehicle of a wheel.
SheetColumn ofVehicle(const char* key, const char* title, std::optional<std::string> PassVehicle::*text) {
    return plain(key, title, [text](const PassResult& pass, const SheetRow& row) {
        const PassVehicle* const vehicle = vehicleOf(pass, row);
        return vehicle != nullptr && vehicle->*text ? textField(*(vehicle->*text)) : PairValue();
    });
}

QString withDoubt(Mark mark, bool isDoubtful) {
    return textOf(mark) + (isDoubtful ? QStringLiteral(" (doubtful)") : QString());
}

/// The value, its verdict and its limits, a line each.
Cell measureCell(const MeasureInfo& measure, const SheetValue& value) {
    Cell cell{valueText(measure, value)};
    if (!value.value) {
        cell.tone = Tone::Faint;
    }
    if (value.verdict) {
        const Mark mark = markOf(value.verdict);
        cell.text += QLatin1Char('\n') + withDoubt(mark, value.isDoubtful == true);
        cell.tone = toneOf(mark);
        const QString bounds = boundsText(value.bounds);
        cell.text += bounds.isEmpty() ? QString() : QLatin1Char('\n') + bounds;
    }
    return cell;
}

SheetColumn ofMeasure(std::size_t index) {
    const MeasureInfo& measure = measureInfos()[index];
    SheetColumn column;
    column.title = titleOf(measure) + QStringLiteral(", ") + QString::fromStdString(measure.unit);
    column.measure = static_cast<int>(index);
    const QString key = keyOf(measure);
    for (const char* const part : {"", "_low", "_high", "_interval_holds", "_alarm_low", "_warning_low",
                                   "_warning_high", "_alarm_high", "_verdict", "_doubtful", "_reason"}) {
        column.keys.append(key + QLatin1String(part));
    }
    column.fields = [index](const PassResult&, const SheetRow& row) {
        const SheetValue& value = row.values[index];
        return std::vector<PairValue>{numberField(value.value),
                                      value.interval.low,
                                      value.interval.high,
                                      textField(value.intervalHolds),
                                      numberField(value.bounds.alarmLow),
                                      numberField(value.bounds.warningLow),
                                      numberField(value.bounds.warningHigh),
                                      numberField(value.bounds.alarmHigh),
                                      verdictField(value.verdict),
                                      yesField(value.isDoubtful),
                                      textField(value.reason)};
    };
    column.cell = [index](const PassResult&, const SheetRow& row) {
        return measureCell(measureInfos()[index], row.values[index]);
    };
    return column;
}

/// What was found on the tread of a wheel, by the limits of the settings for defects.
SheetColumn ofShape(const char* key, const char* title, PairValue (*value)(const PassWheel& wheel)) {
    return plain(key, title, [value](const PassResult& pass, const SheetRow& row) {
        const PassWheel* const wheel = row.pair > 0 && pass.defectLimits
                                           ? pass.wheelOf(pass.pairs[static_cast<std::size_t>(row.pair) - 1],
                                                          static_cast<std::size_t>(row.side) - 1)
                                           : nullptr;
        return wheel != nullptr ? value(*wheel) : PairValue();
    });
}

SheetColumn whichWheel() {
    SheetColumn column{QStringLiteral("wheel"),
                       textList({QStringLiteral("vehicle"), QStringLiteral("axle"), QStringLiteral("side"),
                                 QStringLiteral("recording")}),
                       [](const PassResult&, const SheetRow& row) {
                           const QString side = row.trackSide ? QLatin1String(textOf(*row.trackSide)) : QString();
                           return std::vector<PairValue>{numberField(row.axle.vehicle), numberField(row.axle.axle),
                                                         side.isEmpty() ? PairValue() : PairValue(side),
                                                         row.side > 0 ? PairValue(row.side) : PairValue()};
                       }};
    column.cell = [](const PassResult&, const SheetRow& row) {
        return Cell{nameOf(row).replace(QStringLiteral(", "), QStringLiteral("\n"))};
    };
    return column;
}

SheetColumn verdictOfWheel() {
    SheetColumn column{QStringLiteral("verdict"), textList({QStringLiteral("verdict"), QStringLiteral("doubtful")}),
                       [](const PassResult&, const SheetRow& row) {
                           return std::vector<PairValue>{verdictField(row.verdict),
                                                         row.verdict ? yesField(row.isDoubtful) : PairValue()};
                       }};
    column.cell = [](const PassResult&, const SheetRow& row) {
        const Mark mark = markOf(row.verdict);
        return Cell{withDoubt(mark, row.isDoubtful), toneOf(mark)};
    };
    return column;
}

SheetColumn dataOfWheel() {
    SheetColumn column{QStringLiteral("profiles"),
                       textList({QStringLiteral("profiles"), QStringLiteral("sensors"), QStringLiteral("reason")}),
                       [](const PassResult&, const SheetRow& row) {
                           QStringList sensors;
                           for (const int sensor : row.sensors) {
                               sensors.append(QString::number(sensor));
                           }
                           return std::vector<PairValue>{row.profiles,
                                                         sensors.isEmpty() ? PairValue()
                                                                           : PairValue(sensors.join(QLatin1Char(' '))),
                                                         textField(row.reason)};
                       }};
    column.cell = [](const PassResult&, const SheetRow& row) {
        QStringList sensors;
        for (const int sensor : row.sensors) {
            sensors.append(QStringLiteral("SENSOR%1").arg(sensor));
        }
        const QString why = row.reason.empty() ? sensors.join(QLatin1Char('\n')) : QString::fromStdString(row.reason);
        return Cell{QStringLiteral("%1\n%2").arg(QString::number(row.profiles), why),
                    row.reason.empty() ? Tone::Plain : Tone::Faint};
    };
    return column;
}

std::vector<SheetColumn> makeColumns() {
    std::vector<SheetColumn> columns = {whichWheel()};
    columns.push_back(plain("pair", "pair", [](const PassResult&, const SheetRow& row) {
        return row.pair > 0 ? PairValue(row.pair) : PairValue();
    }));
    columns.push_back(
        plain("bogie", "bogie", [](const PassResult&, const SheetRow& row) { return numberField(row.axle.bogie); }));
    columns.push_back(ofVehicle("mark", "mark", &PassVehicle::mark));
    columns.push_back(ofVehicle("number", "number", &PassVehicle::vehicleNumber));
    columns.push_back(ofVehicle("class", "", &PassVehicle::vehicleClass));
    columns.push_back(
        plain("vehicle_reason", "", [](const PassResult&, const SheetRow& row) { return textField(row.axle.reason); }));
    columns.push_back(plain("place", "", [](const PassResult& pass, const SheetRow& row) {
        return row.pair > 0 ? numberField(pass.pairs[static_cast<std::size_t>(row.pair) - 1].place) : PairValue();
    }));
    columns.push_back(verdictOfWheel());
    for (std::size_t i = 0; i < measureInfos().size(); ++i) {
        columns.push_back(ofMeasure(i));
    }
    columns.push_back(ofShape("tread", "tread", [](const PassWheel& wheel) {
        return wheel.defects && wheel.defects->isDefective
                   ? PairValue(*wheel.defects->isDefective ? QStringLiteral("defective") : QStringLiteral("sound"))
                   : PairValue();
    }));
    columns.push_back(ofShape("shape", "shape", [](const PassWheel& wheel) {
        return wheel.roundness ? PairValue(shapeText(*wheel.roundness)) : PairValue();
    }));
    columns.push_back(dataOfWheel());
    return columns;
}

bool isShown(std::size_t measure, const std::vector<SheetRow>& rows) {
    return std::any_of(rows.begin(), rows.end(),
                       [&](const SheetRow& row) { return row.values[measure].value || row.values[measure].verdict; });
}

/// "25 to 37", "≥ 25", "≤ 37"; empty for no bound.
QString rangeText(const std::optional<double>& low, const std::optional<double>& high) {
    if (low && high) {
        return QStringLiteral("%1 to %2").arg(*low).arg(*high);
    }
    return low ? QStringLiteral("\u2265 %1").arg(*low) : high ? QStringLiteral("\u2264 %1").arg(*high) : QString();
}

} // namespace

const std::vector<SheetColumn>& sheetColumns() {
    static const std::vector<SheetColumn> columns = makeColumns();
    return columns;
}

std::vector<const SheetColumn*> shownColumns(const std::vector<SheetRow>& rows) {
    std::vector<const SheetColumn*> shown;
    for (const SheetColumn& column : sheetColumns()) {
        const bool isEmpty = column.measure >= 0 && !isShown(static_cast<std::size_t>(column.measure), rows);
        if (!column.title.isEmpty() && !isEmpty) {
            shown.push_back(&column);
        }
    }
    return shown;
}

QStringList notesOfSheet(const std::vector<SheetRow>& rows) {
    QStringList notes;
    for (std::size_t i = 0; i < measureInfos().size() && !rows.empty(); ++i) {
        std::map<std::string, int> reasons;
        for (const SheetRow& row : rows) {
            if (!row.values[i].value && !row.values[i].reason.empty()) {
                ++reasons[row.values[i].reason];
            }
        }
        for (const auto& [reason, count] : reasons) {
            notes.append(QStringLiteral("No %1 for %2 of %3 wheels: %4.")
                             .arg(titleOf(measureInfos()[i]), QString::number(count), QString::number(rows.size()),
                                  QString::fromStdString(reason)));
        }
    }
    return notes;
}

QString titleOf(const MeasureInfo& measure) {
    return QString::fromUtf8(wordsOf(measure).title);
}

QString valueText(const MeasureInfo& measure, const SheetValue& value) {
    if (!value.value) {
        return QStringLiteral("-");
    }
    const int decimals = wordsOf(measure).decimals;
    QString text = fixedText(static_cast<float>(*value.value), decimals);
    if (value.interval.isKnown()) {
        const double half = static_cast<double>(value.interval.high - value.interval.low) / 2.0;
        text += QStringLiteral(" \u00b1 %1").arg(half, 0, 'f', 3);
    }
    return text;
}

QString boundsText(const LimitBounds& bounds) {
    const QString warning = rangeText(bounds.warningLow, bounds.warningHigh);
    const QString alarm = rangeText(bounds.alarmLow, bounds.alarmHigh);
    QStringList texts;
    if (!warning.isEmpty()) {
        texts.append(QStringLiteral("warning unless %1").arg(warning));
    }
    if (!alarm.isEmpty()) {
        texts.append(QStringLiteral("alarm unless %1").arg(alarm));
    }
    return texts.join(QLatin1Char('\n'));
}

QString nameOf(const SheetRow& row) {
    return row.axle.vehicle
               ? QStringLiteral("vehicle %1, axle %2, %3")
                     .arg(QString::number(*row.axle.vehicle), QString::number(row.axle.axle.value_or(0)), sideText(row))
               : QStringLiteral("pair %1, %2").arg(QString::number(row.pair), sideText(row));
}

QString idOf(const SheetRow& row) {
    return row.pair > 0 ? QStringLiteral("wheel-%1-%2").arg(row.pair).arg(row.side)
                        : QStringLiteral("unseen-%1-%2-%3")
                              .arg(row.axle.vehicle.value_or(0))
                              .arg(row.axle.axle.value_or(0))
                              .arg(sideText(row).replace(QLatin1Char(' '), QLatin1Char('-')));
}

Mark markOf(const std::optional<LimitVerdict>& verdict) {
    if (!verdict) {
        return Mark::None;
    }
    switch (*verdict) {
    case LimitVerdict::Ok:
        return Mark::Ok;
    case LimitVerdict::Warning:
        return Mark::Warning;
    case LimitVerdict::Alarm:
        return Mark::Alarm;
    case LimitVerdict::NotMeasured:
        break;
    }
    return Mark::NotMeasured;
}

} // namespace kxreport
