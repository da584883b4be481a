// What the competitors of the operations on sets of profiles and height maps work on.
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

/// The objects of the library, and plain ones for what others make of them.
struct GridJob {
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
    job.matrix.initMatrix(source->columns, source->rows, source->step, 0, 0, 0, 0, 0, 0);
    for (int r = 0; r < source->rows; ++r) {
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
    job.histos.histoRows = rows;
    for (QList<HistoCell>& row : job.histos.histoRows) {
        row.detach();
    }
}

/// Limits of the regions that are grown from the block means.
constexpr float kTolerance = 0.3f;
constexpr int kMinCount = 50;

inline Digest digestValue(GridJob& job) {
    return {job.value, 0.0};
}

/// A competitor with one object at a time.
template <typename Prepare, typename Work, typename Result>
void addOnGrid(const char* operation, const char* who, Prepare prepare, Work work, Result digest) {
    add<GridJob>(operation, kGridPoints, who, 1, prepare, work, digest);
}

} // namespace kxbench
