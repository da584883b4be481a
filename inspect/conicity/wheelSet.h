// The four profiles of a wheel-set on its track, made ready for the calculation.
#pragma once

#include <KxMath/KxConicity.h>

#include <QtCore/QStringList>

#include <array>
#include <memory>
#include <vector>

namespace kxtool {

/// The places of the four profiles, in the order in which the calculation hands them out for display.
enum Role : size_t { Wheel1, Rail1, Wheel2, Rail2, RoleCount };

/// "wheel1", "rail1", "wheel2", "rail2".
const char* roleName(size_t role);

inline bool isWheel(size_t role) {
    return role == Wheel1 || role == Wheel2;
}

/// What the calculation is made from, all lengths in mm.
struct WheelSet {
    std::array<KxMath::KxProfile, RoleCount> profiles; ///< y down, x outwards
    float gauge = 0.0f;
    float gaugeDepth = 14.0f; ///< height below the top of the rail at which the gauge is measured, 0: at the rail's end
    float backToBack = 0.0f;
    float radius1 = 460.0f;
    float radius2 = 460.0f;
    unsigned int amplitudes = 100;
    float edgeMargin = 0.001f;
};

/// What came out, with the profiles that the calculation handed out.
struct ConicityResult {
    KxMath::KxProfile conicity; ///< (amplitude, conicity)
    KxMath::KxProfile deltaR; ///< (displacement, difference of radii)
    KxMath::KxProfile contactSlope1;
    KxMath::KxProfile contactSlope2;
    std::array<std::unique_ptr<KxMath::KxProfile>, RoleCount> placed;
    std::vector<std::unique_ptr<KxMath::KxProfile>> contacts1; ///< contact points on wheel and rail, per displacement
    std::vector<std::unique_ptr<KxMath::KxProfile>> contacts2;
};

/// Makes a profile a function of x. One whose x rises all the way is left as it is; of others the side that can touch
/// is kept: of wheels the lowest point of each 0.1 mm, of rails the highest.
/// @return the number of points that were dropped
int keepRunningSurface(KxMath::KxProfile& profile, bool isWheel);

/// The calculation refuses wider profiles, mm.
inline constexpr float kMaxWidth = 1000.0f;

/// From the first to the last point of a running surface, mm.
float widthOf(const KxMath::KxProfile& profile);

/// Cuts a rail on its gauge side at the height at which the gauge is measured, so that the calculation's reference
/// point, the end of the rail, is the gauge point.
/// @return false, nothing cut, when the profile does not reach down so far
bool cutAtGaugeDepth(KxMath::KxProfile& rail, float depth);

/// Puts points every 0.1 mm on the straight lines between those of a measured profile, where the calculation takes its
/// samples: its spline would swing out beside steep flanks. A profile that is too wide stays as it is.
void straighten(KxMath::KxProfile& profile);

/// What a wheel profile that is a function of x shows of another orientation, after the name of the profile; empty when
/// it stands with y down and x outwards.
QString wheelContradiction(const KxMath::KxProfile& wheel);

/// Everything about the input that contradicts the method, a sentence each.
QStringList findContradictions(const WheelSet& set);

/// Runs the calculation. @return false when there was no conicity to calculate
bool calculate(WheelSet& set, ConicityResult& result);

/// Everything about the result that limits its meaning, a sentence each.
QStringList findLimits(const ConicityResult& result, float shownAmplitude);

/// Whether a point of the curve holds a conicity. Where the difference of radii is too rough for the method it is 0,
/// not a number or infinite.
bool hasConicity(const KxMath::KxPointXY& p);

/// The conicity at an amplitude, NaN outside the curve and where it has none.
float conicityAt(const ConicityResult& result, float amplitude);

} // namespace kxtool
