// nanoflann: the nearest neighbour of each point, and the removal of isolated points.
#include "cloud/jobs.h"

#include <nanoflann.hpp>

#include <array>

namespace kxbench {

namespace {

/// The data set interface of nanoflann.
struct Adaptor {
    const QList<KxMath::KxPointXYZ>& points;

    std::size_t kdtree_get_point_count() const { return static_cast<std::size_t>(points.size()); }
    float kdtree_get_pt(std::size_t i, std::size_t axis) const {
        const KxMath::KxPointXYZ& p = points[static_cast<int>(i)];
        return axis == 0 ? p.x : axis == 1 ? p.y : p.z;
    }
    template <typename Box>
    bool kdtree_get_bbox(Box&) const {
        return false;
    }
};

using Tree = nanoflann::KDTreeSingleIndexAdaptor<nanoflann::L2_Simple_Adaptor<float, Adaptor>, Adaptor, 3>;

void removeIsolated(CloudJob& job) {
    const QList<KxMath::KxPointXYZ> points = job.cloud.points;
    const Adaptor adaptor{points};
    const Tree tree(3, adaptor);
    job.cloud.points.removeIf([&](const KxMath::KxPointXYZ& p) {
        std::array<unsigned, 2> positions;
        std::array<float, 2> squares{}; // of itself, and of its neighbour
        const std::array<float, 3> at{p.x, p.y, p.z};
        tree.knnSearch(at.data(), 2, positions.data(), squares.data());
        return squares[1] > kMaxDistance * kMaxDistance;
    });
}

[[maybe_unused]] const bool isRegistered = [] {
    for (const int n : kCloudSizes) {
        addNeighbourSearch("peer_nanoflann", n, removeIsolated);
    }
    return true;
}();

} // namespace

} // namespace kxbench
