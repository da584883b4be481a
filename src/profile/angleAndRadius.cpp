// Profiles as radii over angles about a circle's centre.
#include "profile/angleAndRadius.h"

#include "lists/checked.h"

namespace KxMath::detail {

namespace {

void swapCoordinates(KxProfile& profile) {
    for (KxPointXY& p : writableSpan(profile.points)) {
        p = KxPointXY(p.y, p.x);
    }
}

} // namespace

void toAngleAndRadius(KxProfile& profile, const KxCircle& centre) {
    profile.shift(-centre.x, -centre.y, 0.0f);
    profile.toPolar();
    swapCoordinates(profile);
    profile.sort(KxSortAscending, KxSortAscending);
}

void fromAngleAndRadius(KxProfile& profile, const KxCircle& centre) {
    swapCoordinates(profile);
    profile.toEvklid();
    profile.shift(centre.x, centre.y, 0.0f);
}

} // namespace KxMath::detail
