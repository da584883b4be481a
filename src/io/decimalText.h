// Numbers as decimal text, with the results of Qt's conversions.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace KxMath::detail {

/// The longest text of a float with 6 significant digits, "-1.23457e-05" and the like, with room to spare.
inline constexpr std::size_t kNumberTextSize = 24;

/// Writes QByteArray::number(v, 'g', 6) to `text`, which has room for `kNumberTextSize` characters.
/// @return the character behind it
char* writeNumber(float v, char* text);

/// The number in plain ASCII text that starts and ends with a digit, but for a minus, as QString::toDouble() tells it.
/// Nothing for all other text, whatever it means, and for numbers beyond the range of double.
std::optional<double> parsePlainNumber(std::string_view text);

} // namespace KxMath::detail
