// Verdicts as marks: each has a shape and a word of its own, so that no reader depends on colours.
#pragma once

#include "report/elements/page.h"

#include <QtCore/QString>

namespace kxreport {

enum class Mark { Ok, Warning, Alarm, NotMeasured, None, Finding };

/// "ok", "warning", "alarm", "not measured", "no verdict", "finding".
QString wordOf(Mark mark);

/// The shape as a character and the word: "▲ warning".
QString textOf(Mark mark);

Tone toneOf(Mark mark);

/// The shape as SVG, 16 pixels wide: a disc, a triangle, a square with an exclamation mark, a dashed ring with a question
/// mark, a small disc, a diamond.
QString markShape(Mark mark, double x, double y);

} // namespace kxreport
