// The integral of y(x).
#include "profile/area.h"

#include "KxMath/KxProfile.h"

#include "profile/sampling.h"
#include "rounding/bounds.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace KxMath {

using detail::kNaN;
using detail::trapezoid;

namespace {

float trapezoidSum(const QList<KxPointXY>& points) {
    float sum = 0.0f;
    for (qsizetype i = 0; i + 1 < points.size(); ++i) {
        sum += trapezoid(points[i], points[i + 1]);
    }
    return sum;
}

/// The areas between neighbouring samples of a block; `before` is the sample before the first one. The rest is filled
/// with -0, which added to any sum gives the same bits (0 would make 0 of a sum that is -0).
void fillAreas(const detail::Sampler::Block& block, const std::optional<KxPointXY>& before,
               std::array<float, detail::Sampler::kBlockSize>& areas) {
    const auto point = [&](std::size_t i) { return KxPointXY(block.xs[i], block.ys[i]); };
    const std::size_t count = static_cast<std::size_t>(block.count);
    std::fill(areas.begin(), areas.end(), -0.0f);
    if (before && count > 0) {
        areas[0] = trapezoid(*before, point(0));
    }
    for (std::size_t i = 1; i < count; ++i) {
        areas[i] = trapezoid(point(i - 1), point(i));
    }
}

/// The area under the spline, from samples `step` apart; nothing when the step is too small to reach the end.
std::optional<float> sampledArea(const KxInterpolant& spline, float step) {
    detail::Sampler sampler(spline, step, kNaN, kNaN);
    detail::Sampler::Block block;
    std::array<float, detail::Sampler::kBlockSize> areas;
    areas.fill(-0.0f);
    std::optional<KxPointXY> last;
    float sum = 0.0f;
    // Two chains of additions depend on their own last result only: the running position and this sum. While the
    // sampler makes the positions of a block, the areas of the block before are added, so that each hides the other's
    // latency.
    const auto addPrevious = [&](int i) { sum += areas[static_cast<std::size_t>(i)]; };
    while (sampler.next(block, addPrevious)) {
        fillAreas(block, last, areas);
        if (block.count > 0) {
            const std::size_t at = static_cast<std::size_t>(block.count - 1);
            last.emplace(block.xs[at], block.ys[at]);
        }
    }
    std::for_each(areas.begin(), areas.end(), [&](float area) { sum += area; });
    return sampler.isComplete() ? std::optional<float>(sum) : std::nullopt;
}

/// The area under the Akima spline through `profile`, with a step that is halved until the area settles.
float refinedArea(KxProfile& profile) {
    constexpr float kFirstStep = 0.01f;
    constexpr float kTolerance = 0.005f;
    constexpr int kMaxHalvings = 20;
    profile.removeDuplicates();
    profile.sort(KxSortAscending, KxSortAscending);
    const KxInterpolant spline(profile, Akima);
    if (spline.count < 1) {
        // Where nothing can be sampled, the points themselves are summed.
        return trapezoidSum(profile.points);
    }
    float area = kNaN;
    float step = kFirstStep;
    for (int halvings = 0; halvings <= kMaxHalvings; ++halvings) {
        const std::optional<float> refined = sampledArea(spline, step);
        if (!refined) {
            break; // a smaller step does not reach the end either
        }
        const float difference = std::abs(area - *refined);
        area = *refined;
        if (difference <= kTolerance) { // NaN: false, as in the first round
            break;
        }
        step *= 0.5f;
    }
    return area;
}

} // namespace

float KxProfile::integral(int fromIndex, int toIndex, bool plain) {
    const float from = std::as_const(points)[fromIndex].x;
    const float to = std::as_const(points)[toIndex].x;
    KxProfile between(*this);
    between.trim(from, kNaN, to, kNaN);
    constexpr int kMaxPlainPoints = 4;
    if (plain || between.size() <= kMaxPlainPoints) {
        return trapezoidSum(between.points);
    }
    return refinedArea(between);
}

} // namespace KxMath
