// Numbers as decimal text, with the results of Qt's conversions.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace KxMath::detail {

/// The longest text of a float with 6 significant digits, such as "-1.23457e-05", and some more.
inline constexpr std::size_t kNumberTextSize = 24;

/// Writes QByteArray::number(v, 'g', 6) to `text`, a buffer of `kNumberTextSize` characters.
/// @return the end of the text
char* writeNumber(float v, char* text);

/// The number in plain ASCII text that starts, after an optional minus, and ends with a digit: that of
/// QString::toDouble(). Nothing for all other text, even where it is a number, and beyond the range of double.
std::optional<double> parsePlainNumber(std::string_view text);

} // namespace KxMath::detail
