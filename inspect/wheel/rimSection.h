// Wheel profiles as input of the rim measurement.
#pragma once

#include <KxInspect/Profile.h>
#include <KxMath/KxPointCloud.h>

#include <vector>

namespace KxInspect::detail {

using Rim = KxMath::KxPointCloud<KxMath::KxPointXYZ>;

/// Appends a wheel profile (x outwards from the flange back, y down) to the cross-section of a rim, such that
/// METRO_calcWheelParameters() with a circle at the origin measures it with x from the smallest x on and heights y over
/// the tip of the flange. Points that are not finite are left out.
void appendRimSection(const std::vector<Point>& profile, Rim& rim);

/// The points of a rim that was measured with the origin of the measured profile, which is read from the outer end
/// inwards.
std::vector<Point> sectionOf(const Rim& rim);

} // namespace KxInspect::detail
