// A simulated scan of flat patches.
#pragma once

#include <KxMath/KxProfileZ.h>

#include <span>

namespace kxtool {

/// A flat rectangle, bounds included, counted in profiles and in points of a profile.
struct Patch {
    int firstProfile, lastProfile;
    int firstPoint, lastPoint;
    float height;
};

struct PatchScan {
    int profiles;
    int points; ///< of each profile
    float pitch; ///< distance of profiles and of points, mm
    float firstX; ///< x of the first point
    float base; ///< height between the patches; NaN: the sensor sees nothing there
    float noise; ///< standard deviation of the heights
    unsigned seed;
};

/// The scan of patches, the later ones on top. Points without a height are left out.
void appendPatchScan(KxMath::KxProfileZSet& set, const PatchScan& scan, std::span<const Patch> patches);

} // namespace kxtool
