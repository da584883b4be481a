// Fits a circle to a profile across a shaft.
#include <KxMath/KxMath.h>
#include <cmath>
#include <cstdio>

int main() {
    KxMath::KxProfile profile;
    for (int i = -60; i <= 60; ++i) {
        const float x = float(i) / 2; // mm along the laser line
        profile.points.append(KxMath::KxPointXY(x, std::sqrt(40.0f * 40.0f - x * x)));
    }
    KxMath::KxCircle shaft;
    const bool isFitted = profile.calcCircle(shaft);
    std::printf("radius %.2f mm\n", double(shaft.radius));
    return isFitted ? 0 : 1;
}
