#include "profileSupport.h"

using namespace testing_support;

namespace {

/// Deliberately without a weight for the point itself; the first 20 points are copied.
void plainKihFilter(const Points& in, Points& out, float maxStep) {
    constexpr float kWeights[20] = {0.0f,    0.0013f, 0.0047f, 0.0117f, 0.0238f, 0.0407f, 0.0612f,
                                    0.0824f, 0.1011f, 0.1139f, 0.1185f, 0.1139f, 0.1011f, 0.0824f,
                                    0.0612f, 0.0407f, 0.0238f, 0.0117f, 0.0047f, 0.0013f};
    Points filtered = in;
    for (qsizetype i = 20; i < in.size(); ++i) {
        if (in[i].x - in[i - 1].x > maxStep) { // NaN: false
            continue;
        }
        filtered[i].y = 0.0f;
        for (qsizetype k = 0; k < 20; ++k) {
            filtered[i].y += kWeights[k] * in[i - k].y;
        }
    }
    std::copy(filtered.begin(), in.size() < 20 ? filtered.begin() : filtered.end(), out.begin());
}

TEST(Smoothing, KihFilterEqualsThePlainDefinition) {
    compareFilters(
        100, [](KxProfile& in, KxProfile& out, int, float limit) { in.kihFilter20(out, limit); },
        [](const Points& in, Points& out, int, float limit) { plainKihFilter(in, out, limit); });
}

TEST(Smoothing, WndFilterEqualsThePlainDefinition) {
    compareFilters(
        300, [](KxProfile&, KxProfile& out, int window, float) { out.wndFilter(window); },
        [](const Points&, Points& out, qint64 w, float) {
            const auto h = static_cast<qsizetype>(std::floor(static_cast<float>(w) / 2.5f));
            for (qsizetype i = 0; w >= 0 && i < out.size() - w; ++i) {
                float sum = 0.0f;
                for (qsizetype k = i; k < i + w; ++k) {
                    sum += out[k].y;
                }
                out[i + h].y = sum / static_cast<float>(w);
            }
        });
}

TEST(Smoothing, MedFiltOrdersByXAndOnlyShiftsAnOrderedProfile) {
    compareFilters(
        60, [](KxProfile& in, KxProfile& out, int window, float) { in.medFilt(out, window, INT_MIN); },
        [](const Points& in, Points& out, qint64 w, float) {
            for (qsizetype i = 0; w > 0 && i < in.size() - w; ++i) {
                Points scratch = in.mid(i, w);
                sortByExchanges(scratch);
                out[i].y = scratch[w / 2].y;
            }
        });
}

TEST(Smoothing, DiffFiltEqualsThePlainDefinition) {
    compareFilters(
        120, [](KxProfile& in, KxProfile& out, int window, float) { in.diffFilt(out, window); },
        [](const Points& in, Points& out, qint64 w, float) {
            for (qsizetype i = 0; w > 0 && w + 2 <= in.size() && i < in.size() - w + 1; ++i) {
                float upperX = 0.0f, upperY = 0.0f, lowerX = 0.0f, lowerY = 0.0f;
                for (qsizetype k = 0; k < w; ++k) {
                    (k < w / 2 ? lowerX : upperX) += out[i + k].x;
                    (k < w / 2 ? lowerY : upperY) += out[i + k].y;
                }
                out[i].y = (upperY - lowerY) / (upperX - lowerX);
            }
        });
}

} // namespace
