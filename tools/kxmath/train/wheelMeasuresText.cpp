// The measures of the wheels of a pass as text.
#include "tools/kxmath/train/wheelMeasuresText.h"

#include "tools/kxmath/console/textTable.h"

#include <map>
#include <vector>

namespace kxtool {

namespace {

using namespace KxInspect;

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

/// Why measures are missing: each reason once, with how many there are.
QString missingText(const PassResult& pass) {
    std::map<std::pair<std::size_t, std::string>, int> reasons; // in the order of the measures
    for (const PassWheelMeasures& wheel : pass.wheels) {
        for (std::size_t i = 0; i < kPassMeasures; ++i) {
            if (!wheel.values[i].value) {
                ++reasons[{i, wheel.values[i].reason}];
            }
        }
    }
    QString text;
    for (const auto& [key, count] : reasons) {
        text += QStringLiteral("No %1 of %2 of %3 wheels: %4.\n")
                    .arg(QLatin1String(kPassMeasureInfos[key.first].title))
                    .arg(count)
                    .arg(pass.wheels.size())
                    .arg(QString::fromStdString(key.second));
    }
    return text;
}

} // namespace

QString wheelMeasuresText(const PassResult& pass) {
    if (pass.wheels.empty()) {
        return {};
    }
    std::vector<QStringList> rows;
    QStringList titles = {QStringLiteral("pair"), QStringLiteral("side")};
    for (const PassMeasureInfo& info : kPassMeasureInfos) {
        titles.append(QLatin1String(info.title));
    }
    rows.push_back(titles);
    for (const PassWheelMeasures& wheel : pass.wheels) {
        QStringList row = {QString::number(wheel.pair), QLatin1String(textOf(wheel.side))};
        for (const PassMeasureInfo& info : kPassMeasureInfos) {
            row.append(valueText(wheel[info.measure], info.decimals));
        }
        rows.push_back(row);
    }
    return QStringLiteral("\nWheels, mm, with intervals of 95 %:\n\n") + textTable(rows) + QLatin1Char('\n') +
           missingText(pass);
}

} // namespace kxtool
