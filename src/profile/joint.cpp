// Finding the joint between two plates.
#include "KxMath/KxProfile.h"

#include "geometry/robustLine.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

namespace KxMath {

namespace {

using detail::RobustLine;
using Points = std::vector<KxPointXY>; // by rising x

constexpr std::size_t kMinPiecePoints = 5;
constexpr double kMinPlateLength = 3.25; // mm; the bottom of a gap of 3 mm is shorter
constexpr double kMinGap = 0.45; // mm

/// How a profile is sampled, estimated from its points.
struct Sampling {
    double spacing = 0.0; ///< median distance of neighbours in x
    double noise = 0.0; ///< standard deviation of the height difference of neighbours
    std::vector<double> slopeDefects; ///< of each point to the next: the difference that the local slope leaves

    double cutLimit() const { return std::max(0.15, 5.0 * noise); }
    double stepLimit() const { return std::max(0.2, 5.0 * noise); }
    double edgeLimit() const { return std::max(0.05, 3.0 * noise); }
    /// Whether points are missing, more than a single one.
    bool isGap(double width) const { return width >= kMinGap && width > 2.5 * spacing; }
};

Points orderedPoints(const QList<KxPointXY>& list) {
    Points points;
    points.reserve(static_cast<std::size_t>(list.size()));
    for (const KxPointXY& p : list) {
        if (std::isfinite(p.x) && std::isfinite(p.y)) {
            points.push_back(p);
        }
    }
    const auto isLeft = [](const KxPointXY& a, const KxPointXY& b) { return a.x < b.x; };
    if (!std::is_sorted(points.begin(), points.end(), isLeft)) {
        std::stable_sort(points.begin(), points.end(), isLeft);
    }
    return points;
}

double widthBetween(const KxPointXY& a, const KxPointXY& b) {
    return static_cast<double>(b.x) - static_cast<double>(a.x);
}

double riseBetween(const KxPointXY& a, const KxPointXY& b) {
    return static_cast<double>(b.y) - static_cast<double>(a.y);
}

/// The median slope between the neighbours about point `i`; 0 where all share one x.
double localSlope(const Points& points, std::size_t i) {
    constexpr std::size_t kHalfWindow = 15;
    std::vector<double> slopes;
    const std::size_t end = std::min(i + kHalfWindow + 1, points.size() - 1);
    for (std::size_t k = i - std::min(i, kHalfWindow); k < end; ++k) {
        const double width = widthBetween(points[k], points[k + 1]);
        if (width > 0.0) {
            slopes.push_back(riseBetween(points[k], points[k + 1]) / width);
        }
    }
    return slopes.empty() ? 0.0 : detail::medianOf(slopes);
}

Sampling sampled(const Points& points) {
    constexpr double kNormal = 1.4826; // standard deviation by median absolute deviation
    Sampling sampling;
    std::vector<double> widths;
    std::vector<double> magnitudes;
    for (std::size_t i = 0; i + 1 < points.size(); ++i) {
        const double width = widthBetween(points[i], points[i + 1]);
        const double defect = riseBetween(points[i], points[i + 1]) - localSlope(points, i) * width;
        sampling.slopeDefects.push_back(defect);
        magnitudes.push_back(std::abs(defect));
        widths.push_back(width);
    }
    sampling.spacing = detail::medianOf(widths);
    sampling.noise = kNormal * detail::medianOf(magnitudes);
    return sampling;
}

/// Points of one plate, by their index.
using Piece = std::vector<std::size_t>;

/// Cuts the points at jumps and gaps. Short pieces are left out: spikes, the bottom of a gap, what spikes cut off.
std::vector<Piece> cutIntoPieces(const Points& points, const Sampling& sampling) {
    std::vector<Piece> pieces;
    Piece piece;
    for (std::size_t i = 0; i < points.size(); ++i) {
        piece.push_back(i);
        const bool isEnd = i + 1 == points.size() || std::abs(sampling.slopeDefects[i]) > sampling.cutLimit() ||
                           sampling.isGap(widthBetween(points[i], points[i + 1]));
        if (isEnd) {
            if (piece.size() >= kMinPiecePoints) {
                pieces.push_back(piece);
            }
            piece.clear();
        }
    }
    return pieces;
}

/// The line through `part`, with the slope of `longer` where the points are too few for one of their own.
RobustLine lineThrough(const Points& part, const RobustLine& longer) {
    constexpr std::size_t kMinPointsForSlope = 16;
    if (part.size() >= kMinPointsForSlope) {
        return detail::repeatedMedianLine(part);
    }
    std::vector<double> heights;
    for (const KxPointXY& p : part) {
        heights.push_back(longer.heightOf(p));
    }
    return {longer.k, longer.b + detail::medianOf(heights)};
}

/// What lies between two neighbouring pieces.
class Seam {
public:
    Seam(const Points& points, const Piece& left, const Piece& right, const Sampling& sampling)
        : points_(points), sampling_(sampling) {
        fitLines(left, right);
        findEdges(left, right);
        gap_ = widthBetween(points[leftEdge_], points[rightEdge_]);
        const double middle = static_cast<double>(points[leftEdge_].x) + 0.5 * gap_;
        step_ = std::abs(rightLine_.y(middle) - leftLine_.y(middle));
    }

    bool isJoint() const { return sampling_.isGap(gap_) || step_ > sampling_.stepLimit(); }

    /// Gap or step as a multiple of its limit, to compare joints of either kind.
    double strength() const { return std::max(gap_ / kMinGap, step_ / sampling_.stepLimit()); }

    /// The edges of the plates at the height of the lines.
    std::pair<KxPointXY, KxPointXY> edges() const {
        return {onLine(leftLine_, points_[leftEdge_].x), onLine(rightLine_, points_[rightEdge_].x)};
    }

private:
    void fitLines(const Piece& left, const Piece& right) {
        constexpr std::size_t kEndPoints = 64;
        Points leftEnd;
        for (std::size_t i = left.size() - std::min(left.size(), kEndPoints); i < left.size(); ++i) {
            leftEnd.push_back(points_[left[i]]);
        }
        Points rightEnd;
        for (std::size_t i = 0; i < std::min(right.size(), kEndPoints); ++i) {
            rightEnd.push_back(points_[right[i]]);
        }
        const RobustLine longer = detail::repeatedMedianLine(leftEnd.size() >= rightEnd.size() ? leftEnd : rightEnd);
        leftLine_ = lineThrough(leftEnd, longer);
        rightLine_ = lineThrough(rightEnd, longer);
    }

    /// The outermost points that lie on the lines, those included that spikes have cut off from their piece.
    void findEdges(const Piece& left, const Piece& right) {
        const auto isOnLeft = [&](std::size_t i) { return isOn(leftLine_, i); };
        const auto isOnRight = [&](std::size_t i) { return isOn(rightLine_, i); };
        const auto lastOnLeft = std::find_if(left.rbegin(), left.rend(), isOnLeft);
        const auto firstOnRight = std::find_if(right.begin(), right.end(), isOnRight);
        leftEdge_ = lastOnLeft == left.rend() ? left.back() : *lastOnLeft;
        rightEdge_ = firstOnRight == right.end() ? right.front() : *firstOnRight;
        for (std::size_t i = leftEdge_ + 1; i < right.front(); ++i) {
            if (isOnLeft(i) && !sampling_.isGap(widthBetween(points_[leftEdge_], points_[i]))) {
                leftEdge_ = i;
            }
        }
        for (std::size_t i = rightEdge_ - 1; i > leftEdge_; --i) {
            if (isOnRight(i) && !sampling_.isGap(widthBetween(points_[i], points_[rightEdge_]))) {
                rightEdge_ = i;
            }
        }
    }

    bool isOn(const RobustLine& line, std::size_t i) const {
        return std::abs(line.heightOf(points_[i])) <= sampling_.edgeLimit();
    }

    static KxPointXY onLine(const RobustLine& line, float x) {
        return KxPointXY(x, static_cast<float>(line.y(static_cast<double>(x))));
    }

    const Points& points_;
    const Sampling& sampling_;
    RobustLine leftLine_;
    RobustLine rightLine_;
    std::size_t leftEdge_ = 0;
    std::size_t rightEdge_ = 0;
    double gap_ = 0.0;
    double step_ = 0.0;
};

/// Joins pieces that belong to one plate. What is shorter than a plate is left out.
std::vector<Piece> joinIntoPlates(const Points& points, const std::vector<Piece>& pieces, const Sampling& sampling) {
    std::vector<Piece> plates;
    for (const Piece& piece : pieces) {
        if (plates.empty() || Seam(points, plates.back(), piece, sampling).isJoint()) {
            plates.push_back(piece);
        } else {
            plates.back().insert(plates.back().end(), piece.begin(), piece.end());
        }
    }
    std::erase_if(plates, [&](const Piece& plate) {
        return widthBetween(points[plate.front()], points[plate.back()]) < kMinPlateLength;
    });
    return plates;
}

} // namespace

bool KxProfile::detectJoint(KxPointCloud<KxPointXY>& joint) {
    const Points ordered = orderedPoints(points);
    if (ordered.size() < 2 * kMinPiecePoints) {
        return false;
    }
    const Sampling sampling = sampled(ordered);
    const std::vector<Piece> plates = joinIntoPlates(ordered, cutIntoPieces(ordered, sampling), sampling);
    std::optional<std::pair<KxPointXY, KxPointXY>> edges;
    double strongest = 0.0;
    for (std::size_t i = 0; i + 1 < plates.size(); ++i) {
        const Seam seam(ordered, plates[i], plates[i + 1], sampling);
        if (seam.isJoint() && seam.strength() > strongest) {
            strongest = seam.strength();
            edges.emplace(seam.edges());
        }
    }
    if (!edges) {
        return false;
    }
    joint.clear();
    joint.points.append(edges->first);
    joint.points.append(edges->second);
    return true;
}

} // namespace KxMath
