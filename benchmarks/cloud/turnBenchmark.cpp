// Rotating clouds, compared with the definition point by point.
#include "cloud/turn.h"
#include "polar.h"

namespace kxbench {

namespace {

using KxMath::KxPointXYZ;

void turn(float& a, float& b, float degrees) {
    toPolar(a, b);
    b += degrees;
    fromPolar(a, b);
}

[[maybe_unused]] const bool isRegistered = [] {
    const auto digest = [](CloudJob& j) { return digestTurned(j.cloud.points, 0.0); };
    for (const int n : kCloudSizes) {
        const auto fill = cloudOf(randomPoints, n);
        add<CloudJob>(
            kTurn, n, "kx", 1, fill, [](CloudJob& j) { j.cloud.rotate(kTurnXY, kTurnXZ, kTurnYZ); }, digest);
        add<CloudJob>(
            kTurn, n, "peer_plain_loop", 1, fill,
            [](CloudJob& j) {
                for (KxPointXYZ& p : j.cloud.points) {
                    turn(p.x, p.y, kTurnXY);
                    turn(p.x, p.z, kTurnXZ);
                    turn(p.y, p.z, kTurnYZ);
                }
            },
            digest);
    }
    return true;
}();

} // namespace

} // namespace kxbench
