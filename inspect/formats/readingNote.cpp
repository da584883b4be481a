// What the user of a text has to know about its reading.
#include "inspect/formats/textTable.h"

#include <QtCore/QString>

namespace KxInspect {

std::string readingNote(const TextForm& form) {
    const bool hasCommas = form.decimalSign == ',';
    if (!hasCommas && form.remarks == 0) {
        return {};
    }
    QString note = QStringLiteral("is read with %1 between the columns").arg(detail::separatorName(form.separator));
    if (hasCommas) {
        note += QStringLiteral(" and ',' as decimal sign");
    }
    if (form.remarks > 0) {
        note += QStringLiteral(", without the remarks behind the columns of %1 points").arg(form.remarks);
    }
    return note.toStdString();
}

} // namespace KxInspect
