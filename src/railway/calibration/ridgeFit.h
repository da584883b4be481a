// The ridges of the calibration object in a profile.
#pragma once

#include "KxMath/KxPoints.h"

#include "railway/calibration/uncertain.h"

#include <QtCore/QList>

#include <array>
#include <optional>

namespace KxMath::detail {

inline constexpr int kObliqueRidge = 3;
inline constexpr int kApexCount = 7; ///< crest 1, valley 1, crest 2, valley 2, crest 3, valley 3, oblique crest

/// The apexes of the object in the order of x.
using Apexes = std::array<KxPointXY, kApexCount>;

struct ProfilePoint {
    double x;
    double y;
};

/// A flank: the part of a profile on one side of one ridge.
struct Flank {
    int ridge; ///< 0 to 2 straight, 3 oblique
    bool isBehind; ///< behind the crest, in the order of x
    QList<ProfilePoint> points;
};

/// What the flanks determine of the ridges: the middle crest, the vector from the first to the third crest, the vector
/// from the middle crest to the middle between its valleys, and the oblique crest.
enum RidgeValue { kMiddleX, kMiddleY, kSpanX, kSpanY, kDepthX, kDepthY, kObliqueX, kObliqueY, kRidgeValueCount };

struct RidgeFit {
    Uncertain<kRidgeValueCount> ridges;
    QList<Flank> flanks;
    double noise; ///< standard deviation of the points about their lines, in y
};

/// Fits the ridges to the middle parts of the flanks between apexes that are known roughly: one line for all flanks on
/// the same side of the straight crests, equally spaced, and one for each flank of the oblique crest.
/// @param points ordered by x, without NaN
/// @return nothing when a flank holds too few points
std::optional<RidgeFit> fitRidges(const QList<ProfilePoint>& points, const Apexes& apexes);

/// Fits the ridges to the apexes themselves.
RidgeFit fitRidges(const Apexes& apexes);

} // namespace KxMath::detail
