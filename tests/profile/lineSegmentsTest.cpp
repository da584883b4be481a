#include "profileSupport.h"

using namespace testing_support;

namespace {

bool isFinite(const KxPointXY& p) {
    return std::isfinite(p.x) && std::isfinite(p.y);
}

void writeOnLine(const Points& in, Points& out, qsizetype begin, qsizetype end, float k, float c) {
    for (qsizetype i = begin; i < end; ++i) {
        out[i] = KxPointXY(in[i].x, k * in[i].x + c);
    }
}

/// Deliberately not guarded against points above each other.
void writeOnChord(const Points& in, Points& out, qsizetype begin, qsizetype end, KxPointXY p, KxPointXY q) {
    const float width = p.x - q.x;
    writeOnLine(in, out, begin, end, (p.y - q.y) / width, (q.y * p.x - q.x * p.y) / width);
}

TEST(StraightPieces, ChordsOfBlocks) {
    compareFilters(
        60, [](KxProfile& in, KxProfile& out, int window, float) { in.addLineSegments(out, window, 0); },
        [](const Points& in, Points& out, qint64 w, float) {
            const qsizetype n = in.size();
            for (qsizetype i = 0; w > 0 && i + w <= n; i += w) {
                if (i == n - 1) {
                    out[i] = KxPointXY(in[i]); // a last block of one point has no chord
                } else {
                    writeOnChord(in, out, i, i + w, in[i], in[std::min(i + w, n - 1)]);
                }
            }
        });
}

TEST(StraightPieces, ParallelsThroughTheMiddleOfBlocks) {
    compareFilters(
        60, [](KxProfile& in, KxProfile& out, int w, float slope) { in.addParallelLine(out, w, 0, slope); },
        [](const Points& in, Points& out, qint64 w, float slope) {
            for (qsizetype i = 0; w > 0 && i + w <= in.size(); i += w) {
                const KxPointXY middle = in[i + w / 2];
                writeOnLine(in, out, i, i + w, slope, middle.y - middle.x * slope);
            }
        });
}

TEST(StraightPieces, BlocksAreWideInMillimetres) {
    compareFilters(
        60, [](KxProfile& in, KxProfile& out, int, float width) { in.addLineSegmentsWithMMWindow(out, width); },
        [](const Points& in, Points& out, int, float width) {
            const auto start = std::find_if(in.begin(), in.end(), isFinite) - in.begin();
            qsizetype written = 0;
            for (qsizetype i = start, next = start + 1; width > 0.0f && next < in.size(); ++next) {
                const KxPointXY p = in[i], q = in[next];
                if (isFinite(q) && std::abs(q.x - p.x) >= width) {
                    std::copy(in.begin() + written, in.begin() + i, out.begin() + written); // missing at first
                    writeOnChord(in, out, i, next, p, q);
                    written = i = next;
                }
            }
        });
    const std::pair<Points, int> cases[] = {
        {{{0, 0}, {1, 1}, {2, 1}, {3, 1}}, 2}, {{{2, 0}, {0, 1}}, 1}, {{{0, 0}, {1.9f, 1}}, 0}, {{}, 0}};
    for (const auto& [points, written] : cases) {
        KxProfile profile = profileOf(points);
        EXPECT_EQ(profile.addLineSegmentsWithMMWindow(profile, 2.0f), written);
    }
}

} // namespace
