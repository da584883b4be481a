// Numbers as text for people and for programs.
#pragma once

#include <QtCore/QJsonValue>
#include <QtCore/QString>

namespace kxtool {

/// The shortest decimal text that reads back as the same float; empty for NaN and infinities.
QString shortestText(float value);

/// The same number for JSON, null for NaN and infinities.
QJsonValue jsonNumber(float value);

/// A number with a fixed count of digits behind the point, a dash for NaN and infinities.
QString fixedText(float value, int decimals);

} // namespace kxtool
