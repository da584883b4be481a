// The sheet of a pass as CSV.
#include "tools/kxmath/train/sheetText.h"

#include "report/train/sheetColumns.h"
#include "tools/kxmath/console/csv.h"

namespace kxtool {

using namespace kxreport;

QString sheetCsv(const KxInspect::PassResult& pass) {
    QStringList header;
    for (const SheetColumn& column : sheetColumns()) {
        header += column.keys;
    }
    QString text = csvLine(header);
    for (const KxInspect::SheetRow& row : KxInspect::sheetOf(pass)) {
        QStringList fields;
        for (const SheetColumn& column : sheetColumns()) {
            for (const PairValue& value : column.fields(pass, row)) {
                const QString* const word = std::get_if<QString>(&value);
                fields.append(word != nullptr ? csvField(*word) : textForPrograms(value));
            }
        }
        text += csvLine(fields);
    }
    return text;
}

} // namespace kxtool
