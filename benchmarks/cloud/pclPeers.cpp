// The Point Cloud Library: boxes, density filters, binary files, and growth.
#include "cloud/files.h"
#include "cloud/growth.h"

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
};

Digest digestInput(PclJob& job) {
    return digestXY(job.cloud->points);
}

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
}

pcl::PointXY pclPoint(const KxMath::KxPointXY& p) {
    return {p.x, p.y};
}
pcl::PointXYZ pclPoint(const KxMath::KxPointXYZ& p) {
    return {p.x, p.y, p.z};
}
pcl::PointXYZRGB pclPoint(const KxMath::KxPointXYZRGB& p) {
    const auto channel = [&](int shift) { return static_cast<std::uint8_t>(p.rgb >> shift); };
    return {p.x, p.y, p.z, channel(16), channel(8), channel(0)};
}

template <typename Point>
void addFiles(const FileKind<Point>& kind, int n) {
    struct Job {
        pcl::PointCloud<decltype(pclPoint(Point()))> cloud;
        bool isDone = false;
    };
    const auto fill = [=](Job& j) {
        j.cloud.reserve(static_cast<std::size_t>(n));
        for (const Point& p : kind.points(n)) {
            j.cloud.push_back(pclPoint(p));
        }
    };
    add<Job>(
        "write " + kind.name, n, "peer_pcl_binary_pcd", 1, fill,
        [](Job& j) { j.isDone = pcl::io::savePCDFileBinary(path(), j.cloud) == 0; }, digestDone<Job>);
    add<Job>(
        "read " + kind.name, n, "peer_pcl_binary_pcd", 1,
        [=](Job&) {
            Job source;
            fill(source);
            pcl::io::savePCDFileBinary(path(), source.cloud);
        },
        [](Job& j) { j.isDone = pcl::io::loadPCDFile(path(), j.cloud) == 0; }, digestDone<Job>);
}

void addGrowth(int n) {
    add<PclJob>(
        kGrowByPoints, n, "peer_pcl", 1, [=](PclJob&) { randomPoints(n); },
        [=](PclJob& j) {
            for (const KxMath::KxPointXYZ& p : randomPoints(n)) {
                j.cloud->push_back(pclPoint(p));
            }
        },
        digestInput);
    add<PclJob>(
        kGrowByClouds, n, "peer_pcl", 1,
        [=](PclJob& j) {
            for (const KxMath::KxPointXYZ& p : randomPoints(n / kPieces)) {
                j.out.push_back(pclPoint(p));
            }
        },
        [](PclJob& j) {
            for (int i = 0; i < kPieces; ++i) {
                *j.cloud += j.out;
            }
        },
        digestInput);
}

[[maybe_unused]] const bool isRegistered = [] {
    for (const int n : kCloudSizes) {
        addJobs(n);
    }
    for (const int n : kGrownSizes) {
        addGrowth(n);
    }
    forEachFileKind([](const auto& kind, int n) { addFiles(kind, n); });
    return true;
}();

} // namespace

} // namespace kxbench
