// What a user's first program does: link, call, print.
#include <KxMath/KxMath.h>

#include <cstdio>

int main() {
    KxMath::KxProfile profile;
    profile.points = {{2, 0}, {1, 1}, {0, 0}};
    profile.sort(KxMath::KxSortAscending, KxMath::KxSortAscending);
    std::printf("%s %g\n", KxMath_GetVersionString(), static_cast<double>(profile.integral(0, 2, true)));
}
