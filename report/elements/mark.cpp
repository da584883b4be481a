// Verdicts as marks.
#include "report/elements/mark.h"

#include "report/elements/svg.h"

#include <array>

namespace kxreport {

namespace {

struct Look {
    const char* word;
    const char* sign;
    Tone tone;
    const char* shape; ///< about the origin
};

constexpr std::array<Look, 6> kLooks = {
    {{"ok", "\u25cf", Tone::Good, R"svg(<circle r="7" fill="var(--green)"/>)svg"},
     {"warning", "\u25b2", Tone::Bad,
      R"svg(<path d="M0 -8L8.5 7H-8.5Z" fill="#E69F00" stroke="#7a5300"/>)svg"
      R"svg(<path d="M0 -3V2M0 4V5.5" stroke="#000" stroke-width="1.8"/>)svg"},
     {"alarm", "\u25a0", Tone::Bad,
      R"svg(<rect x="-8" y="-8" width="16" height="16" fill="#B2182B" stroke="#5a0010"/>)svg"
      R"svg(<path d="M-4 -4L4 4M4 -4L-4 4" stroke="#fff" stroke-width="2.2"/>)svg"},
     {"not measured", "\u25cb", Tone::Faint,
      R"svg(<circle r="7" fill="var(--paper)" stroke="var(--ink)" stroke-width="1.5" stroke-dasharray="3 2"/>)svg"
      R"svg(<text text-anchor="middle" y="3.6" font-size="10" font-weight="bold">?</text>)svg"},
     {"no verdict", "\u00b7", Tone::Plain, R"svg(<circle r="5" fill="var(--pale)"/>)svg"},
     {"finding", "\u25c6", Tone::Bad,
      R"svg(<path d="M0 -9L9 0L0 9L-9 0Z" fill="var(--orange)" stroke="var(--ink)"/>)svg"}}};

const Look& lookOf(Mark mark) {
    return kLooks[static_cast<std::size_t>(mark)];
}

} // namespace

QString wordOf(Mark mark) {
    return QString::fromUtf8(lookOf(mark).word);
}

QString textOf(Mark mark) {
    return QString::fromUtf8(lookOf(mark).sign) + QLatin1Char(' ') + wordOf(mark);
}

Tone toneOf(Mark mark) {
    return lookOf(mark).tone;
}

QString markShape(Mark mark, double x, double y) {
    return QStringLiteral("<g transform=\"translate(%1 %2)\">").arg(coordinate(x), coordinate(y)) +
           QLatin1String(lookOf(mark).shape) + QStringLiteral("</g>");
}

} // namespace kxreport
