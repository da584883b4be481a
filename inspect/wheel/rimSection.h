// Wheel profiles as the measurement of a rim takes them.
#pragma once

#include <KxMath/KxPointCloud.h>
#include <KxMath/KxProfile.h>

namespace kxtool {

/// Appends a wheel profile (x outwards from the flange back, y down) to the cross-section of a rim, such that
/// METRO_calcWheelParameters() with a circle at the origin measures it with x from the smallest x on and heights y over
/// the tip of the flange. Points that are not finite are left out.
void appendRimSection(const KxMath::KxProfile& profile, KxMath::KxPointCloud<KxMath::KxPointXYZ>& rim);

/// Puts points `spacing` apart on the straight lines between those of a profile in their order, the length being
/// counted along the profile; the first and the last point stay.
/// @return false, nothing changed, when that would be more than a million points
bool spaceEvenly(KxMath::KxProfile& profile, double spacing);

} // namespace kxtool
