// The noise of measured points.
#pragma once

#include <KxInspect/Profile.h>

#include <span>

namespace KxInspect::detail {

/// The standard deviation of the points of a contour across it, mm, from the points alone: the third divided differences
/// of each four consecutive points, across their chord, vanish on every parabola; what remains is noise. The median of
/// their absolute values leaves out corners, gaps and outliers. Right for noise that is independent from point to point
/// (within 5 % at 500 points); what a sensor has smoothed comes out too small. Contours whose points lie further apart
/// than the radius of their bends come out too large.
/// @param contour in its order; a point that equals the one before it is left out
/// @return NaN with fewer than 20 points
float noiseAcross(std::span<const Point> contour);

/// Likewise along y, for a contour that stays near a line of that slope and has even steps: from third differences of the
/// distances from the line. Right, too, where points lie closer together than their noise, which turns the chords of four
/// points anywhere.
float noiseAlongY(std::span<const Point> contour, float slope);

} // namespace KxInspect::detail
