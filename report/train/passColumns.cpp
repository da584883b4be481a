// The pairs of a pass as columns of values.
#include "report/train/passColumns.h"

#include "report/elements/numbers.h"
#include "report/train/passWords.h"

namespace kxreport {

using namespace KxInspect;

namespace {

constexpr int kDecimals = 3; // of lengths in mm
constexpr int kYawDecimals = 3; // of mrad

/// A column of one side, with `missing` where that sensor did not see the wheel.
template <typename Value>
PairColumn wheelColumn(size_t side, const char* key, const char* title, Value value, const PairValue& missing = {}) {
    return {QStringLiteral("%1_%2").arg(QLatin1String(key)).arg(side + 1),
            QStringLiteral("%1 %2").arg(QLatin1String(title)).arg(side + 1),
            [side, value, missing](const PassResult& pass, size_t index) -> PairValue {
                const PassWheel* const wheel = pass.wheelOf(pass.pairs[index], side);
                return wheel != nullptr ? PairValue(value(*wheel)) : missing;
            }};
}

/// Adds columns of one side, with values where `judgement` gives what was found of the wheel.
template <typename Judgement>
class JudgementColumns {
public:
    JudgementColumns(std::vector<PairColumn>& columns, size_t side, Judgement judgement)
        : columns_(columns), side_(side), judgement_(judgement) {}

    template <typename Value>
    void add(const char* key, const char* title, Value value, PairValue missing = {}) {
        const auto valueOf = [judgement = judgement_, value, missing](const PassWheel& wheel) {
            const auto* const found = judgement(wheel);
            return found != nullptr ? PairValue(value(*found)) : missing;
        };
        columns_.push_back(wheelColumn(side_, key, title, valueOf, missing));
    }

private:
    std::vector<PairColumn>& columns_;
    size_t side_;
    Judgement judgement_;
};

PairValue verdict(const PassResult& pass, size_t index) {
    const std::optional<bool>& isIn = pass.pairs[index].inTolerance;
    return isIn ? PairValue(*isIn ? QStringLiteral("ok") : QStringLiteral("out")) : NotJudged();
}

std::vector<PairColumn> makeColumns() {
    std::vector<PairColumn> columns;
    columns.push_back({QStringLiteral("pair"), QStringLiteral("pair"),
                       [](const PassResult&, size_t index) -> PairValue { return static_cast<int>(index) + 1; }});
    for (const size_t side : {0U, 1U}) {
        const auto add = [&](const char* key, const char* title, auto value) {
            columns.push_back(wheelColumn(side, key, title, value));
        };
        add("wheel", "wheel", [](const PassWheel& wheel) { return wheel.number; });
        add("profiles", "profiles", [](const PassWheel& wheel) { return wheel.profiles; });
        add("first_record", "first", [](const PassWheel& wheel) { return wheel.firstRecord; });
        add("last_record", "last", [](const PassWheel& wheel) { return wheel.lastRecord(); });
        add("chosen_profile", "chosen", [](const PassWheel& wheel) {
            return wheel.chosenProfile > 0 ? PairValue(wheel.chosenProfile) : PairValue();
        });
        add("points", "points", [](const PassWheel& wheel) { return wheel.points; });
    }
    columns.push_back({QStringLiteral("distance"), QStringLiteral("distance"),
                       [](const PassResult& pass, size_t index) -> PairValue { return pass.pairs[index].distance; },
                       [](const PassResult& pass, size_t index) {
                           const WheelPair& pair = pass.pairs[index];
                           return withInterval(pair.distance, pair.interval, kDecimals);
                       }});
    columns.push_back({QStringLiteral("deviation"), QStringLiteral("deviation"),
                       [](const PassResult& pass, size_t index) -> PairValue { return pass.pairs[index].deviation; }});
    columns.push_back({QStringLiteral("verdict"), QStringLiteral("verdict"), verdict});
    columns.push_back({QStringLiteral("yaw"), QStringLiteral("yaw"),
                       [](const PassResult& pass, size_t index) -> PairValue { return pass.pairs[index].yaw; },
                       [](const PassResult& pass, size_t index) {
                           const WheelPair& pair = pass.pairs[index];
                           return withInterval(pair.yaw, pair.yawInterval, kYawDecimals);
                       }});
    columns.push_back({QStringLiteral("chord"), QStringLiteral("chord"),
                       [](const PassResult& pass, size_t index) -> PairValue { return pass.pairs[index].chord; },
                       [](const PassResult& pass, size_t index) { return fixedText(pass.pairs[index].chord, 0); }});
    return columns;
}

std::vector<PairColumn> makeIntervalColumns() {
    const auto column = [](const char* key, auto member) {
        return PairColumn{
            QLatin1String(key), QLatin1String(key),
            [member](const PassResult& pass, size_t index) -> PairValue { return member(pass.pairs[index]); }};
    };
    return {column("distance_low", [](const WheelPair& pair) { return pair.interval.low; }),
            column("distance_high", [](const WheelPair& pair) { return pair.interval.high; }),
            column("yaw_low", [](const WheelPair& pair) { return pair.yawInterval.low; }),
            column("yaw_high", [](const WheelPair& pair) { return pair.yawInterval.high; })};
}

std::vector<PairColumn> makeDefectColumns() {
    std::vector<PairColumn> columns = {pairColumns().front()};
    for (const size_t side : {0U, 1U}) {
        columns.push_back(wheelColumn(side, "judged_profiles", "judged", [](const PassWheel& wheel) {
            return wheel.defects ? PairValue(wheel.defects->judged) : PairValue();
        }));
        JudgementColumns judged(columns, side, [](const PassWheel& wheel) {
            return wheel.defects && wheel.defects->judged > 0 ? &*wheel.defects : nullptr;
        });
        judged.add("defective_profiles", "defective",
                   [](const TreadDefects& d) { return static_cast<int>(d.profiles.size()); });
        judged.add("defective_numbers", "numbers", [](const TreadDefects& d) { return runsText(d.profiles); });
        judged.add("deviating_points", "deviating", [](const TreadDefects& d) { return d.deviating; });
        judged.add("largest_deviation", "largest", [](const TreadDefects& d) { return d.largest; });
        judged.add("tread_limit", "limit", [](const TreadDefects& d) { return d.limit; });
        const auto verdictOf = [](const PassWheel& wheel) -> PairValue {
            if (!wheel.defects || !wheel.defects->isDefective) {
                return NotJudged();
            }
            return *wheel.defects->isDefective ? QStringLiteral("defective") : QStringLiteral("sound");
        };
        columns.push_back(wheelColumn(side, "tread", "tread", verdictOf, NotJudged()));
    }
    return columns;
}

std::vector<PairColumn> makeRoundnessColumns() {
    std::vector<PairColumn> columns = {pairColumns().front()};
    for (const size_t side : {0U, 1U}) {
        JudgementColumns judged(columns, side,
                                [](const PassWheel& wheel) { return wheel.roundness ? &*wheel.roundness : nullptr; });
        judged.add("compared_profiles", "compared",
                   [](const Roundness& r) { return static_cast<int>(r.radii.size()); });
        judged.add("off_circle_numbers", "off circle", [](const Roundness& r) { return runsText(r.profiles); });
        judged.add("radius_deviation", "by", [](const Roundness& r) { return r.largest; });
        judged.add("radius_deviation_low", "low", [](const Roundness& r) { return r.largestInterval.low; });
        judged.add("radius_deviation_high", "high", [](const Roundness& r) { return r.largestInterval.high; });
        judged.add("roundness_limit", "limit", [](const Roundness& r) { return r.limit; });
        judged.add("seen", "seen", [](const Roundness& r) { return arcsText(r.seen); });
        judged.add("roundness", "shape", shapeText, NotJudged());
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

} // namespace

const std::vector<PairColumn>& pairColumns() {
    static const std::vector<PairColumn> columns = makeColumns();
    return columns;
}

const std::vector<PairColumn>& intervalColumns() {
    static const std::vector<PairColumn> columns = makeIntervalColumns();
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

std::vector<PairColumn> reasonColumns(const PassResult& pass) {
    std::vector<PairColumn> columns;
    const auto add = [&](const QString& key, PassQuestion question, size_t side) {
        columns.push_back(
            {key, QStringLiteral("reason"), [question, side](const PassResult& of, size_t index) -> PairValue {
                 return whyNotJudged(of, question, index, side);
             }});
    };
    add(QStringLiteral("distance_reason"), PassQuestion::Distance, 0);
    const auto addText = [&](const char* key, auto reason) {
        columns.push_back(
            {QLatin1String(key), QStringLiteral("reason"), [reason](const PassResult& of, size_t index) -> PairValue {
                 return QString::fromStdString(of.pairs[index].*reason);
             }});
    };
    addText("interval_reason", &WheelPair::intervalReason);
    addText("yaw_reason", &WheelPair::yawReason);
    for (size_t side = 0; side < pass.sides.size() && pass.defectLimits; ++side) {
        add(QStringLiteral("tread_reason_%1").arg(side + 1), PassQuestion::Tread, side);
        add(QStringLiteral("roundness_reason_%1").arg(side + 1), PassQuestion::Roundness, side);
    }
    return columns;
}

QString textForPeople(const PairValue& value) {
    if (std::holds_alternative<NotJudged>(value)) {
        return QStringLiteral("not judged");
    }
    const QString text = textOf(value, [](float mm) { return fixedText(mm, kDecimals); });
    return text.isEmpty() ? QStringLiteral("-") : text;
}

QString textForPeople(const PairColumn& column, const PassResult& pass, size_t index) {
    return column.text ? column.text(pass, index) : textForPeople(column.value(pass, index));
}

QString textForPrograms(const PairValue& value) {
    return textOf(value, shortestText);
}

} // namespace kxreport
