// Measured wheels in words.
#include "report/wheel/wheelWords.h"

#include "report/elements/fileNames.h"
#include "report/elements/numbers.h"

namespace kxreport {

QStringList wheelNames(const KxInspect::WheelResults& results) {
    std::vector<std::string> files;
    for (const KxInspect::WheelResult& wheel : results.wheels) {
        files.push_back(wheel.file);
    }
    return distinctNames(files);
}

QString limitText(const KxInspect::Limit& limit) {
    QStringList bounds;
    if (limit.min) {
        bounds += QStringLiteral("\u2265 ") + shortestText(*limit.min);
    }
    if (limit.max) {
        bounds += QStringLiteral("\u2264 ") + shortestText(*limit.max);
    }
    return bounds.isEmpty() ? QStringLiteral("-") : bounds.join(QStringLiteral(", "));
}

QString causesText(const KxInspect::GaugeError& error) {
    const QString noise = QStringLiteral("the noise of the points");
    return error.isSet()
               ? noise +
                     QStringLiteral(" and the standard uncertainties of the gauge, %1 mm, %2 mrad and %3 millionths")
                         .arg(shortestText(error.place))
                         .arg(shortestText(error.turn))
                         .arg(shortestText(error.scale))
               : noise;
}

QString judgementText(const KxInspect::WheelResults& results) {
    const KxInspect::WheelJudgement judgement = judgementOf(results);
    if (judgement.wheels == 0) {
        return {};
    }
    const QString text =
        QStringLiteral("%1 of %2 wheels judged by the limits").arg(judgement.judged).arg(judgement.wheels);
    return judgement.judged == 0 ? text : text + QStringLiteral(", %1 of them outside").arg(judgement.outside);
}

} // namespace kxreport
