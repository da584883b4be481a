// Making and comparing sets of profiles, height maps and block means.
#pragma once

#include "support/bits.h"
#include "support/nasty.h"

#include <KxMath/KxMatrixWithHistos.h>
#include <KxMath/KxProfileZ.h>

#include <vector>

namespace testing_support {

using Heights = std::vector<std::vector<float>>;
using SpaceCloud = KxMath::KxPointCloud<KxMath::KxPointXYZ>;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

inline ExactList exact(const KxMath::KxProfileZSet& set) {
    ExactList all;
    for (const KxMath::KxProfileZ& profile : set.profiles) {
        const ExactList points = exact(profile.points);
        all.push_back(exact(profile.points.size()));
        all.push_back(exact(profile.z));
        all.insert(all.end(), points.begin(), points.end());
    }
    return all;
}

inline ExactList exact(const QList<QPoint>& cells) {
    ExactList all;
    for (const QPoint& cell : cells) {
        all.push_back(exact(cell.x()));
        all.push_back(exact(cell.y()));
    }
    return all;
}

inline ExactList exact(const QList<QList<KxMath::HistoCell>>& rows) {
    ExactList all;
    for (const QList<KxMath::HistoCell>& row : rows) {
        for (const KxMath::HistoCell& cell : row) {
            all.insert(all.end(), {exact(cell.mean), exact(cell.firstColumn), exact(cell.column), exact(cell.firstRow),
                                   exact(cell.row), exact(cell.visited), exact(cell.taken)});
        }
    }
    return all;
}

inline ExactList exact(const Heights& heights) {
    ExactList all;
    for (const std::vector<float>& row : heights) {
        for (const float height : row) {
            all.push_back(exact(height));
        }
    }
    return all;
}

inline Heights heightsOf(const KxMath::KxMatrixCloud& matrix) {
    Heights heights;
    for (int r = 0; r < matrix.rows; ++r) {
        heights.emplace_back(matrix.cells[r], matrix.cells[r] + matrix.columns);
    }
    return heights;
}

/// Fills a matrix; all rows have the same length.
inline void fill(KxMath::KxMatrixCloud& matrix, const Heights& heights, float step = 1.0f) {
    const int columns = heights.empty() ? 0 : static_cast<int>(heights[0].size());
    if (!matrix.initMatrix(columns, static_cast<int>(heights.size()), step, 0, 0, 0, 0, 0, 0)) {
        qFatal("no memory for a matrix of a test");
    }
    for (std::size_t r = 0; r < heights.size(); ++r) {
        std::copy(heights[r].begin(), heights[r].end(), matrix.cells[r]);
    }
}

inline Heights nastyHeights(Nasty& nasty, int maxSide) {
    const int columns = nasty.size(maxSide);
    Heights heights(static_cast<std::size_t>(nasty.size(maxSide)));
    for (std::vector<float>& row : heights) {
        for (int c = 0; c < columns; ++c) {
            row.push_back(nasty.value());
        }
    }
    return heights;
}

inline KxMath::KxProfileZ profileAt(float z, const QList<KxMath::KxPointXY>& points) {
    KxMath::KxProfileZ profile(z);
    profile.points = points;
    return profile;
}

inline KxMath::KxProfileZSet nastySet(Nasty& nasty, int maxProfiles) {
    KxMath::KxProfileZSet set;
    const int count = nasty.size(maxProfiles);
    for (int i = 0; i < count; ++i) {
        set.profiles.append(profileAt(nasty.value(), nasty.points<KxMath::KxPointXY>(nasty.size(40))));
    }
    return set;
}

} // namespace testing_support
