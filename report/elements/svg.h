// Text for HTML and SVG.
#pragma once

#include <QtCore/QString>

namespace kxreport {

/// Text escaped for an element or a quoted attribute. Control characters become spaces.
QString escaped(const QString& text);

/// A number with `decimals` decimals; a very large one in scientific notation, a dash for NaN and infinities.
QString numberText(double value, int decimals);

/// A coordinate in pixels with at most one decimal.
QString coordinate(double value);

/// Colours that colour-blind readers and grey-scale prints can distinguish (Okabe and Ito, Color Universal Design, 2008).
namespace colour {
inline constexpr const char* kBlue = "#0072B2";
inline constexpr const char* kOrange = "#D55E00";
inline constexpr const char* kGreen = "#009E73";
inline constexpr const char* kPurple = "#AA4499";
inline constexpr const char* kBlack = "#000000";
inline constexpr const char* kGrey = "#6b7580";
inline constexpr const char* kPale = "#a3b0bd";
} // namespace colour

} // namespace kxreport
