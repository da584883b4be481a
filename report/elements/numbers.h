// Numbers as text for readers.
#pragma once

#include <KxInspect/Interval.h>

#include <QtCore/QString>

namespace kxreport {

/// The shortest decimal text that reads back as the same float; empty for NaN and infinities.
QString shortestText(float value);

/// A number with a fixed number of decimals, a dash for NaN and infinities.
QString fixedText(float value, int decimals);

/// A value with its interval: "28.14 ± 0.05" where both ends are equally far in these decimals, else
/// "0.16 (0.14 to 0.19)"; the value alone where the interval is unknown, a dash for a value that is not finite.
QString withInterval(float value, const KxInspect::Interval& interval, int decimals);

} // namespace kxreport
