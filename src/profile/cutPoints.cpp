// Steps of the level of a profile.
#include "KxMath/KxProfile.h"

#include "lists/checked.h"
#include "profile/coordinates.h"
#include "profile/order.h"
#include "rounding/bounds.h"
#include "simd/windowSums.h"

#include <algorithm>
#include <memory>
#include <optional>

namespace KxMath {

namespace {

/// Differences of level about the points of a profile: the sum of the heights in the window behind a centre minus that
/// of the window before it; the centre is in neither.
class LevelDifferences {
public:
    static constexpr qsizetype kBlock = 128;

    /// The window is not longer than the profile.
    LevelDifferences(const KxPointXY* points, qsizetype n, qsizetype window)
        : n_(n), window_(window), heights_(paddedBuffer(n)), sums_(paddedBuffer(n)) {
        detail::copyYs(points, n, heights_.get());
        std::fill_n(heights_.get() + n, detail::kWindowPadding, 0.0f);
    }

    /// Calculates the sums for a block of centres from `c` on.
    void prepare(qsizetype c) {
        const qsizetype end = std::min(n_ - window_ + 1, c + kBlock + 1); // of the windows
        if (end > summed_) {
            detail::windowSums(heights_.get() + summed_, end - summed_, window_, sums_.get() + summed_);
            summed_ = end;
        }
    }

    float at(qsizetype c) const { return sums_[index(c + 1)] - sums_[index(c - window_)]; }

    /// Whether a difference from `begin` up to, not including, `end` is beyond the threshold, on either side. Without
    /// branches, so that the compiler uses vectors.
    bool isAnyBeyond(float threshold, qsizetype begin, qsizetype end) const {
        int beyond = 0;
        for (qsizetype c = begin; c < end; ++c) {
            beyond += int(at(c) > threshold) | int(at(c) < -threshold); // NaN: 0
        }
        return beyond > 0;
    }

private:
    static size_t index(qsizetype i) { return static_cast<size_t>(i); }
    static std::unique_ptr<float[]> paddedBuffer(qsizetype count) {
        return std::make_unique_for_overwrite<float[]>(index(count + detail::kWindowPadding));
    }

    qsizetype n_;
    qsizetype window_;
    std::unique_ptr<float[]> heights_;
    std::unique_ptr<float[]> sums_; ///< of the window that begins at a point
    qsizetype summed_ = 0; ///< number of sums that are calculated
};

/// The first position from `begin` on whose neighbours see differences beyond the threshold with opposite signs, points
/// before `begin` being left out; -1 when there is none.
qsizetype findCut(LevelDifferences& differences, qsizetype begin, qsizetype n, qsizetype window, float threshold) {
    constexpr qsizetype kBlock = LevelDifferences::kBlock;
    float left = detail::kNaN; // none before the first
    float middle = detail::kNaN;
    const qsizetype end = n - window - 1; // of the centres that have a difference
    for (qsizetype start = begin + window; start < end; start += kBlock) {
        const qsizetype next = std::min(end, start + kBlock);
        differences.prepare(start);
        if (!differences.isAnyBeyond(threshold, start, next)) {
            left = middle = detail::kNaN; // a cut needs one on each side
            continue;
        }
        for (qsizetype c = start; c < next; ++c) {
            const float right = differences.at(c);
            // Deliberately the neighbours of c - 1, not c - 1 itself.
            if ((left > threshold && right < -threshold) || (left < -threshold && right > threshold)) { // NaN: false
                return c - 1;
            }
            left = middle;
            middle = right;
        }
    }
    return -1;
}

/// Whether the points from `begin` on are enough for a window on each side. A window of 0 sums up nothing: all
/// differences are 0.
bool hasTwoWindows(qsizetype begin, qsizetype n, qsizetype window) {
    return window >= 0 && n - begin >= 2 * window;
}

} // namespace

int KxProfile::calcCutPoint(int window, float threshold) {
    const qsizetype n = points.size();
    if (!hasTwoWindows(0, n, window)) {
        return -1;
    }
    LevelDifferences differences(points.constData(), n, window);
    return static_cast<int>(findCut(differences, 0, n, window, threshold));
}

int KxProfile::detectCutPoints(KxProfile& cutPoints, QList<int>& indices, int window, float threshold) {
    if (!cutPoints.isEmpty()) {
        cutPoints.clear(); // a profile that is its own result ends empty
    }
    const QList<KxPointXY>& source = points;
    const qsizetype n = source.size();
    // A profile that is in order already, as it should be, is searched without a copy.
    const bool isOrdered = detail::isSorted(source);
    std::optional<LevelDifferences> differences;
    KxProfile work;
    qsizetype offset = 0;
    for (qsizetype begin = 0; hasTwoWindows(begin, n, window);) {
        const KxPointXY* data = source.constData();
        qsizetype first = begin; // of the points that are searched
        qsizetype end = n;
        if (!isOrdered) {
            work.points = detail::copyOf(source.constData() + begin, n - begin);
            work.sort(KxSortAscending, KxSortAscending);
            data = work.points.constData();
            first = 0;
            end = work.size();
            differences.reset();
        }
        if (!differences) {
            differences.emplace(data, end, window);
        }
        const qsizetype cut = findCut(*differences, first, end, window, threshold);
        if (cut < 0) {
            break;
        }
        cutPoints.points.append(data[cut]);
        offset += cut - first;
        indices.append(static_cast<int>(offset));
        // Deliberately one behind the running sum, which is what makes later entries lag.
        begin = offset + 1;
    }
    return cutPoints.size();
}

} // namespace KxMath
