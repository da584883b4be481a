// Conversions between the values of this library and the classes of KxMath.
#include <KxInspect/KxMathTypes.h>

#include "inspect/base/points.h"

namespace KxInspect {

KxMath::KxProfile toKxProfile(const Profile& profile) {
    KxMath::KxProfile result;
    result.points = detail::toList(profile.points);
    return result;
}

KxMath::KxProfileZ toKxProfileZ(const Profile& profile) {
    KxMath::KxProfileZ result(profile.z);
    result.points = detail::toList(profile.points);
    return result;
}

Profile fromKxProfile(const KxMath::KxProfile& profile) {
    return {detail::toVector(profile.points), std::numeric_limits<float>::quiet_NaN()};
}

Profile fromKxProfileZ(const KxMath::KxProfileZ& profile) {
    return {detail::toVector(profile.points), profile.z};
}

} // namespace KxInspect
