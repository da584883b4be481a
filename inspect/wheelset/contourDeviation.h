// How far the cross-section of a wheel stands off the nominal contour.
#pragma once

#include <KxInspect/CrossSection.h>
#include <KxInspect/PassResult.h>

#include <vector>

namespace KxInspect::detail {

/// The contour in a file or memory, measured as a wheel. Throws an Error when it cannot be read, or shows no flange height:
/// it could not be aligned.
NominalContour nominalContour(const CrossSection& contour);

/// The deviations of a section, which has the flange height `height`, at each of its points: the contour is moved so that the
/// flange backs and the tape circles of both are at one place. Points farther than 10 mm from the contour are left out: they
/// show what the contour does not.
std::vector<Point> deviationsFrom(const NominalContour& contour, const std::vector<Point>& section, float height);

} // namespace KxInspect::detail
