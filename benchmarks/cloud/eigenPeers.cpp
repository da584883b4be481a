// Eigen: one matrix for three rotations of a cloud.
#include "cloud/turn.h"

#include <Eigen/Geometry>

namespace kxbench {

namespace {

Eigen::Matrix3f turnOf() {
    const auto turn = [](float degrees, const Eigen::Vector3f& axis) {
        return Eigen::AngleAxisf(degrees * static_cast<float>(M_PI / 180.0), axis);
    };
    // A rotation from +x to +z is negative about y.
    const Eigen::Matrix3f turned = (turn(kTurnYZ, Eigen::Vector3f::UnitX()) * turn(-kTurnXZ, Eigen::Vector3f::UnitY()) *
                                    turn(kTurnXY, Eigen::Vector3f::UnitZ()))
                                       .toRotationMatrix();
    return turned;
}

[[maybe_unused]] const bool isRegistered = [] {
    for (const int n : kCloudSizes) {
        add<CloudJob>(
            kTurn, n, "peer_eigen_matrix", 1, cloudOf(randomPoints, n),
            [](CloudJob& j) {
                const Eigen::Matrix3f turn = turnOf();
                for (KxMath::KxPointXYZ& p : j.cloud.points) {
                    const Eigen::Vector3f turned = turn * Eigen::Vector3f(p.x, p.y, p.z);
                    p = {turned.x(), turned.y(), turned.z()};
                }
            },
            [](CloudJob& j) { return digestTurned(j.cloud.points, 1e-5); });
    }
    return true;
}();

} // namespace

} // namespace kxbench
