// Steps of the level of a profile.
#include "KxMath/KxProfile.h"

#include "numeric/bounds.h"
#include "numeric/windowSums.h"
#include "profile/coordinates.h"

#include <algorithm>
#include <vector>

namespace KxMath {

namespace {

using detail::kWindowsAtOnce;

/// Differences of level about kWindowsAtOnce neighbouring centres: the sum of the heights in the window behind a centre
/// minus that before it; the centre itself is in neither.
class LevelDifferences {
public:
    explicit LevelDifferences(qsizetype window)
        : window_(window), heights_(static_cast<size_t>(2 * window + kWindowsAtOnce)) {}

    /// Calculates those about the centres from `c` on; the last ones are of no use where points are missing.
    void calculate(const KxPointXY* points, qsizetype n, qsizetype c) {
        const qsizetype begin = c - window_;
        detail::copyYs(points + begin, std::min(n - begin, static_cast<qsizetype>(heights_.size())), heights_.data());
        const detail::WindowSums before = detail::windowSums(heights_.data(), window_);
        const detail::WindowSums after = detail::windowSums(heights_.data() + window_ + 1, window_);
        for (size_t group = 0; group < differences_.size(); ++group) {
            differences_[group] = after[group] - before[group];
        }
    }

    /// Whether one of them is beyond the threshold, on either side.
    bool isAnyBeyond(float threshold) const {
        const detail::Float4 upper = {threshold, threshold, threshold, threshold};
        detail::Answers4 isBeyond{};
        for (const detail::Float4& difference : differences_) {
            isBeyond |= (difference > upper) | (difference < -upper);
        }
        return detail::anyOf(isBeyond);
    }

    float at(qsizetype i) const { return detail::sumAt(differences_, i); }

private:
    const qsizetype window_;
    std::vector<float> heights_;
    detail::WindowSums differences_;
};

/// The first position whose neighbours see differences beyond the threshold with opposite signs, -1 when there is none.
qsizetype findCut(const KxPointXY* points, qsizetype n, int window, float threshold) {
    const qsizetype w = window;
    if (w <= 0 || n < 2 * w) {
        return -1;
    }
    LevelDifferences differences(w);
    float left = detail::kNaN; // none before the first
    float middle = detail::kNaN;
    const qsizetype end = n - w - 1; // of the centres that have a difference
    for (qsizetype start = w; start < end; start += kWindowsAtOnce) {
        differences.calculate(points, n, start);
        if (!differences.isAnyBeyond(threshold)) {
            left = middle = detail::kNaN; // a cut needs one on each side
            continue;
        }
        for (qsizetype c = start; c < std::min(end, start + kWindowsAtOnce); ++c) {
            const float right = differences.at(c - start);
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

} // namespace

int KxProfile::calcCutPoint(int window, float threshold) {
    return static_cast<int>(findCut(points.constData(), points.size(), window, threshold));
}

int KxProfile::detectCutPoints(KxProfile& cutPoints, QList<int>& indices, int window, float threshold) {
    if (!cutPoints.isEmpty()) {
        cutPoints.clear(); // a profile that is its own result ends empty
    }
    // A profile that is in order already, as it should be, is searched where it stands.
    const QList<KxPointXY>& source = points;
    const bool isOrdered = detail::allNeighbours(source.constData(), source.size(), [](auto a, auto b) {
        return (a > b) == 0; // NaN never moves
    });
    KxProfile work;
    qsizetype offset = 0;
    for (qsizetype begin = 0; begin < source.size();) {
        const KxPointXY* data = source.constData() + begin;
        const qsizetype n = source.size() - begin;
        if (!isOrdered) {
            work.points = source.mid(begin);
            work.sort(KxSortAscending, KxSortAscending);
            data = work.points.constData();
        }
        const qsizetype cut = findCut(data, n, window, threshold);
        if (cut < 0) {
            break;
        }
        cutPoints.points.append(data[cut]);
        offset += cut;
        indices.append(static_cast<int>(offset));
        // Deliberately one behind the running sum, which is what makes later entries lag.
        begin = offset + 1;
    }
    return cutPoints.size();
}

} // namespace KxMath
