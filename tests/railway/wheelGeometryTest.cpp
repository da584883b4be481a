// The circle of a wheel and the measures of its rim, against known shapes and against the definition written out.
#include "simulator/wheelContour.h"
#include "support/testing.h"

#include <functional>

using namespace testing_support;

namespace {

using Cloud = KxPointCloud<KxPointXYZ>;

ExactList exactValues(const _WheelProfileValues& v) {
    return exact(v.heightAt70, v.xAtLevel18, v.widthLevel2ToH13, v.heightExcess, v.value4);
}

/// A rim whose measured profile is height(x) for x from 0 to `width`, seen at a polar angle about (50, -20).
Cloud makeRim(const std::function<double(double)>& height, double spacing, double width = 135, double angleDeg = 0) {
    constexpr double kReach = 800;
    const double angle = angleDeg * M_PI / 180;
    Cloud rim;
    for (double x = 0; x <= width; x += spacing) {
        rim.points.append(
            at(50 + (kReach - x) * std::cos(angle), height(x) - 3.5, -20 + (kReach - x) * std::sin(angle)));
    }
    return rim;
}

const KxCircle kCentre(50, -20, 1);

/// Back face, tip at x = 10 and height 0, a flank of slope 1 and a level tread.
double straightWheel(double x, double tread) {
    return x < 10 ? 10 - x : std::min(x - 10, tread);
}

/// The measures step by step.
_WheelProfileValues literalParameters(Cloud& rim, KxCircle circle, KxProfile& P) {
    float minAngle = 3.4028235e38f;
    for (KxPointXYZ& p : rim.points) {
        const float dx = p.x - circle.x, dz = p.z - circle.y;
        const float arc = static_cast<float>(std::atan(static_cast<double>(dz / dx)));
        const double degrees = static_cast<double>(arc) * 180.0 / 3.1415927410125732;
        float angle = std::isnan(dz) ? kNaN : dz > 0 ? 90.0f : dz < 0 ? 270.0f : 0.0f; // for dx of 0
        if (dx != 0) {
            angle = static_cast<float>(dx < 0 ? 180.0 + degrees : degrees + (dz >= 0 ? 0.0 : 360.0));
        }
        minAngle = angle < minAngle ? angle : minAngle;
        p.x = dx;
        p.z = dz;
    }
    rim.rotateXZ(-minAngle);
    _WheelProfileValues v{kNaN, kNaN, kNaN, kNaN, kNaN};
    for (const KxPointXYZ& p : rim.points) {
        P.points.append(KxPointXY(p.x, p.y));
    }
    P.rotateEvklid(180.0f);
    P.calcRange();
    P.sort(KxSortAscending, KxSortAscending);
    for (KxPointXY& p : P.points) {
        p.y = -p.y;
    }
    P.sort(KxSortAscending, KxSortAscending);
    P.calcRange();
    P.shift(-P.minX, -P.minY, 0);
    P.calcRange();
    const float firstY = P.isEmpty() ? kNaN : P.points.value(P.getIndexX(P.minX), {kNaN, kNaN}).y;
    bool isAtBack = true;
    P.points.removeIf([&](const KxPointXY& p) { // visits the points in their order
        const bool isAbove = isAtBack && p.y > firstY;
        isAtBack = isAtBack && !(p.x >= 20.0f);
        return isAbove;
    });
    P.wndFilter(20);
    P.interpolate(0.1f, kNaN, kNaN, Akima);

    const int n = P.size();
    const auto x = [&](int i) { return P.points[i].x; };
    const auto y = [&](int i) { return P.points[i].y; };
    int k = -1;
    for (int i = 1; i <= n - 2; ++i) {
        if (y(i) > 0 && (k < 0 || y(i) < y(k))) {
            k = i;
        }
    }
    const auto crossing = [&](float level) {
        for (int i = k + 1; i <= n - 3; ++i) {
            if (y(i - 1) <= level && level <= y(i)) {
                return i;
            }
        }
        return -1;
    };
    const int a = k < 0 ? -1 : crossing(2.0f);
    if (a < 0) {
        return v;
    }
    const float xA = (x(a - 1) + x(a)) / 2;
    int at = a + 1;
    while (at <= n - 3 && !((x(at - 1) + x(at)) / 2 <= 70 && (x(at + 1) + x(at + 2)) / 2 >= 70)) {
        ++at;
    }
    if (at > n - 3) {
        return v;
    }
    const float width = x(at + 1) - x(at), t = (70 - x(at)) / width;
    const float h = width < 0.01f ? (y(at) + y(at + 1)) / 2 : (y(at + 1) - y(at)) * t + y(at);
    v.heightAt70 = h;
    const int b = crossing(h - 13.0f);
    v.widthLevel2ToH13 = (b < 0 ? kNaN : (x(b - 1) + x(b)) / 2) - xA;
    v.heightExcess = h - (h >= 29 ? 30.0f : 28.0f);
    const int c = crossing(18.0f);
    if (c >= 0) {
        const float part = (18 - y(c - 1)) / (y(c) - y(c - 1));
        v.xAtLevel18 = (x(c) - x(c - 1)) * part + x(c - 1);
    }
    return v;
}

} // namespace

TEST(CalcWheel, CircleThroughTheMarksOfThreeArcs) {
    for (const double radius : {280.0, 625.0}) {
        // Three stretches of a wheel about (20, 500), z falling to a minimum within the second one.
        const auto arc = [&](double fromDeg, double toDeg) {
            Cloud cloud;
            cloud.points = pointsFor(41, [&](int i) {
                const double t = (fromDeg + (toDeg - fromDeg) * i / 40) * M_PI / 180;
                return at(20 + radius * std::cos(t), 500 + radius * std::sin(t), std::abs(i - 13));
            });
            return cloud;
        };
        Cloud first = arc(200, 230), second = arc(250, 290), third = arc(310, 340);
        KxCircle circle, same;
        METRO_calcWheel(first, second, third, circle);
        EXPECT_LT(std::hypot(circle.x - 20, circle.y - 500, circle.radius - static_cast<float>(radius)), 0.05f);
        EXPECT_EQ(second.minZ, 0);

        // The marks decide, other points do not.
        first.points.append(KxPointXYZ(20, 700, -1000));
        second.points.append(KxPointXYZ(-9000, 9000, 0.5f));
        third.points.append(KxPointXYZ(20, 700, -1000));
        METRO_calcWheel(first, second, third, same);
        EXPECT_EXACT(same.radius, circle.radius);
        second.points[13].z = 1; // the point far off becomes the mark
        METRO_calcWheel(first, second, third, same);
        EXPECT_GT(std::fabs(same.radius - circle.radius), 1.0f);
    }
    Cloud none, nans, a, b, c;
    nans.points = {KxPointXYZ(kNaN, 1, kNaN)};
    a.points = {KxPointXYZ(0, 0, 5)};
    b.points = {KxPointXYZ(1, 1, kNaN), KxPointXYZ(2, 2, 5)};
    c.points = {KxPointXYZ(4, 4, 5)};
    KxCircle circle(1, 2, 3);
    for (Cloud* const missing : {&none, &nans}) {
        METRO_calcWheel(*missing, b, c, circle);
        METRO_calcWheel(a, *missing, c, circle);
        METRO_calcWheel(a, b, *missing, circle);
    }
    EXPECT_EXACT(exact(circle.x, circle.y, circle.radius), exact(1, 2, 3));
    METRO_calcWheel(a, b, c, circle); // points on a line
    EXPECT_EXACT(exact(circle.x, circle.y, circle.radius), ExactList(3, exact(kNaN)));
}

TEST(WheelParameters, S1002) {
    // Depth below the tip; the truth by bisection of the closed form on the flank, between tip and tread.
    const auto depth = [](double x) { return 28 - kxsim::s1002Height(x - 70); };
    const auto flankX = [&](double level) {
        double above = 15, below = 60;
        for (int i = 0; i < 60; ++i) {
            const double middle = (above + below) / 2;
            (depth(middle) < level ? above : below) = middle;
        }
        return above;
    };
    Cloud rim = makeRim(depth, 0.05);
    _WheelProfileValues v;
    METRO_calcWheelParameters(rim, kCentre, &v, nullptr);
    EXPECT_NEAR(v.heightAt70, 28, 0.01);
    EXPECT_NEAR(v.heightExcess, 0, 0.01);
    // The smoothing over 20 points reads 2.5 points ahead on a straight line: 8 of the 20 are smoothed already.
    EXPECT_NEAR(v.xAtLevel18, flankX(18) - 2.5 * 0.05, 0.02);
    EXPECT_NEAR(v.widthLevel2ToH13, flankX(15) - flankX(2), 0.15);
}

TEST(WheelParameters, EqualThePlainDefinition) {
    int complete = 0;
    forNasty(56, 300, [&](Nasty& nasty) {
        Cloud rim;
        const double spacing = 0.3 + 0.001 * nasty.below(200), tread = 10 + nasty.below(30);
        const int tilt = nasty.below(100);
        if (nasty.chance(75)) {
            const auto wave = [&](double x) { return 0.001 * nasty.below(50) + 0.0005 * tilt * std::sin(x); };
            rim = makeRim([&](double x) { return straightWheel(x, tread) + wave(x); }, spacing, 20.0 + nasty.below(110),
                          nasty.below(360));
            for (int i = 0; i < rim.size() && nasty.chance(50); ++i) {
                KxPointXYZ& p = rim.points[nasty.below(rim.size())];
                const int what = nasty.below(40);
                if (what < 8) {
                    p.y = nasty.value();
                } else if (what == 8) {
                    (nasty.chance(50) ? p.x : p.z) = nasty.chance(20) ? kNaN : static_cast<float>(nasty.below(1000));
                } else {
                    std::swap(p, rim.points[i]);
                }
            }
        } else {
            rim.points = nasty.points<KxPointXYZ>(nasty.size());
            for (KxPointXYZ& p : rim.points) { // extents that a resampling at 0.1 can take
                p.x = std::fabs(p.x) < 1000 ? p.x : 0;
                p.z = std::fabs(p.z) < 1000 ? p.z : kNaN;
            }
        }
        Cloud expectedRim = rim;
        const KxCircle circle = nasty.chance(3) ? KxCircle() : kCentre;
        KxProfile measured, expectedMeasured;
        _WheelProfileValues v;
        METRO_calcWheelParameters(rim, circle, &v, &measured);
        const _WheelProfileValues expected = literalParameters(expectedRim, circle, expectedMeasured);
        ASSERT_EXACT(exactValues(v), exactValues(expected));
        ASSERT_EXACT(exact(measured.points, rim.points), exact(expectedMeasured.points, expectedRim.points));
        complete += std::isnan(v.xAtLevel18 + v.widthLevel2ToH13) ? 0 : 1;
    });
    EXPECT_GT(complete, 50);
}
