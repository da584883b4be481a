// What a chain of operations did and found, in words.
#include "report/profile/profileWords.h"

#include "report/elements/numbers.h"
#include "report/elements/textList.h"

namespace kxreport {

QStringList stepHead() {
    return textList({QStringLiteral("step"), QStringLiteral("points before"), QStringLiteral("after"),
                     QStringLiteral("missing"), QStringLiteral("result")});
}

QStringList stepRow(const KxInspect::StepOutcome& outcome) {
    const QString dash = QStringLiteral("-");
    const bool isDone = outcome.after > 0;
    const QString change = outcome.isChanged ? QStringLiteral("changed") : QStringLiteral("changed nothing");
    const QString note = isDone ? change : QStringLiteral("failed");
    return textList({QString::fromStdString(textOf(outcome.step)), QString::number(outcome.before),
                     isDone ? QString::number(outcome.after) : dash, isDone ? QString::number(outcome.missing) : dash,
                     note});
}

std::vector<std::pair<QString, QString>> findingRows(const KxInspect::ProfileFinding& finding) {
    constexpr int kDigits = 7;
    constexpr int kDecimals = 4;
    std::vector<std::pair<QString, QString>> rows;
    if (!finding.isFound()) {
        rows.emplace_back(QStringLiteral("not found"), QString::fromStdString(finding.reason));
    }
    for (const KxInspect::ProfileValue& value : finding.values) {
        const QString number = QString::number(value.value, 'g', kDigits);
        rows.emplace_back(QString::fromStdString(value.title),
                          value.unit.empty() ? number : number + QLatin1Char(' ') + QString::fromStdString(value.unit));
    }
    for (std::size_t i = 0; i < finding.points.size(); ++i) {
        const KxInspect::Point& p = finding.points[i];
        rows.emplace_back(QStringLiteral("point %1").arg(i + 1),
                          QStringLiteral("x %1 mm, y %2 mm").arg(fixedText(p.x, kDecimals), fixedText(p.y, kDecimals)));
    }
    return rows;
}

} // namespace kxreport
