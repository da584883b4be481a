// The results of kxmath profile as text.
#include "tools/kxmath/profile/profileText.h"

#include "report/elements/textList.h"
#include "report/profile/profileWords.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/console/textTable.h"

namespace kxtool {

namespace {

QString stepTable(const KxInspect::ProfileResult& result) {
    std::vector<QStringList> rows = {kxreport::stepHead()};
    for (const KxInspect::StepOutcome& outcome : result.outcomes) {
        rows.push_back(kxreport::stepRow(outcome));
    }
    return textTable(rows);
}

QString findingText(const KxInspect::ProfileFinding& finding) {
    QString text = QString::fromStdString(finding.name) + QStringLiteral(":\n");
    for (const auto& [title, value] : kxreport::findingRows(finding)) {
        text += QStringLiteral("  %1: %2\n").arg(title, value);
    }
    return text;
}

/// The arguments with what they need, those that need the same together.
QString argumentsText(const KxInspect::ProfileOperation& operation) {
    QStringList parts;
    QString names;
    for (std::size_t i = 0; i < operation.arguments.size(); ++i) {
        const std::string need = textOf(operation.arguments[i]);
        names +=
            (names.isEmpty() ? QString() : QStringLiteral(", ")) + QString::fromStdString(operation.arguments[i].name);
        if (i + 1 == operation.arguments.size() || textOf(operation.arguments[i + 1]) != need) {
            parts.append(names + QStringLiteral(": ") + QString::fromStdString(need));
            names.clear();
        }
    }
    return parts.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(parts.join(QStringLiteral("; ")));
}

} // namespace

QString profileTable(const KxInspect::ProfileResult& result) {
    QString text = printable(QString::fromStdString(result.file));
    if (result.record) {
        text += QStringLiteral(", record %1").arg(*result.record);
    }
    text += QStringLiteral(": %1 points\n").arg(result.pointsBefore);
    if (!result.outcomes.empty()) {
        text += stepTable(result);
    }
    for (const KxInspect::ProfileFinding& finding : result.findings) {
        text += findingText(finding);
    }
    return text;
}

QString operationList() {
    QString text;
    for (const KxInspect::ProfileOperation& operation : KxInspect::profileOperations()) {
        text += QStringLiteral("%1  %2%3\n")
                    .arg(QString::fromStdString(textOf(operation)), QString::fromStdString(operation.summary),
                         argumentsText(operation));
    }
    return text;
}

} // namespace kxtool
