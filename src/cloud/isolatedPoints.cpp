// Points without a neighbour.
#include "cloud/isolatedPoints.h"

#include "geometry/squareOfDistance.h"
#include "rounding/largestSquare.h"
#include "simd/float4.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <tuple>

namespace KxMath::detail {

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

/// Compares all pairs, for few members with finite coordinates. On vectors that is quicker than any index.
class AllPairs {
public:
    static constexpr std::size_t kMaxMembers = 256;

    /// @param members at most kMaxMembers
    AllPairs(const std::vector<NumberedPoint>& members, float maxDist)
        : members_(members), maxSquare_(largestSquare(maxDist)) {
        std::size_t i = 0;
        for (const NumberedPoint& member : members) {
            x_[i] = member.x;
            y_[i] = member.y;
            z_[i++] = member.z;
        }
        for (; i % 4 != 0; ++i) { // padding: a point at infinity is nobody's neighbour
            x_[i] = y_[i] = z_[i] = kInfinity;
        }
    }

    void appendIsolated(std::vector<std::uint32_t>& isolated) const {
        for (std::size_t i = 0; i < members_.size(); ++i) {
            if (!hasNeighbour(i)) {
                isolated.push_back(members_[i].number);
            }
        }
    }

private:
    bool hasNeighbour(std::size_t i) const {
        for (std::size_t four = 0; four < members_.size(); four += 4) {
            Mask4 areNear = areNeighbours(i, four);
            if (four == i / 4 * 4) {
                areNear[i % 4] = 0; // the member itself
            }
            if (anyOf(areNear)) {
                return true;
            }
        }
        return false;
    }

    Mask4 areNeighbours(std::size_t i, std::size_t four) const {
        const Float4 dx = x_[i] - loadFloat4(&x_[four]);
        const Float4 dy = y_[i] - loadFloat4(&y_[four]);
        const Float4 dz = z_[i] - loadFloat4(&z_[four]);
        return squareOfDistance(dx, dy, dz) <= maxSquare_; // NaN: false
    }

    using Coordinates = std::array<float, kMaxMembers>;

    const std::vector<NumberedPoint>& members_;
    const float maxSquare_;
    Coordinates x_;
    Coordinates y_;
    Coordinates z_;
};

/// A point in its cube of a grid. The numbers of a cube are whole doubles, since a wide cloud with a small distance has
/// more cubes than integers count.
struct GridPoint {
    double x;
    double y;
    double z;
    const NumberedPoint* member;
    bool hasNeighbour = false;

    std::tuple<double, double, double> cube() const { return {x, y, z}; }
};

/// The points in cubes of a bit more than half of `maxDist`, in lexicographic order of their cubes. Points in one cube
/// are neighbours (but for rounding), and neighbours are at most two cubes apart: where the cubes are so many that the
/// doubles round, single-precision coordinates are equal or further apart than neighbours.
std::vector<GridPoint> gridPoints(const std::vector<NumberedPoint>& members, float maxDist) {
    constexpr double kRounding = 1.000001; // more than the error of a single-precision distance
    constexpr double kVanishing = 3e-23; // up to here a square may be 0 in single precision
    constexpr double kOverflowing = 1.9e19; // from here on a square is infinite
    const double reach = std::clamp(static_cast<double>(maxDist) * kRounding, kVanishing, kOverflowing);
    const double side = 0.5 * reach;
    const auto number = [side](float v) { return std::floor(static_cast<double>(v) / side); };
    std::vector<GridPoint> grid;
    grid.reserve(members.size());
    for (const NumberedPoint& member : members) {
        grid.push_back({number(member.x), number(member.y), number(member.z), &member});
    }
    std::sort(grid.begin(), grid.end(), [](const GridPoint& a, const GridPoint& b) { return a.cube() < b.cube(); });
    return grid;
}

class NeighbourSearch {
public:
    /// @param maxDist at least 0
    NeighbourSearch(const std::vector<NumberedPoint>& members, float maxDist)
        : maxSquare_(largestSquare(maxDist)), grid_(gridPoints(members, maxDist)) {
        settleWithinCubes();
        for (int dx = -2; dx <= 2; ++dx) {
            for (int dy = -2; dy <= 2; ++dy) {
                settleWithRow(dx, dy);
            }
        }
    }

    void appendIsolated(std::vector<std::uint32_t>& isolated) const {
        for (const GridPoint& p : grid_) {
            if (!p.hasNeighbour) {
                isolated.push_back(p.member->number);
            }
        }
    }

private:
    bool areNeighbours(const GridPoint& p, const GridPoint& q) const {
        const NumberedPoint& a = *p.member;
        const NumberedPoint& b = *q.member;
        return squareOfDistance(a.x - b.x, a.y - b.y, a.z - b.z) <= maxSquare_;
    }

    /// Finds the points with a neighbour in their own cube. Nearly all others are then alone in theirs, so that only a
    /// limited number of points searches a crowded cube.
    void settleWithinCubes() {
        for (auto begin = grid_.begin(); begin != grid_.end();) {
            const auto isOther = [&](const GridPoint& p) { return p.cube() != begin->cube(); };
            const auto end = std::find_if(begin, grid_.end(), isOther);
            for (auto p = begin; p != end; ++p) {
                p->hasNeighbour = std::any_of(
                    begin, end, [&](const GridPoint& q) { return q.member != p->member && areNeighbours(*p, q); });
            }
            begin = end;
        }
    }

    /// Looks for neighbours in the row of five cubes along z that is `dx` and `dy` cubes away. The rows come in the
    /// order of the points, so that one pass over the grid serves all of them.
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
                if (q->member != p.member && areNeighbours(p, *q)) {
                    p.hasNeighbour = true;
                    break;
                }
            }
        }
    }

    const float maxSquare_;
    std::vector<GridPoint> grid_;
};

/// Which coordinates are infinite, and with which sign: three digits of base 3.
int kindOfInfinity(const NumberedPoint& p) {
    const auto digit = [](float v) { return v == kInfinity ? 2 : v == -kInfinity ? 1 : 0; };
    return digit(p.x) + 3 * digit(p.y) + 9 * digit(p.z);
}

/// Whether two points of these kinds, not both finite, have a distance: it is NaN where both have the same infinity.
bool haveDistance(int a, int b) {
    for (; a != 0 && b != 0; a /= 3, b /= 3) {
        if (a % 3 != 0 && a % 3 == b % 3) {
            return false;
        }
    }
    return true;
}

/// Appends the isolated ones of `members`, all finite, which have at least one distance each.
void appendIsolatedFinite(std::vector<std::uint32_t>& isolated, const std::vector<NumberedPoint>& members,
                          float maxDist) {
    if (members.size() <= AllPairs::kMaxMembers) {
        AllPairs(members, maxDist).appendIsolated(isolated);
    } else if (maxDist >= 0.0f) {
        NeighbourSearch(members, maxDist).appendIsolated(isolated);
    } else {
        for (const NumberedPoint& member : members) {
            isolated.push_back(member.number);
        }
    }
}

bool isFinite(const NumberedPoint& member) {
    return std::isfinite(member.x) && std::isfinite(member.y) && std::isfinite(member.z);
}

} // namespace

void appendIsolated(std::vector<std::uint32_t>& isolated, const std::vector<NumberedPoint>& members, float maxDist) {
    if (members.size() < 2 || !(maxDist < kInfinity)) { // NaN: nothing is further apart
        return;
    }
    if (std::all_of(members.begin(), members.end(), isFinite)) {
        appendIsolatedFinite(isolated, members, maxDist);
        return;
    }
    std::vector<NumberedPoint> finite;
    std::array<bool, 27> isPresent{};
    for (const NumberedPoint& member : members) {
        const int kind = kindOfInfinity(member);
        isPresent[static_cast<std::size_t>(kind)] = true;
        if (kind == 0) {
            finite.push_back(member);
        }
    }
    appendIsolatedFinite(isolated, finite, maxDist); // a point at infinity is at a distance from each of them
    // A point at infinity is infinitely far from every point to which it has a distance at all.
    for (const NumberedPoint& member : members) {
        const int kind = kindOfInfinity(member);
        bool hasDistance = false;
        for (int other = 0; kind != 0 && other < 27; ++other) {
            hasDistance = hasDistance || (isPresent[static_cast<std::size_t>(other)] && haveDistance(kind, other));
        }
        if (hasDistance) {
            isolated.push_back(member.number);
        }
    }
}

} // namespace KxMath::detail
