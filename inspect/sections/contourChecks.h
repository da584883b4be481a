// What is doubtful about the points of a contour: gaps, and single points beside it.
#pragma once

#include <KxInspect/Profile.h>

#include <optional>
#include <vector>

namespace KxInspect::detail {

/// A gap between neighbours of a contour: more than 3 mm and more than ten times the usual distance.
struct Gap {
    Point middle = {};
    float width = 0.0f;
};

/// The largest gap of a contour.
std::optional<Gap> largestGap(const std::vector<Point>& contour);

/// Single points beside a contour: those before and those behind it continue each other, and it lies off both, on the same side,
/// by more than 0.25 mm and by more than ten times what is usual on this contour, so that noise makes hardly any.
struct Outliers {
    int count = 0;
    Point farthest = {};
    float distance = 0.0f; ///< of the farthest one
};

/// Drops outliers from a contour.
Outliers dropOutliers(std::vector<Point>& contour);

} // namespace KxInspect::detail
