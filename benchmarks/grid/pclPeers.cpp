// Region growing of the Point Cloud Library.
#include "grid/jobs.h"

#include <pcl/point_types.h>
#include <pcl/search/kdtree.h>
#include <pcl/segmentation/region_growing.h>

namespace kxbench {

namespace {

/// Block means as points with normals that point up, so that only the growing is measured.
struct GrowingJob {
    pcl::PointCloud<pcl::PointXYZ>::Ptr cloud = std::make_shared<pcl::PointCloud<pcl::PointXYZ>>();
    pcl::PointCloud<pcl::Normal>::Ptr normals = std::make_shared<pcl::PointCloud<pcl::Normal>>();
    std::vector<pcl::PointIndices> regions;
};

void fill(GrowingJob& j) {
    GridJob source;
    fillMeans(source);
    j.cloud->reserve(kGridPoints);
    for (const QList<HistoCell>& row : std::as_const(source.histos.histoRows)) {
        for (const HistoCell& cell : row) {
            j.cloud->emplace_back(static_cast<float>(cell.column) * kPitch, cell.mean,
                                  static_cast<float>(cell.row) * kPitch);
        }
    }
    j.normals->assign(j.cloud->size(), pcl::Normal(0, 1, 0, 0));
}

/// Regions by the same step between neighbours, but another rule: neighbours are the nearest points instead of those in
/// the row and column, a cell beyond a step belongs to the region but is not grown from, and regions do not start at
/// levels. No cells are moved out of the matrix.
void grow(GrowingJob& j) {
    constexpr unsigned kNeighbours = 5; // with the point itself
    pcl::RegionGrowing<pcl::PointXYZ, pcl::Normal> growing;
    growing.setInputCloud(j.cloud);
    growing.setInputNormals(j.normals);
    growing.setSearchMethod(std::make_shared<pcl::search::KdTree<pcl::PointXYZ>>());
    growing.setNumberOfNeighbours(kNeighbours);
    growing.setCurvatureTestFlag(false);
    growing.setResidualTestFlag(true);
    growing.setResidualThreshold(kTolerance);
    growing.setMinClusterSize(kMinCount);
    growing.extract(j.regions);
}

[[maybe_unused]] const bool isRegistered = [] {
    add<GrowingJob>("seeds", kGridPoints, "like_pcl_region_growing", 1, fill, grow, nothing<GrowingJob>);
    return true;
}();

} // namespace

} // namespace kxbench
