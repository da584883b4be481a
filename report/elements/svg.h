// Text for HTML and SVG.
#pragma once

#include <QtCore/QString>

namespace kxreport {

/// Text that stands for itself in an element or in a quoted attribute. Control characters become spaces.
QString escaped(const QString& text);

/// A number with `decimals` digits behind the point; very large ones in scientific form, a dash for what is not finite.
QString numberText(double value, int decimals);

/// A coordinate of the picture, short.
QString coordinate(double value);

/// Colours that stay apart for colour-blind readers and on grey paper (Okabe and Ito, Color Universal Design, 2008).
namespace colour {
inline constexpr const char* kBlue = "#0072B2";
inline constexpr const char* kOrange = "#D55E00";
inline constexpr const char* kGreen = "#009E73";
inline constexpr const char* kPurple = "#AA4499";
inline constexpr const char* kGrey = "#6b7580";
inline constexpr const char* kPale = "#a3b0bd";
} // namespace colour

} // namespace kxreport
