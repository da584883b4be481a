// Points, lines, circles, planes and vectors.
#include "golden.h"

using namespace KxMath;

namespace golden {

void printGeometry() {
    Source source(1);
    for (int round = 0; round < 4; ++round) {
        // In braces: values are drawn from left to right by every compiler.
        KxPointXY p{source.value(), source.value()};
        KxPointXY q{source.value(), source.value()};
        KxPointXYZ a{source.value(), source.value(), source.value()};
        KxPointXYZ b{source.value(), source.value(), source.value()};
        KxPointXYZ c{source.value(), source.value(), source.value()};
        Line("points.distance") << p.calcDistance(q) << a.calcDistance(b);

        KxLine line;
        line.calcFromTwoPoints(p, q);
        KxLine other{source.value(), source.value()};
        KxPointXY crossing;
        line.calcIntersection(other, crossing);
        Line("line.measures") << line << line.y(3.3f) << line.x(3.3f) << crossing << line.calcAngle(other)
                              << line.calcDistanceToPoint(crossing) << other.calcDistanceToPoint(p);

        KxPlane plane;
        plane.calcFromPoints(a, b, c);
        KxPointXYZ d{source.value(), source.value(), source.value()};
        Line("plane.measures") << plane.a << plane.b << plane.c << plane.d << plane.calcDistance(d);

        KxFreeVector u(p.x, p.y);
        KxFreeVector v(q.x, q.y);
        KxFreeVector sum;
        sum.sumVectors(u, v);
        Line("vector.measures") << u.size() << u.calcAngleBetweenVectors(v) << sum.x << sum.y;
        sum.resize(1.7f);
        Line("vector.resize") << sum.x << sum.y;
    }
    for (const int count : {3, 40, 1280}) {
        KxPointCloud<KxPointXY> cloud;
        cloud.points = profilePoints(2, count, 60, false);
        KxLine line;
        line.calcFromPointCloud(cloud);
        KxCircle circle;
        circle.calcFromPointCloud(cloud);
        KxFreeVector along;
        along.calcFromPointCloud(cloud, count / 3, 1, 4.5f);
        Line("fits") << line << circle << along.x << along.y;
    }
}

} // namespace golden
