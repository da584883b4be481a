// Numbers as text for readers.
#pragma once

#include <QtCore/QString>

namespace kxreport {

/// The shortest decimal text that reads back as the same float; empty for NaN and infinities.
QString shortestText(float value);

/// A number with a fixed number of decimals, a dash for NaN and infinities.
QString fixedText(float value, int decimals);

} // namespace kxreport
