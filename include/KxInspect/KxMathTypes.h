// Between the values of this library and the classes of KxMath. Only who works with both needs this header.
#pragma once

#include "Export.h"
#include "Profile.h"

#include <KxMath/KxPrimitives.h>
#include <KxMath/KxProfileZ.h>

namespace KxInspect {

/// The points of a profile as a profile of KxMath, its range unknown.
KXINSPECT_EXPORT KxMath::KxProfile toKxProfile(const Profile& profile);

/// The same with its position.
KXINSPECT_EXPORT KxMath::KxProfileZ toKxProfileZ(const Profile& profile);

/// The points of a profile; its position is not known.
KXINSPECT_EXPORT Profile fromKxProfile(const KxMath::KxProfile& profile);

/// The points of a profile and its position.
KXINSPECT_EXPORT Profile fromKxProfileZ(const KxMath::KxProfileZ& profile);

inline KxMath::KxLine toKxLine(const Line& line) {
    return KxMath::KxLine(line.slope, line.intercept);
}

inline Line fromKxLine(const KxMath::KxLine& line) {
    return {line.k, line.b};
}

} // namespace KxInspect
