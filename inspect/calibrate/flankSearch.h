// Where the flanks of the calibration object are in a profile.
#pragma once

#include <KxInspect/Calibration.h>

#include <array>
#include <vector>

namespace KxInspect::detail {

/// A point of a profile, its x counted in the direction in which the ridges follow each other.
struct ReadPoint {
    double x;
    double y;
};

/// The resolution of coordinates in single precision, mm: no noise is taken to be less.
inline constexpr double kResolution = 1e-4;

/// The distance from which points are outliers: four standard deviations of the noise, which is taken from the median.
double outlierLimit(std::vector<double> distances);

/// The line y = intercept + slope * x through a flank.
struct FlankLine {
    double intercept;
    double slope;
};
using FlankLines = std::array<FlankLine, kFlankCount>;

struct FlankSearch {
    std::vector<FlankLines> candidates; ///< every run of straight parts that may be the eight flanks
    int apexes = 0; ///< corners between straight parts
};

/// Cuts a profile into straight parts and looks for eight that fall and rise in turn, the first three crests about
/// equally far apart. The lines are rough, but outliers do not move them.
/// @param points ordered by x
/// @param depth of the valleys of the object, mm
FlankSearch searchFlanks(const std::vector<ReadPoint>& points, double depth);

} // namespace KxInspect::detail
