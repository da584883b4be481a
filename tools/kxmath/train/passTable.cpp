// The pairs of a pass as rows of text.
#include "tools/kxmath/train/passTable.h"

#include "tools/kxmath/console/numbers.h"
#include "tools/kxmath/console/textTable.h"

#include <algorithm>
#include <cmath>

namespace kxtool {

namespace {

/// A column of one side, with a value where that sensor saw the wheel.
template <typename Value>
PairColumn wheelColumn(size_t side, const char* key, const char* title, Value value) {
    return {QStringLiteral("%1_%2").arg(QLatin1String(key)).arg(side + 1),
            QStringLiteral("%1 %2").arg(QLatin1String(title)).arg(side + 1),
            [side, value](const Pass& pass, size_t index) -> PairValue {
                const Wheel* const wheel = pass.wheelOf(pass.pairs[index], side);
                return wheel != nullptr ? PairValue(value(*wheel)) : PairValue();
            }};
}

/// Adds columns of one side, with values where `judgement` tells what was found of the wheel.
template <typename Judgement>
class JudgementColumns {
public:
    JudgementColumns(std::vector<PairColumn>& columns, size_t side, Judgement judgement)
        : columns_(columns), side_(side), judgement_(judgement) {}

    template <typename Value>
    void add(const char* key, const char* title, Value value) {
        columns_.push_back(wheelColumn(side_, key, title, [judgement = judgement_, value](const Wheel& wheel) {
            const auto* const found = judgement(wheel);
            return found != nullptr ? PairValue(value(*found)) : PairValue();
        }));
    }

private:
    std::vector<PairColumn>& columns_;
    size_t side_;
    Judgement judgement_;
};

PairValue verdict(const Pass& pass, size_t index) {
    const float distance = pass.pairs[index].distance;
    if (!std::isfinite(distance)) {
        return {};
    }
    return pass.tolerance.holds(distance) ? QStringLiteral("ok") : QStringLiteral("out");
}

std::vector<PairColumn> makeColumns() {
    std::vector<PairColumn> columns;
    columns.push_back({QStringLiteral("pair"), QStringLiteral("pair"),
                       [](const Pass&, size_t index) -> PairValue { return static_cast<int>(index) + 1; }});
    for (const size_t side : {0, 1}) {
        const auto add = [&](const char* key, const char* title, auto value) {
            columns.push_back(wheelColumn(side, key, title, value));
        };
        add("wheel", "wheel", [](const Wheel& wheel) { return wheel.number; });
        add("profiles", "profiles", [](const Wheel& wheel) { return wheel.profiles; });
        add("first_record", "first", [](const Wheel& wheel) { return wheel.firstRecord; });
        add("last_record", "last", [](const Wheel& wheel) { return wheel.lastRecord(); });
        add("chosen_profile", "chosen", [](const Wheel& wheel) { return wheel.chosenProfile; });
        add("points", "points", [](const Wheel& wheel) { return wheel.pointsBelowLevel; });
    }
    columns.push_back({QStringLiteral("distance"), QStringLiteral("distance"),
                       [](const Pass& pass, size_t index) -> PairValue { return pass.pairs[index].distance; }});
    columns.push_back(
        {QStringLiteral("deviation"), QStringLiteral("deviation"), [](const Pass& pass, size_t index) -> PairValue {
             return pass.pairs[index].distance - pass.tolerance.nominal;
         }});
    columns.push_back({QStringLiteral("verdict"), QStringLiteral("verdict"), verdict});
    return columns;
}

std::vector<PairColumn> makeDefectColumns() {
    std::vector<PairColumn> columns = {pairColumns().front()};
    for (const size_t side : {0, 1}) {
        JudgementColumns judged(columns, side, [](const Wheel& wheel) {
            return wheel.defects && wheel.defects->judged > 0 ? &*wheel.defects : nullptr;
        });
        judged.add("judged_profiles", "judged", [](const WheelDefects& d) { return d.judged; });
        judged.add("defective_profiles", "defective",
                   [](const WheelDefects& d) { return static_cast<int>(d.profiles.size()); });
        judged.add("defective_numbers", "numbers", [](const WheelDefects& d) { return runsText(d.profiles); });
        judged.add("deviating_points", "deviating", [](const WheelDefects& d) { return d.deviating; });
        judged.add("largest_deviation", "largest", [](const WheelDefects& d) { return d.largest; });
        judged.add("tread", "tread", [](const WheelDefects& d) {
            return d.isDefective ? QStringLiteral("defective") : QStringLiteral("sound");
        });
    }
    return columns;
}

std::vector<PairColumn> makeRoundnessColumns() {
    std::vector<PairColumn> columns = {pairColumns().front()};
    for (const size_t side : {0, 1}) {
        JudgementColumns judged(columns, side, [](const Wheel& wheel) {
            return wheel.roundness && wheel.roundness->isJudged() ? &*wheel.roundness : nullptr;
        });
        judged.add("compared_profiles", "compared",
                   [](const WheelRoundness& r) { return static_cast<int>(r.radii.size()); });
        judged.add("off_circle_numbers", "off circle", [](const WheelRoundness& r) { return runsText(r.profiles); });
        judged.add("radius_deviation", "by", [](const WheelRoundness& r) { return r.largest; });
        judged.add("roundness", "shape", [](const WheelRoundness& r) {
            return r.isOut ? QStringLiteral("out of round") : QStringLiteral("round");
        });
    }
    return columns;
}

/// The text of a value, with `length` for lengths; empty where there is none.
template <typename Length>
QString textOf(const PairValue& value, Length length) {
    if (const int* const number = std::get_if<int>(&value)) {
        return QString::number(*number);
    }
    if (const float* const mm = std::get_if<float>(&value)) {
        return length(*mm);
    }
    const QString* const word = std::get_if<QString>(&value);
    return word != nullptr ? *word : QString();
}

QString recordingText(const Pass& pass, size_t index) {
    const Side& side = pass.sides[index];
    return QStringLiteral("Recording %1: %2 (SENSOR%3, serial %4), %5 records, %6 wheels\n")
        .arg(QString::number(index + 1), side.recording.name, QString::number(side.sensor.number),
             QString::number(side.recording.serial), QString::number(side.recording.records()),
             QString::number(side.wheels.size()));
}

QString table(const Pass& pass, const std::vector<PairColumn>& columns) {
    std::vector<QStringList> rows(pass.pairs.size() + 1);
    for (const PairColumn& column : columns) {
        rows[0].append(column.title);
        for (size_t i = 0; i < pass.pairs.size(); ++i) {
            rows[i + 1].append(textForPeople(column.value(pass, i)));
        }
    }
    return textTable(rows);
}

} // namespace

const std::vector<PairColumn>& pairColumns() {
    static const std::vector<PairColumn> columns = makeColumns();
    return columns;
}

const std::vector<PairColumn>& defectColumns() {
    static const std::vector<PairColumn> columns = makeDefectColumns();
    return columns;
}

const std::vector<PairColumn>& roundnessColumns() {
    static const std::vector<PairColumn> columns = makeRoundnessColumns();
    return columns;
}

QString textForPeople(const PairValue& value) {
    constexpr int kDecimals = 3;
    const QString text = textOf(value, [](float mm) { return fixedText(mm, kDecimals); });
    return text.isEmpty() ? QStringLiteral("-") : text;
}

QString toleranceText(const Pass& pass) {
    return QStringLiteral("%1 mm, %2 mm to both sides")
        .arg(shortestText(pass.tolerance.nominal), shortestText(pass.tolerance.allowed));
}

QString runsText(const std::vector<int>& ascending) {
    QStringList runs;
    for (size_t i = 0; i < ascending.size();) {
        size_t last = i;
        while (last + 1 < ascending.size() && ascending[last + 1] == ascending[last] + 1) {
            ++last;
        }
        const QString first = QString::number(ascending[i]);
        runs.append(last == i ? first : first + QLatin1Char('-') + QString::number(ascending[last]));
        i = last + 1;
    }
    return runs.join(QLatin1Char(' '));
}

QString defectLimitsText(const Pass& pass) {
    const DefectLimits& limits = pass.defectSettings->limits;
    return QStringLiteral("a profile is defective with more than %1 points farther than %2 mm off its curve, a wheel "
                          "with more than %3 defective profiles")
        .arg(QString::number(limits.pointsHigher), shortestText(limits.maxDeviation),
             QString::number(limits.minProfiles));
}

QString roundnessLimitsText(const Pass& pass) {
    const DefectLimits& limits = pass.defectSettings->limits;
    return QStringLiteral("a wheel is out of round with %1 successive profiles whose tread is more than %2 mm off the "
                          "circle to one side")
        .arg(QString::number(limits.radiusProfiles), shortestText(limits.maxRadiusDeviation));
}

QString passText(const Pass& pass, const QString& folder) {
    QString text = recordingText(pass, 0) + recordingText(pass, 1);
    text += QStringLiteral("Tolerance: %1\n\n").arg(toleranceText(pass));
    text += table(pass, pairColumns());
    const auto outside = std::count_if(pass.pairs.begin(), pass.pairs.end(), [&](const MeasuredPair& pair) {
        return std::isfinite(pair.distance) && !pass.tolerance.holds(pair.distance);
    });
    text += QStringLiteral("\n%1 distances, %2 out of tolerance. Lengths in mm.\n").arg(pass.distances()).arg(outside);
    if (pass.defectSettings) {
        text += QStringLiteral("\nDefects: %1\n\n").arg(defectLimitsText(pass));
        text += table(pass, defectColumns());
        text += QStringLiteral("\n%1 defective wheels.\n").arg(pass.defectiveWheels());
        text += QStringLiteral("\nRoundness: %1\n\n").arg(roundnessLimitsText(pass));
        text += table(pass, roundnessColumns());
        text += QStringLiteral("\n%1 wheels out of round.\n").arg(pass.wheelsOutOfRound());
    }
    if (!folder.isEmpty()) {
        text += QStringLiteral("Wheel files: %1\n").arg(folder);
    }
    return text;
}

QString passCsv(const Pass& pass) {
    std::vector<PairColumn> columns = pairColumns();
    if (pass.defectSettings) {
        for (const auto* const more : {&defectColumns(), &roundnessColumns()}) {
            columns.insert(columns.end(), more->begin() + 1, more->end()); // the pair is there
        }
    }
    QStringList header;
    for (const PairColumn& column : columns) {
        header.append(column.key);
    }
    QString text = header.join(QLatin1Char(',')) + QLatin1Char('\n');
    for (size_t i = 0; i < pass.pairs.size(); ++i) {
        QStringList row;
        for (const PairColumn& column : columns) {
            row.append(textOf(column.value(pass, i), shortestText));
        }
        text += row.join(QLatin1Char(',')) + QLatin1Char('\n');
    }
    return text;
}

} // namespace kxtool
