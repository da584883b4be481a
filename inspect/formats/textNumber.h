// Numbers in texts.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace KxInspect::detail {

/// Fields that are longer are no numbers. A double needs at most 340 characters without an exponent.
inline constexpr std::size_t kLongestNumber = 400;

enum class FieldKind {
    Number, ///< finite or infinite
    Missing, ///< empty, "-" or "nan"; the value is NaN
    Text, ///< everything else, numbers beyond the range of the type included
};

/// A field of a text without the blanks around it, as a double or rounded to a float.
/// @param decimalSign '.' or ','; 0 while it is not known, and then set by the first number with a fraction
FieldKind parseDouble(std::string_view field, char& decimalSign, double& value);
FieldKind parseFloat(std::string_view field, char& decimalSign, float& value);

/// A text without blanks, tabs and carriage returns at its ends.
std::string_view trimmed(std::string_view text);

/// A part of a file for a message: cut to some 40 bytes, without control characters.
std::string excerpt(std::string_view text);

} // namespace KxInspect::detail
