// Reading through members that are not const.
#pragma once

#include "KxMath/KxProfileZ.h"

namespace KxMath::detail {

/// A profile for calls that do not change it. The members of a profile are not const, but taking it out of its list for
/// writing would copy a shared list with all its points.
inline KxProfileZ& forReading(const KxProfileZ& profile) {
    return const_cast<KxProfileZ&>(profile);
}

} // namespace KxMath::detail
