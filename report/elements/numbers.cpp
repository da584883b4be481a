// Numbers as text for readers.
#include "report/elements/numbers.h"

#include <KxInspect/Json.h>

#include <cmath>

namespace kxreport {

QString shortestText(float value) {
    return QString::fromStdString(KxInspect::shortestText(value));
}

QString fixedText(float value, int decimals) {
    return std::isfinite(value) ? QString::number(static_cast<double>(value), 'f', decimals) : QStringLiteral("-");
}

} // namespace kxreport
