// Creating and comparing profile sets, height maps and block means.
#pragma once

#include "support/testing.h"

namespace testing_support {

using Heights = QList<QList<float>>;
using SpaceCloud = KxPointCloud<KxPointXYZ>;

inline ExactList exact(const KxProfileZSet& set) {
    ExactList all;
    for (const KxProfileZ& profile : set.profiles) {
        append(all, exact(profile.points.size(), profile.z, profile.points));
    }
    return all;
}

inline ExactList exact(const QList<QList<HistoCell>>& rows) {
    ExactList all;
    for (const QList<HistoCell>& row : rows) {
        for (const HistoCell& c : row) {
            append(all, exact(c.mean, c.firstColumn, c.column, c.firstRow, c.row, c.visited, c.taken));
        }
    }
    return all;
}

inline Heights heightsOf(const KxMatrixCloud& matrix) {
    Heights heights;
    for (int r = 0; r < matrix.rows; ++r) {
        heights.append(QList<float>(matrix.cells[r], matrix.cells[r] + matrix.columns));
    }
    return heights;
}

/// Fills a matrix; all rows have the same length.
inline void fill(KxMatrixCloud& matrix, const Heights& heights, float step = 1.0f) {
    const qsizetype columns = heights.isEmpty() ? 0 : heights[0].size();
    if (!matrix.initMatrix(static_cast<int>(columns), static_cast<int>(heights.size()), step, 0, 0, 0, 0, 0, 0)) {
        qFatal("no memory for a matrix of a test");
    }
    for (qsizetype r = 0; r < heights.size(); ++r) {
        std::copy(heights[r].begin(), heights[r].end(), matrix.cells[r]);
    }
}

inline Heights nastyHeights(Nasty& nasty, int maxSide) {
    const int columns = nasty.size(maxSide);
    Heights heights(nasty.size(maxSide), QList<float>(columns));
    for (QList<float>& row : heights) {
        std::generate(row.begin(), row.end(), [&] { return nasty.value(); });
    }
    return heights;
}

inline KxProfileZ profileAt(float z, const QList<KxPointXY>& points) {
    KxProfileZ profile(z);
    profile.points = points;
    return profile;
}

inline KxProfileZSet nastySet(Nasty& nasty, int maxProfiles) {
    KxProfileZSet set;
    for (int i = nasty.size(maxProfiles); i > 0; --i) {
        set.profiles.append(profileAt(nasty.value(), nasty.points<KxPointXY>(nasty.size(40))));
    }
    return set;
}

} // namespace testing_support
