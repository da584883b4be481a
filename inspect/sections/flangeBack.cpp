// Where the flange back of a wheel's contour is.
#include "inspect/sections/flangeBack.h"

#include "inspect/fitting/lookUp.h"
#include "inspect/fitting/median.h"
#include "inspect/fitting/robustLine.h"
#include "inspect/sections/runningSurface.h"

#include <KxInspect/Wheel.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace KxInspect::detail {

namespace {

/// Where gauges have the flange back: at the origin, or the tape circle there.
constexpr std::array<float, 2> kDatums = {0.0f, -kTapeCircleX};

constexpr float kBelowTip =
    20.0f; // where the back face is flat: the circle behind the tip of S1002 ends 18.5 mm below it

/// The mean x of the flat back face, where a contour has 3 mm of it and more. Unlike the smallest x it does not depend on how large the
/// noise is.
std::optional<float> flatFace(const std::vector<Point>& wheel, std::vector<Point>::const_iterator tip, float first) {
    constexpr float kLeastHeight = 3.0f;
    constexpr float kWidth = 2.0f;
    double sum = 0.0;
    int count = 0;
    float deepest = tip->y - kBelowTip;
    for (auto p = wheel.begin(); p != tip; ++p) {
        if (p->y <= tip->y - kBelowTip) {
            sum += static_cast<double>(p->x);
            ++count;
            deepest = std::min(deepest, p->y);
            if (p->x > first + kWidth) {
                return {}; // leans
            }
        }
    }
    const bool isHighEnough = tip->y - kBelowTip - deepest >= kLeastHeight;
    return isHighEnough && count > 1 ? std::optional(static_cast<float>(sum / count)) : std::nullopt;
}

/// The steep part of the back that a contour begins with; empty when it begins elsewhere.
std::optional<float> seenBack(const std::vector<Point>& wheel) {
    constexpr float kWidth = 0.6f; // the circle behind the tip of S1002 (20.5 mm) rises 4.2 mm in it from the back on,
    constexpr float kLeastHeight = 3.0f; // and less than this from 0.2 mm behind the back on
    constexpr float kFace = 8.0f; // higher than that circle: a part of the flat back face is there
    const auto tip = std::max_element(wheel.begin(), wheel.end(), isHigher);
    const float first = std::min_element(wheel.begin(), tip + 1, isLeft)->x;
    std::vector<float> places;
    float low = std::numeric_limits<float>::infinity();
    float high = -low;
    for (auto p = wheel.begin(); p <= tip; ++p) {
        if (p->x <= first + kWidth) {
            places.push_back(p->x);
            low = std::min(low, p->y);
            high = std::max(high, p->y);
        }
    }
    if (!(high - low >= kLeastHeight)) {
        return {};
    }
    if (const std::optional<float> face = flatFace(wheel, tip, first)) {
        return face;
    }
    return high - low >= kFace ? median(std::move(places)) : first;
}

} // namespace

std::optional<FlangeBack> findFlangeBack(const std::vector<Point>& wheel) {
    constexpr float kNear = 0.5f;
    constexpr std::array<float, 2> kTips = {8.0f, 26.0f}; // from the back: 15 mm when new
    if (wheel.empty()) {
        return {};
    }
    const std::optional<float> seen = seenBack(wheel);
    const float tip = std::max_element(wheel.begin(), wheel.end(), isHigher)->x;
    for (const float datum : kDatums) {
        if (seen ? std::abs(*seen - datum) <= kNear : tip - datum >= kTips[0] && tip - datum <= kTips[1]) {
            return FlangeBack{datum, seen.has_value()};
        }
    }
    return seen ? std::optional(FlangeBack{*seen, true}) : std::nullopt;
}

bool isBackMeasured(const std::vector<Point>& wheel) {
    const std::optional<FlangeBack> back = findFlangeBack(wheel);
    return back && back->isSeen && std::find(kDatums.begin(), kDatums.end(), back->x) == kDatums.end();
}

std::optional<Lean> leanOfBack(const std::vector<Point>& wheel) {
    constexpr float kLeastHeight = 5.0f;
    constexpr std::size_t kMost = 200; // are enough, and comparing all pairs takes the square of it
    const auto tip = std::max_element(wheel.begin(), wheel.end(), isHigher);
    std::vector<Sample> face;
    std::for_each(wheel.begin(), tip, [&](const Point& p) {
        if (p.y <= tip->y - kBelowTip) {
            face.push_back({static_cast<double>(p.y), static_cast<double>(p.x)});
        }
    });
    const auto isLower = [](const Sample& a, const Sample& b) { return a.place < b.place; };
    std::sort(face.begin(), face.end(), isLower);
    if (face.empty() || face.back().place - face.front().place < static_cast<double>(kLeastHeight)) {
        return {};
    }
    const std::size_t step = face.size() / kMost + 1;
    std::vector<Sample> samples;
    samples.reserve(kMost);
    for (std::size_t i = 0; i < face.size(); i += step) {
        samples.push_back(face[i]);
    }
    const std::optional<RobustLine> line = fitRobustLine(samples);
    return line ? std::optional(Lean{line->slope, line->slopeError()}) : std::nullopt;
}

void beginAtFlangeBack(std::vector<Point>& wheel, float x) {
    if (wheel.empty()) {
        return;
    }
    std::vector<Point> kept = partFrom(wheel, x, SectionKind::Wheel);
    if (!kept.empty() && std::min_element(kept.begin(), kept.end(), isLeft)->x > x) {
        kept.insert(kept.begin(), Point{x, kept.front().y});
    }
    wheel = std::move(kept);
}

float flangeThickness(const std::vector<Point>& surface) {
    constexpr float kAboveTapeCircle = 10.0f;
    if (surface.empty()) {
        return std::numeric_limits<float>::quiet_NaN();
    }
    const float back = surface.front().x;
    const float level =
        static_cast<float>(valueAt(surface, static_cast<double>(back + kTapeCircleX))) + kAboveTapeCircle;
    const auto isDeep = [level](const Point& p) { return p.y >= level; }; // NaN: false
    const auto last = std::find_if(surface.rbegin(), surface.rend(), isDeep);
    return last == surface.rend() ? std::numeric_limits<float>::quiet_NaN() : last->x - back;
}

} // namespace KxInspect::detail
