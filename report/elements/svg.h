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

/// An upper bound of the width of a text in the font of pages, in units of `size`'s pixels. Texts cannot be measured where
/// pages are made; the advances are those of DejaVu Sans, the widest of their fonts, rounded up by kind of character.
double textWidth(const QString& text, double size);

/// The text cut to a width, with an ellipsis.
QString cutToWidth(const QString& text, double size, double pixels);

/// Colours that colour-blind readers and grey-scale prints can distinguish (after Okabe and Ito, Color Universal Design,
/// 2008), darker or lighter so that text in them stands out from the paper by 4.5:1. page.css gives their values, for
/// light and dark screens.
namespace colour {
inline constexpr const char* kBlue = "var(--blue)";
inline constexpr const char* kOrange = "var(--orange)";
inline constexpr const char* kGreen = "var(--green)";
inline constexpr const char* kPurple = "var(--purple)";
inline constexpr const char* kCrimson = "var(--crimson)";
inline constexpr const char* kBlack = "var(--black)";
inline constexpr const char* kInk = "var(--ink)";
inline constexpr const char* kGrey = "var(--grey)";
inline constexpr const char* kPale = "var(--pale)";
} // namespace colour

} // namespace kxreport
