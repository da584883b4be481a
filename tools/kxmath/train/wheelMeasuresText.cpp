// The measures of the wheels of a pass as text.
#include "tools/kxmath/train/wheelMeasuresText.h"

#include "report/train/wheelWords.h"
#include "tools/kxmath/console/textTable.h"

namespace kxtool {

QString wheelMeasuresText(const KxInspect::PassResult& pass) {
    if (pass.wheels.empty()) {
        return {};
    }
    QString text = QStringLiteral("\nWheels, mm, with intervals of 95 %:\n\n") + textTable(kxreport::wheelRows(pass)) +
                   QLatin1Char('\n');
    for (const QString& note : kxreport::wheelNotes(pass)) {
        text += note + QLatin1Char('\n');
    }
    return text;
}

} // namespace kxtool
