#include "support/testing.h"

using namespace testing_support;

TEST(XYtoXYZ, DoublePrecisionRoundedOnce) {
    forNasty(52, 300, [&](Nasty& nasty) {
        _KxMETRO_SensorCoord_ k{nasty.value(), nasty.value(), nasty.value(), nasty.value(),
                                nasty.value(), nasty.value(), nasty.below(6)};
        const float radius = nasty.value(), step = nasty.value();
        const int index = nasty.pick(std::array{0, 1, -3, 700, INT_MIN});
        KxProfile p;
        p.points = nasty.points<KxPointXY>(nasty.size(20));
        for (const bool isRolling : {false, true}) {
            const auto angle = [&](float v) { // the product before the quotient
                return isRolling ? double(v) : double(v) * 3.1415927410125732 / 180.0;
            };
            const double a = angle(k.alpha), b = angle(k.beta), c = angle(k.gamma);
            const double R = double(radius), s = double(step), phi = -(s / R) * index;
            const double Dx = isRolling ? R * std::cos(phi) - index * s : 0.0;
            const double Dz = isRolling ? R * std::sin(phi) : 0.0;
            KxPointCloud<KxPointXYZ> cloud;
            cloud.points = {KxPointXYZ(7, 8, 9)}; // stays
            isRolling ? METRO_XYtoXYZ(p, cloud, k, radius, step, index) : METRO_XYtoXYZ(p, cloud, k);
            ASSERT_EQ(cloud.size(), 1 + p.size());
            ASSERT_EXACT(cloud.points[0], exact(7, 8, 9));
            for (int i = 0; i < p.size(); ++i) {
                const double px = double(p.points[i].x), py = double(p.points[i].y);
                const double X =
                    (sin(a) * cos(b) * cos(c) + sin(b) * sin(c)) * px + double(k.x) + cos(a) * cos(b) * py + Dx;
                const double Y = (sin(a) * sin(b) * cos(c) - sin(c) * cos(b)) * px + double(k.y) + cos(a) * sin(b) * py;
                const double Z = cos(a) * cos(c) * px + double(k.z) - sin(a) * py + Dz;
                ASSERT_EXACT(cloud.points[i + 1], at(X, Y, Z)) << ", point " << i;
            }
        }
    });
}
