// The Point Cloud Library: boxes, filters of density, and binary files.
#include "cloud/jobs.h"

#include <pcl/filters/crop_box.h>
#include <pcl/filters/radius_outlier_removal.h>
#include <pcl/io/pcd_io.h>
#include <pcl/point_types.h>

namespace kxbench {

namespace {

using PclCloud = pcl::PointCloud<pcl::PointXYZ>;

struct PclJob {
    PclCloud::Ptr cloud = std::make_shared<PclCloud>();
    PclCloud out;
    std::vector<int> positions;
    bool isDone = false;
};

auto pclOf(Source source, int n) {
    return [=](PclJob& j) {
        j.cloud->reserve(static_cast<std::size_t>(n));
        for (const KxMath::KxPointXYZ& p : source(n)) {
            j.cloud->emplace_back(p.x, p.y, p.z);
        }
    };
}

pcl::CropBox<pcl::PointXYZ> boxOf(PclJob& j) {
    pcl::CropBox<pcl::PointXYZ> box;
    box.setInputCloud(j.cloud);
    box.setMin({kLow, kLow, kLow, 1});
    box.setMax({kHigh, kHigh, kHigh, 1});
    return box;
}

std::string path() {
    return memoryFile("pcd").toStdString();
}

void addJobs(int n) {
    add<PclJob>(
        "box query", n, "peer_pcl_crop_box", 1, pclOf(randomPoints, n), [](PclJob& j) { boxOf(j).filter(j.positions); },
        [](PclJob& j) { return digestValues(j.positions); });
    add<PclJob>(
        "trim", n, "peer_pcl_crop_box", 1, pclOf(randomPoints, n), [](PclJob& j) { boxOf(j).filter(j.out); },
        [](PclJob& j) { return digestXY(j.out.points); });
    add<PclJob>( // the same points in the other order
        "extract", n, "peer_pcl_crop_box", 1, pclOf(randomPoints, n), [](PclJob& j) { boxOf(j).filter(j.out); },
        [](PclJob& j) {
            std::reverse(j.out.points.begin(), j.out.points.end());
            return digestXY(j.out.points);
        });
    add<PclJob>(
        "cubicFilter", n, "peer_pcl_radius_outlier_removal", 1, pclOf(densePoints, n),
        [](PclJob& j) {
            pcl::RadiusOutlierRemoval<pcl::PointXYZ> filter;
            filter.setInputCloud(j.cloud);
            filter.setRadiusSearch(static_cast<double>(kCell) / 2);
            filter.setMinNeighborsInRadius(kMinCount);
            filter.filter(j.out);
        },
        [](PclJob& j) {
            return Digest{static_cast<double>(j.out.size()), 0.005};
        });
    add<PclJob>(
        "write 3-D cloud", n, "peer_pcl_binary_pcd", 1, pclOf(randomPoints, n),
        [](PclJob& j) { j.isDone = pcl::io::savePCDFileBinary(path(), *j.cloud) == 0; },
        [](PclJob& j) {
            return Digest{j.isDone ? 1.0 : 0.0, 0.0};
        });
    add<PclJob>(
        "read 3-D cloud", n, "peer_pcl_binary_pcd", 1,
        [=](PclJob& j) {
            pclOf(randomPoints, n)(j);
            pcl::io::savePCDFileBinary(path(), *j.cloud);
        },
        [](PclJob& j) { j.isDone = pcl::io::loadPCDFile(path(), j.out) == 0; },
        [](PclJob& j) {
            return Digest{j.isDone ? 1.0 : 0.0, 0.0};
        });
}

[[maybe_unused]] const bool isRegistered = [] {
    for (const int n : kCloudSizes) {
        addJobs(n);
    }
    return true;
}();

} // namespace

} // namespace kxbench
