// The measures of the wheels of a pass in words and rows.
#include "report/train/wheelWords.h"

#include "report/elements/textList.h"

#include <map>
#include <utility>

namespace kxreport {

using namespace KxInspect;

namespace {

QString valueText(const PassValue& value, int decimals) {
    if (!value.value) {
        return QStringLiteral("-");
    }
    QString text = QString::number(static_cast<double>(*value.value), 'f', decimals);
    if (value.interval.isKnown()) {
        const double half = static_cast<double>(value.interval.high - value.interval.low) / 2.0;
        text += QStringLiteral(" ± %1").arg(half, 0, 'f', 3);
    }
    return text;
}

} // namespace

std::vector<QStringList> wheelRows(const PassResult& pass) {
    QStringList titles = textList({QStringLiteral("pair"), QStringLiteral("side")});
    for (const PassMeasureInfo& info : kPassMeasureInfos) {
        titles.append(QLatin1String(info.title));
    }
    std::vector<QStringList> rows;
    rows.push_back(titles);
    for (const PassWheelMeasures& wheel : pass.wheels) {
        rows.push_back(textList({QString::number(wheel.pair), QLatin1String(textOf(wheel.side))}));
        for (const PassMeasureInfo& info : kPassMeasureInfos) {
            rows.back().append(valueText(wheel[info.measure], info.decimals));
        }
    }
    return rows;
}

QStringList wheelNotes(const PassResult& pass) {
    std::map<std::pair<std::size_t, std::string>, int> reasons; // in the order of the measures
    for (const PassWheelMeasures& wheel : pass.wheels) {
        for (std::size_t i = 0; i < kPassMeasures; ++i) {
            if (!wheel.values[i].value) {
                ++reasons[{i, wheel.values[i].reason}];
            }
        }
    }
    QStringList notes;
    for (const auto& [key, count] : reasons) {
        notes.append(QStringLiteral("No %1 of %2 of %3 wheels: %4.")
                         .arg(QLatin1String(kPassMeasureInfos[key.first].title))
                         .arg(count)
                         .arg(pass.wheels.size())
                         .arg(QString::fromStdString(key.second)));
    }
    return notes;
}

} // namespace kxreport
