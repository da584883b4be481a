// What a user's first program does: link, call, print. Then what generic code asks of the members of a cloud.
#include <KxMath/KxMath.h>

#include <cstdio>
#include <type_traits>

// The library must not change the language standard that a user has chosen.
static_assert(EXPECTED_STANDARD == 17 ? __cplusplus == 201703L : __cplusplus > 202002L);

using Plane = KxMath::KxPointCloud<KxMath::KxPointXY>;
using Space = KxMath::KxPointCloud<KxMath::KxPointXYZ>;

// Members belong to the class of the cloud itself: both arguments must name the same class to be deduced.
template <typename Object, typename Result>
Result call(Object& object, Result (Object::*function)()) {
    return (object.*function)();
}

template <typename Object>
float& field(Object& object, float Object::*member) {
    return object.*member;
}

template <int (Plane::*Function)()>
int callBound(Plane& cloud) {
    return (cloud.*Function)();
}

static_assert(std::is_same_v<decltype(&Space::trim), void (Space::*)(float, float, float, float, float, float)>);
static_assert(std::is_standard_layout_v<Plane> && std::is_standard_layout_v<KxMath::KxProfile>);

int main() {
    KxMath::KxProfile profile;
    profile.points = {{2, 0}, {1, 1}, {0, 0}};
    profile.sort(KxMath::KxSortAscending, KxMath::KxSortAscending);
    std::printf("%s %g\n", KxMath_GetVersionString(), static_cast<double>(profile.integral(0, 2, true)));

    Plane& plane = profile;
    Space space;
    space.points = {{1, 2, 3}};
    call(space, &Space::calcRange);
    const bool isSame =
        callBound<&Plane::size>(plane) == 3 && call(plane, &Plane::size) == 3 && field(space, &Space::maxZ) == 3.0f;
    return isSame ? 0 : 1;
}
