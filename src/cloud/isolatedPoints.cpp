// Points that stand apart from all others.
#include "cloud/isolatedPoints.h"

#include "numeric/bounds.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <tuple>

namespace KxMath::detail {

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// The definition itself, for few members.
std::vector<int> isolatedByAllPairs(const QList<KxPointXYZ>& points, const std::vector<int>& members, float maxDist) {
    std::vector<int> isolated;
    for (const int p : members) {
        float nearest = kNaN;
        for (const int q : members) {
            if (p != q) {
                const float distance = KxPointXYZ::calcDistance(points[p], points[q]);
                if (std::isnan(nearest) || distance < nearest) {
                    nearest = distance;
                }
            }
        }
        if (nearest > maxDist) { // NaN: false
            isolated.push_back(p);
        }
    }
    return isolated;
}

/// A point in its cube of a grid. The numbers of a cube are whole doubles, since a wide cloud with a small distance has
/// more cubes than integers count.
struct GridPoint {
    double x;
    double y;
    double z;
    int position;
    bool hasNeighbour = false;

    std::tuple<double, double, double> cube() const { return {x, y, z}; }
};

/// The points in cubes of a bit more than half of `maxDist`, in lexicographic order of their cubes. Points in one cube
/// are neighbours (but for rounding), and neighbours are at most two cubes apart: where the cubes are so many that the
/// doubles round, single-precision coordinates are equal or further apart than neighbours.
std::vector<GridPoint> gridPoints(const QList<KxPointXYZ>& points, const std::vector<int>& members, float maxDist) {
    constexpr double kRounding = 1.000001; // more than the error of a single-precision distance
    constexpr double kVanishing = 3e-23; // up to here a square may be 0 in single precision
    constexpr double kOverflowing = 1.9e19; // from here on a square is infinite
    const double reach = std::clamp(static_cast<double>(maxDist) * kRounding, kVanishing, kOverflowing);
    const double side = 0.5 * reach;
    const auto number = [side](float v) { return std::floor(static_cast<double>(v) / side); };
    std::vector<GridPoint> grid;
    grid.reserve(members.size());
    for (const int position : members) {
        const KxPointXYZ& p = points[position];
        grid.push_back({number(p.x), number(p.y), number(p.z), position});
    }
    std::sort(grid.begin(), grid.end(), [](const GridPoint& a, const GridPoint& b) { return a.cube() < b.cube(); });
    return grid;
}

class NeighbourSearch {
public:
    NeighbourSearch(const QList<KxPointXYZ>& points, const std::vector<int>& members, float maxDist)
        : points_(points), maxDist_(maxDist), grid_(gridPoints(points, members, maxDist)) {
        settleWithinCubes();
        for (int dx = -2; dx <= 2; ++dx) {
            for (int dy = -2; dy <= 2; ++dy) {
                settleWithRow(dx, dy);
            }
        }
    }

    void appendIsolated(std::vector<int>& isolated) const {
        for (const GridPoint& p : grid_) {
            if (!p.hasNeighbour) {
                isolated.push_back(p.position);
            }
        }
    }

private:
    bool areNeighbours(const GridPoint& p, const GridPoint& q) const {
        return KxPointXYZ::calcDistance(points_[p.position], points_[q.position]) <= maxDist_;
    }

    /// Points with company in their cube. Afterwards nearly all that have no neighbour yet are alone in theirs, so that
    /// a crowded cube is looked through by a limited number of points only.
    void settleWithinCubes() {
        for (auto begin = grid_.begin(); begin != grid_.end();) {
            const auto isOther = [&](const GridPoint& p) { return p.cube() != begin->cube(); };
            const auto end = std::find_if(begin, grid_.end(), isOther);
            for (auto p = begin; p != end; ++p) {
                p->hasNeighbour = std::any_of(
                    begin, end, [&](const GridPoint& q) { return q.position != p->position && areNeighbours(*p, q); });
            }
            begin = end;
        }
    }

    /// Looks for neighbours in the row of five cubes along z that stands `dx` and `dy` cubes away. The rows come in
    /// the order of the points, so that one pass finds them all.
    void settleWithRow(int dx, int dy) {
        auto row = grid_.begin();
        for (GridPoint& p : grid_) {
            if (p.hasNeighbour) {
                continue;
            }
            const double x = p.x + dx;
            const double y = p.y + dy;
            const std::tuple<double, double, double> first{x, y, p.z - 2.0};
            while (row != grid_.end() && row->cube() < first) {
                ++row;
            }
            for (auto q = row; q != grid_.end() && q->x == x && q->y == y && q->z <= p.z + 2.0; ++q) {
                if (q->position != p.position && areNeighbours(p, *q)) {
                    p.hasNeighbour = true;
                    break;
                }
            }
        }
    }

    const QList<KxPointXYZ>& points_;
    const float maxDist_;
    std::vector<GridPoint> grid_;
};

/// Which coordinates are infinite, and with which sign: one of 27 kinds, three digits of base 3.
int kindOfInfinity(const KxPointXYZ& p) {
    const auto digit = [](float v) { return v == kInfinity ? 2 : v == -kInfinity ? 1 : 0; };
    return digit(p.x) + 3 * digit(p.y) + 9 * digit(p.z);
}

/// Whether two points of these kinds, not both finite, have a distance: it is NaN where an infinity meets its like.
bool haveDistance(int a, int b) {
    for (; a != 0 && b != 0; a /= 3, b /= 3) {
        if (a % 3 != 0 && a % 3 == b % 3) {
            return false;
        }
    }
    return true;
}

} // namespace

std::vector<int> isolatedPoints(const QList<KxPointXYZ>& points, const std::vector<int>& members, float maxDist) {
    constexpr std::size_t kFewMembers = 32;
    if (members.size() < 2 || !(maxDist < kInfinity)) { // NaN: nothing is further apart
        return {};
    }
    if (members.size() <= kFewMembers) {
        return isolatedByAllPairs(points, members, maxDist);
    }
    std::vector<int> finite;
    std::array<bool, 27> isPresent{};
    for (const int position : members) {
        const int kind = kindOfInfinity(points[position]);
        isPresent[static_cast<std::size_t>(kind)] = true;
        if (kind == 0) {
            finite.push_back(position);
        }
    }
    std::vector<int> isolated;
    if (maxDist >= 0.0f) {
        NeighbourSearch(points, finite, maxDist).appendIsolated(isolated);
    } else {
        isolated = finite;
    }
    // A point at infinity is infinitely far from every point to which it has a distance at all.
    for (const int position : members) {
        const int kind = kindOfInfinity(points[position]);
        bool hasDistance = false;
        for (int other = 0; kind != 0 && other < 27; ++other) {
            hasDistance = hasDistance || (isPresent[static_cast<std::size_t>(other)] && haveDistance(kind, other));
        }
        if (hasDistance) {
            isolated.push_back(position);
        }
    }
    return isolated;
}

} // namespace KxMath::detail
