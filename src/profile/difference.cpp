// The difference between two profiles.
#include "KxMath/KxProfile.h"

#include "lists/checked.h"
#include "lists/filtering.h"
#include "profile/completion.h"

#include <algorithm>
#include <cmath>

namespace KxMath {

void KxProfile::calcDistance(KxProfile& other, KxProfile& out, int window, int /*reserved*/, bool cutTail) {
    const qsizetype n = std::min(points.size(), other.points.size());
    if (n < 1) {
        return;
    }
    detail::complete(out.points, points, n);
    KxPointXY* const targets = detail::writable(out.points);
    for (qsizetype i = 0; i < n; ++i) {
        const float difference = std::as_const(points)[i].y - std::as_const(other.points)[i].y;
        targets[i].y = difference;
    }
    const qsizetype blocks = window > 0 ? n / window : 0;
    for (qsizetype b = 0; b < blocks; ++b) {
        KxPointXY* const block = targets + b * window;
        float sum = 0.0f;
        for (qsizetype j = 0; j < window; ++j) {
            sum += block[j].y;
        }
        for (qsizetype j = 0; j < window; ++j) {
            block[j].y = std::abs(sum); // deliberately not divided: the sum of the block, no mean
        }
    }
    if (cutTail) {
        // Deliberately every second point of the tail, the first one included.
        qsizetype position = 0;
        detail::keepIf(out.points, [&](const KxPointXY&) {
            const qsizetype behind = position++ - n;
            return behind < 0 || behind % 2 != 0;
        });
    }
}

} // namespace KxMath
