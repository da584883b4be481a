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

constexpr std::array<Look, 5> kLooks = {
    {{"ok", "\u25cf", Tone::Good, R"(<circle r="7" fill="#009E73"/>)"},
     {"warning", "\u25b2", Tone::Bad,
      R"(<path d="M0 -8L8.5 7H-8.5Z" fill="#E69F00" stroke="#7a5300"/>)"
      R"(<path d="M0 -3V2M0 4V5.5" stroke="#000" stroke-width="1.8"/>)"},
     {"alarm", "\u25a0", Tone::Bad,
      R"(<rect x="-8" y="-8" width="16" height="16" fill="#B2182B" stroke="#5a0010"/>)"
      R"(<path d="M-4 -4L4 4M4 -4L-4 4" stroke="#fff" stroke-width="2.2"/>)"},
     {"not measured", "\u25cb", Tone::Faint,
      R"(<circle r="7" fill="#fff" stroke="#3a4652" stroke-width="1.5" stroke-dasharray="3 2"/>)"
      R"(<text text-anchor="middle" y="3.6" font-size="10" font-weight="bold">?</text>)"},
     {"no verdict", "\u00b7", Tone::Plain, R"(<circle r="5" fill="#a3b0bd"/>)"}}};

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
