// Replacing a profile by straight pieces, block by block.
#include "KxMath/KxProfile.h"

#include "lists/checked.h"
#include "profile/completion.h"

#include <algorithm>
#include <cmath>

namespace KxMath {

namespace {

/// A point that a chord can start and end at.
bool isFinite(const KxPointXY& p) {
    return std::isfinite(p.x) && std::isfinite(p.y);
}

/// Writes the points from `begin` up to, not including, `end` of `profile` to `out`, their y on the line k * x + c.
void writeOnLine(KxProfile& profile, qsizetype begin, qsizetype end, float k, float c, KxProfile& out) {
    detail::complete(out.points, profile.points, end);
    KxPointXY* const targets = detail::writable(out.points);
    for (qsizetype j = begin; j < end; ++j) {
        const float x = std::as_const(profile.points)[j].x; // read first, `out` may be the profile
        KxPointXY& target = targets[j];
        target.y = k * x + c;
        target.x = x;
    }
}

/// writeOnLine() with the line through `p` and `q`.
void writeOnChord(KxProfile& profile, qsizetype begin, qsizetype end, const KxPointXY& p, const KxPointXY& q,
                  KxProfile& out) {
    const float width = p.x - q.x; // deliberately not guarded against 0
    const float k = (p.y - q.y) / width;
    const float c = (q.y * p.x - q.x * p.y) / width;
    writeOnLine(profile, begin, end, k, c, out);
}

} // namespace

void KxProfile::addLineSegments(KxProfile& out, int window, int /*reserved*/) {
    const qsizetype n = points.size();
    if (window <= 0 || n < window) {
        return;
    }
    for (qsizetype start = 0; start + window <= n; start += window) {
        const KxPointXY p = std::as_const(points)[start];
        if (start == n - 1) {
            detail::complete(out.points, points, n);
            detail::writable(out.points)[start] = p; // a last block of one point has no chord
            return;
        }
        const qsizetype next = std::min(start + window, n - 1); // the last block ends at the last point
        const KxPointXY q = std::as_const(points)[next];
        writeOnChord(*this, start, start + window, p, q, out);
    }
}

int KxProfile::addLineSegmentsWithMMWindow(KxProfile& out, float windowMM) {
    const qsizetype n = points.size();
    if (!(windowMM > 0.0f)) { // NaN: true
        return 0;
    }
    qsizetype written = 0;
    qsizetype start = 0;
    while (start < n && !isFinite(std::as_const(points)[start])) {
        ++start;
    }
    for (qsizetype next = start + 1; next < n; ++next) {
        const KxPointXY p = std::as_const(points)[start];
        const KxPointXY q = std::as_const(points)[next];
        if (!isFinite(q) || !(std::abs(q.x - p.x) >= windowMM)) {
            continue;
        }
        detail::complete(out.points, points, next);
        KxPointXY* const targets = detail::writable(out.points);
        for (; written < start; ++written) {
            targets[written] = std::as_const(points)[written]; // missing points before the first block
        }
        writeOnChord(*this, start, next, p, q, out);
        written = next;
        start = next;
    }
    return static_cast<int>(written);
}

void KxProfile::addParallelLine(KxProfile& out, int window, int /*reserved*/, float slope) {
    const qsizetype n = points.size();
    if (window <= 0 || n < window) {
        return;
    }
    for (qsizetype start = 0; start + window <= n; start += window) {
        const KxPointXY middle = std::as_const(points)[start + window / 2];
        const float offset = middle.x * slope;
        const float c = middle.y - offset;
        writeOnLine(*this, start, start + window, slope, c, out);
    }
}

} // namespace KxMath
