// Where along the pass the axle of a wheel is over the laser.
#include "inspect/train/axlePlace.h"

#include "inspect/fitting/leastSquares.h"
#include "inspect/fitting/median.h"

#include <algorithm>
#include <cmath>

namespace KxInspect::detail {

namespace {

/// Of the ring. Its arc is less deep than a parabola by 0.6 mm 150 mm from the axle: a radius that is a
/// fifth off leaves 0.1 mm of that, alike on both sides of the axle.
constexpr double kRadius = 450.0; // mm
constexpr int kFewest = 5;
/// The ring of the flange that is looked for: its distance behind the back face, and what is around it, mm. The back of a
/// flange is an arc of 20.5 mm (EN 13715), on which the face has turned by 36 degrees there.
constexpr double kRing = 4.0;
constexpr double kAround = 2.0;
constexpr double kMostOfEnds = 0.8; // what may be missing at both ends of that

/// How far down a profile shows the ring; nothing where it does not show all around it.
std::optional<double> ringIn(const std::vector<SectionPoint>& section) {
    constexpr double kFaceWidth = 1.0; // mm to both sides
    constexpr int kFewestPoints = 4;
    std::vector<double> face;
    for (const SectionPoint& p : section) {
        if (std::abs(p.across) <= kFaceWidth) {
            face.push_back(p.down);
        }
    }
    const double middle = median(face); // NaN where there is none
    double from = kRing;
    double to = kRing;
    LeastSquares3 sums; // a straight line; the third unknown is held at 0
    sums.add({0.0, 0.0, 1.0}, 0.0);
    int count = 0;
    for (const SectionPoint& p : section) {
        const double t = p.across - kRing;
        if (p.down > middle && std::abs(t) <= kAround) { // NaN: false
            sums.add({1.0, t, 0.0}, p.down);
            from = std::min(from, p.across);
            to = std::max(to, p.across);
            ++count;
        }
    }
    const bool isAround = from <= kRing - kAround + kMostOfEnds && to >= kRing + kAround - kMostOfEnds;
    const auto line = sums.solve();
    return count >= kFewestPoints && isAround && line ? std::optional((*line)[0]) : std::nullopt;
}

std::vector<ProfileTip> ringsOf(const std::vector<PointList>& profiles, const std::vector<double>& places,
                                const KxMath::KxLine& reference, const RobustLine& face, double towardsRail) {
    std::vector<ProfileTip> rings;
    for (std::size_t i = 0; i < profiles.size(); ++i) {
        std::vector<SectionPoint> section = sectionOf(profiles[i], reference, towardsRail);
        for (SectionPoint& p : section) {
            p.across -= face.at(places[i]);
        }
        if (const auto down = ringIn(section)) {
            rings.push_back({places[i], *down});
        }
    }
    return rings;
}

/// The arc of the ring: it lies `lowest` at `place` and rises by `bend` times the square of what a profile is away, as a
/// parabola would.
struct Arc {
    double place;
    double lowest;
    double bend;

    double squaredAway(double at) const { return bend * (at - place) * (at - place); }
    /// What the circle rises more than the parabola.
    double excess(double at) const {
        const double lift = squaredAway(at); // of the parabola, d^2 / 2 R
        const double left = 1.0 - 2.0 * lift / kRadius;
        return left > 0.0 ? kRadius * (1.0 - std::sqrt(left)) - lift : 0.0;
    }
    double off(const ProfileTip& tip) const { return tip.down + excess(tip.place) - lowest + squaredAway(tip.place); }
};

std::optional<Arc> fitArc(const std::vector<ProfileTip>& tips, const Arc& before) {
    const double unit = std::max((tips.back().place - tips.front().place) / 2.0, 1e-9);
    LeastSquares3 parabola;
    for (const ProfileTip& tip : tips) {
        const double t = (tip.place - before.place) / unit;
        parabola.add({1.0, t, t * t}, tip.down + before.excess(tip.place));
    }
    const auto c = parabola.solve();
    if (!c || (*c)[2] >= 0.0) {
        return {};
    }
    const double t = -(*c)[1] / (2.0 * (*c)[2]);
    return Arc{before.place + unit * t, (*c)[0] + (*c)[1] * t / 2.0, -(*c)[2] / (unit * unit)};
}

/// The standard error of the vertex of a parabola through tips that are `scatter` off it.
double vertexError(const std::vector<ProfileTip>& tips, const Arc& arc, double scatter) {
    const auto count = static_cast<double>(tips.size());
    double meanT = 0.0;
    double meanU = 0.0;
    for (const ProfileTip& tip : tips) {
        const double t = tip.place - arc.place;
        meanT += t / count;
        meanU += t * t / count;
    }
    double tt = 0.0;
    double tu = 0.0;
    double uu = 0.0;
    for (const ProfileTip& tip : tips) {
        const double t = tip.place - arc.place - meanT;
        const double u = (tip.place - arc.place) * (tip.place - arc.place) - meanU;
        tt += t * t;
        tu += t * u;
        uu += u * u;
    }
    return scatter / std::sqrt(tt - tu * tu / uu) / (2.0 * arc.bend);
}

/// The vertex of the arc through the rings, without those that are far off it. `scatter` receives how far the others are.
std::optional<AxlePlace> vertexOf(const std::vector<ProfileTip>& all, double& scatter) {
    constexpr int kRounds = 8;
    constexpr double kFar = 4.5 * 1.4826; // times the median deviation
    constexpr double kLeastFar = 0.02; // mm
    std::vector<ProfileTip> tips = all;
    std::optional<Arc> arc;
    for (int round = 0; round < kRounds; ++round) {
        if (tips.size() < kFewest) {
            return {};
        }
        arc = fitArc(tips, arc.value_or(Arc{tips[tips.size() / 2].place, 0.0, 0.0}));
        if (!arc) {
            return {};
        }
        std::vector<double> offs;
        offs.reserve(all.size());
        for (const ProfileTip& tip : all) {
            offs.push_back(std::abs(arc->off(tip)));
        }
        const double limit = std::max(kFar * median(offs), kLeastFar);
        tips.clear();
        std::copy_if(all.begin(), all.end(), std::back_inserter(tips),
                     [&](const ProfileTip& tip) { return std::abs(arc->off(tip)) <= limit; });
    }
    double squares = 0.0;
    for (const ProfileTip& tip : tips) {
        squares += arc->off(tip) * arc->off(tip);
    }
    scatter = std::sqrt(squares / std::max(static_cast<double>(tips.size()) - 3.0, 1.0));
    const double error = vertexError(tips, *arc, scatter);
    return std::isfinite(error) ? std::optional(AxlePlace{arc->place, error, true}) : std::nullopt;
}

} // namespace

AxlePlace findAxle(const std::vector<PointList>& profiles, const std::vector<double>& places,
                   const KxMath::KxLine& reference, const std::optional<RobustLine>& face) {
    constexpr double kMostScatter = 0.5; // mm; the ring is round, other things are not
    const double range = places.back() - places.front();
    const AxlePlace middle = {(places.front() + places.back()) / 2.0, range / 8.0, false};
    AxlePlace best = middle;
    const double towardsRail = face ? directionOfRail(profiles, reference) : 0.0;
    double least = kMostScatter;
    for (const double direction : {1.0, -1.0}) { // both where the profiles do not tell
        if (!face || direction == -towardsRail) {
            continue;
        }
        double scatter = 0.0;
        const auto axle = vertexOf(ringsOf(profiles, places, reference, *face, direction), scatter);
        // The vertex of a part of the arc that is seen from one side only is far off and uncertain.
        const bool isNear = axle && std::abs(axle->place - middle.place) <= range && axle->error <= middle.error;
        if (isNear && scatter < least) {
            best = *axle;
            least = scatter;
        }
    }
    return best;
}

} // namespace KxInspect::detail
