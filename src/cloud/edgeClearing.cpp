// Clearing the edges of a cloud that is a stack of profiles.
#include "KxMath/KxPointCloud.h"

#include "cloud/box.h"
#include "rounding/bounds.h"
#include "rounding/conversion.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

namespace KxMath {

namespace {

/// The thin slabs in which the profiles are looked for: slab i starts at i * step + minZ.
struct Slabs {
    float minZ;
    float step;
    int count;

    float low(int i) const {
        const float offset = static_cast<float>(i) * step;
        return offset + minZ;
    }
    float high(int i) const {
        constexpr double kThickness = 0.0001;
        return static_cast<float>(static_cast<double>(low(i)) + kThickness);
    }
};

/// The positions in one profile between which it is kept.
struct Lows {
    qsizetype left;
    qsizetype right;
};

/// Finds the lowest points on both sides of the highest one.
/// @param peak the position of the highest point of the profile before; deliberately kept when no y is at least 0, and
///        may then lie behind this profile
Lows findLows(const std::vector<float>& ys, qsizetype& peak) {
    const qsizetype n = static_cast<qsizetype>(ys.size());
    const auto y = [&](qsizetype k) { return ys[static_cast<std::size_t>(k)]; };
    float peakLevel = 0.0f;
    for (qsizetype k = 0; k < n; ++k) {
        if (peakLevel <= y(k)) { // NaN: false
            peakLevel = y(k);
            peak = k;
        }
    }
    Lows lows{0, n - 1};
    float low = peakLevel;
    for (qsizetype k = 0; k < std::min(peak, n); ++k) {
        if (low >= y(k)) { // NaN: false
            low = y(k);
            lows.left = k;
        }
    }
    low = peakLevel;
    for (qsizetype k = n - 1; k > peak; --k) {
        if (low >= y(k)) { // NaN: false
            low = y(k);
            lows.right = k;
        }
    }
    return lows;
}

/// The points of a cloud by z, to visit only the slabs that hold points.
class SlabVisitor {
public:
    SlabVisitor(KxPointCloud<KxPointXYZ>& cloud, const Slabs& slabs) : slabs_(slabs) {
        // The box of the cloud excludes points with a NaN coordinate.
        const detail::Box box{cloud.minX, cloud.maxX, cloud.minY, cloud.maxY, slabs.minZ, detail::kNaN};
        const QList<KxPointXYZ>& points = cloud.points;
        for (int i = 0; i < points.size(); ++i) {
            if (box.contains(points[i])) {
                byZ_.push_back({points[i].z, i});
            }
        }
        std::sort(byZ_.begin(), byZ_.end(), [](const Level& a, const Level& b) { return a.z < b.z; });
    }

    /// Calls `visit` with the positions of the points of each slab, the last one first, until it returns false. Slabs
    /// are left out that hold no points, and those that hold the same points as the slab before.
    template <typename Visit>
    void visitProfiles(Visit visit) {
        for (int slab = 0; slab < slabs_.count; slab = nextChange(slab)) {
            while (begin_ < byZ_.size() && byZ_[begin_].z < slabs_.low(slab)) {
                ++begin_;
            }
            end_ = std::max(end_, begin_);
            while (end_ < byZ_.size() && byZ_[end_].z <= slabs_.high(slab)) {
                ++end_;
            }
            if (begin_ < end_ && !visit(positions())) {
                return;
            }
        }
    }

private:
    struct Level {
        float z;
        int position;
    };

    std::vector<int> positions() const {
        std::vector<int> found;
        found.reserve(end_ - begin_);
        for (std::size_t i = begin_; i < end_; ++i) {
            found.push_back(byZ_[i].position);
        }
        std::sort(found.begin(), found.end(), std::greater<int>());
        return found;
    }

    /// The first slab behind `slab` that loses the lowest point of it or gains the next higher one. The slabs rise, so that
    /// both stay true for all later ones, and a bisection finds the first: a small step makes millions of slabs without points.
    int nextChange(int slab) const {
        const auto hasChanged = [&](int i) {
            return (begin_ < end_ && slabs_.low(i) > byZ_[begin_].z) ||
                   (end_ < byZ_.size() && slabs_.high(i) >= byZ_[end_].z);
        };
        int unchanged = slab;
        int changed = slabs_.count;
        while (changed - unchanged > 1) {
            const int middle = unchanged + (changed - unchanged) / 2;
            (hasChanged(middle) ? changed : unchanged) = middle;
        }
        return changed;
    }

    const Slabs slabs_;
    std::vector<Level> byZ_;
    std::size_t begin_ = 0; ///< the points of the current slab
    std::size_t end_ = 0;
};

bool isSame(float a, float b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

bool isSamePoint(const KxPointXYZ& a, const KxPointXYZ& b) {
    return isSame(a.x, b.x) && isSame(a.y, b.y) && isSame(a.z, b.z);
}

} // namespace

void KxPointCloud<KxPointXYZ>::clearEdgeEffect(float step) {
    calcRange();
    const float extent = maxZ - minZ;
    const Slabs slabs{minZ, step, detail::truncToInt(static_cast<double>(extent / step))};
    if (slabs.count < 1) {
        return;
    }
    QList<KxPointXYZ> edge;
    qsizetype peak = 0;
    SlabVisitor(*this, slabs).visitProfiles([&](const std::vector<int>& positions) {
        std::vector<float> ys;
        ys.reserve(positions.size());
        for (const int position : positions) {
            ys.push_back(std::as_const(points)[position].y);
        }
        const Lows lows = findLows(ys, peak);
        const auto point = [&](qsizetype k) { return std::as_const(points)[positions[static_cast<std::size_t>(k)]]; };
        for (qsizetype k = 0; k < lows.left; ++k) {
            edge.append(point(k));
        }
        for (qsizetype k = static_cast<qsizetype>(positions.size()) - 1; k > lows.right; --k) {
            edge.append(point(k));
        }
        return edge.isEmpty();
    });
    // Deliberately trimmed to each edge point: the first one leaves its own copies, another one nothing. What later
    // profiles could still find are copies of that point, to which the cloud has been trimmed already.
    for (qsizetype i = 0; i < edge.size(); ++i) {
        const KxPointXYZ p = edge[i];
        if (i == 0 || !isSamePoint(p, edge[i - 1])) {
            trim(p.x, p.x, p.y, p.y, p.z, p.z);
        }
    }
}

} // namespace KxMath
