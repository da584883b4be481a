// Profiles as contact profile gauges write them.
#pragma once

#include <KxMath/KxProfile.h>

namespace tool_test {

/// Header lines, one of them with numbers, and three columns.
inline QByteArray gaugeText(const KxMath::KxProfile& profile, float shift, float xFactor, float yFactor) {
    QByteArray text = "Stock.......:\n32.58 37.11 14.71  (Sd/Sh/qR)\nWheel ID....: 7\n\n";
    for (const auto& p : profile.points) {
        text += QByteArray::number(double(xFactor * (p.x + shift)), 'f', 5) + "  " +
                QByteArray::number(double(yFactor * p.y), 'f', 5) + " 0.000\n";
    }
    return text;
}

} // namespace tool_test
