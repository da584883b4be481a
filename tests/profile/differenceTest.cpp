#include "profileSupport.h"

using namespace testing_support;

namespace {

/// The sums are running floats from the left. Deliberately every second point of the tail goes, the first included.
void plainDistance(const Points& minuend, const Points& subtrahend, Points& out, qint64 window, bool cutTail) {
    const qsizetype n = std::min(minuend.size(), subtrahend.size());
    for (qsizetype i = 0; i < n; ++i) {
        out[i].y = minuend[i].y - subtrahend[i].y;
    }
    for (qsizetype start = 0; window > 0 && start + window <= n; start += window) {
        float sum = 0.0f;
        for (qsizetype i = start; i < start + window; ++i) {
            sum += out[i].y;
        }
        for (qsizetype i = start; i < start + window; ++i) {
            out[i].y = std::abs(sum);
        }
    }
    for (qsizetype i = out.size() - 1; n > 0 && cutTail && i >= n; --i) {
        if ((i - n) % 2 == 0) {
            out.removeAt(i);
        }
    }
}

TEST(ProfileDistance, WritesDifferencesAndBlockSums) {
    forNasty(132, 1500, [](Nasty& nasty) {
        const Points points = nastyPoints(nasty, 60);
        const Points others =
            nasty.points<KxPointXY>(std::max(0, static_cast<int>(points.size()) + nasty.below(3) - 1));
        KxProfile minuend = profileOf(points), subtrahend = profileOf(others);
        Points expected = nasty.points<KxPointXY>(minuend.size() + nasty.below(7));
        KxProfile out = profileOf(expected);
        const int window = nastyWindow(nasty, minuend.size());
        const bool cutTail = nasty.chance(50);
        minuend.calcDistance(subtrahend, out, window, 0, cutTail);
        plainDistance(points, others, expected, window, cutTail);
        expectPoints(out, expected);
        expectPoints(minuend, points);
        expectPoints(subtrahend, others);
    });
}

} // namespace
