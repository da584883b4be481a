// Input and output of the competitors for operations on profile sets and height maps.
#pragma once

#include "digests.h"
#include "inputs.h"

#include <memory>
#include <vector>

namespace kxbench {

using KxMath::HistoCell;
using KxMath::KxMatrixCloud;
using KxMath::KxPointXY;
using KxMath::KxPointXYZ;
using Cloud = KxMath::KxPointCloud<KxPointXYZ>;

constexpr int kGridPoints = kRows * kProfilePoints;
constexpr float kPitch = 0.0625f;
constexpr float kMaxGap = 0.5f;

/// Objects of the library, and plain ones for the other competitors.
struct GridJob {
    int rows = kRows;
    KxMath::KxProfileZSet set;
    KxMatrixCloud matrix;
    KxMath::KxMatrixWithHistos histos;
    Cloud cloud;
    QList<Cloud*> seeds;

    std::vector<KxPointXYZ> points;
    std::vector<std::vector<KxPointXY>> profiles;
    std::vector<std::vector<float>> heights;
    std::vector<std::vector<HistoCell>> cells;
    std::vector<std::vector<KxPointXYZ>> patches;
    std::unique_ptr<char[]> bytes;
    double value = 0.0;

    ~GridJob() { KxMath::KxMatrixWithHistos::freePointCloudList(seeds); }
};

/// Fills the set.
inline void fillSet(GridJob& job) {
    job.set = profileSet();
    job.set.profiles.resize(job.rows);
    job.set.calcRange();
    for (KxMath::KxProfileZ& profile : job.set.profiles) {
        profile.points.detach();
    }
}

/// Fills the matrix with the heights of the set.
inline void fillMatrix(GridJob& job) {
    static const std::unique_ptr<KxMatrixCloud> source = [] {
        auto matrix = std::make_unique<KxMatrixCloud>();
        KxMath::KxProfileZSet set = profileSet();
        set.toMatrixCloud(*matrix, kMaxGap, kPitch);
        return matrix;
    }();
    const int rows = std::min(source->rows, job.rows);
    job.matrix.initMatrix(source->columns, rows, source->step, 0, 0, 0, 0, 0, 0);
    for (int r = 0; r < rows; ++r) {
        std::copy_n(source->cells[r], source->columns, job.matrix.cells[r]);
    }
}

/// Fills the matrix and its block means.
inline void fillMeans(GridJob& job) {
    static const QList<QList<HistoCell>> rows = [] {
        GridJob source;
        fillMatrix(source);
        source.histos.calcFromMatrixCloud(source.matrix, 5, 0, nullptr, nullptr);
        return source.histos.histoRows;
    }();
    fillMatrix(job);
    job.histos.histoRows = rows.first(job.matrix.rows);
    for (QList<HistoCell>& row : job.histos.histoRows) {
        row.detach();
    }
}

/// Limits of the regions that are grown from the block means.
constexpr float kTolerance = 0.3f;
constexpr int kMinCount = 50;

/// The points of a seed or profile of any competitor.
inline const QList<KxPointXYZ>& pointsOf(const Cloud* seed) {
    return seed->points;
}
inline const QList<KxPointXY>& pointsOf(const KxMath::KxProfileZ& profile) {
    return profile.points;
}
template <typename Point>
const std::vector<Point>& pointsOf(const std::vector<Point>& points) {
    return points;
}

inline Digest digestCloud(GridJob& job) {
    return digestXY(job.cloud.points);
}
inline Digest digestPoints(GridJob& job) {
    return digestXY(job.points);
}
inline Digest digestValue(GridJob& job) {
    return {job.value, 0.0};
}

/// A competitor with one object at a time. The library also works on fewer rows, which shows how its time grows.
template <typename Prepare, typename Work, typename Result>
void addOnGrid(const char* operation, const std::string& who, Prepare prepare, Work work, Result digest) {
    for (const int rows : {kRows / 4, kRows}) {
        if (rows < kRows && who != "kx") {
            continue;
        }
        const auto prepareRows = [=](GridJob& job) {
            job.rows = rows;
            prepare(job);
        };
        add<GridJob>(operation, rows * kProfilePoints, who.c_str(), 1, prepareRows, work, digest);
    }
}

} // namespace kxbench
