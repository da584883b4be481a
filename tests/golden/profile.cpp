// Profiles: filters, calculus, features, interpolation.
#include "golden.h"

#include <QtCore/QRectF>

#include <array>

using namespace KxMath;

namespace golden {

namespace {

using P = KxProfile&;

struct Printer {
    bool isDamaged;

    /// Calls the work with two new profiles and prints both afterwards.
    template <typename Work>
    void operator()(const char* name, Work work) const {
        KxProfile profile, out;
        profile.points = profilePoints(6, 640, 70, isDamaged);
        out.points = profile.points; // some operations work on it, some write into it, others replace it
        Line line(name);
        work(line, profile, out);
        line << out << profile;
    }
};

void printFilters(const Printer& print) {
    print("profile.kihFilter20", [](Line&, P p, P out) { p.kihFilter20(out, 0.6f); });
    print("profile.wndFilter", [](Line&, P p, P) { p.wndFilter(7); });
    print("profile.medFilt", [](Line&, P p, P out) { p.medFilt(out, 9, 0); });
    print("profile.diffFilt", [](Line&, P p, P out) { p.diffFilt(out, 5); });
    print("profile.splashFilter", [](Line& line, P p, P out) { line << p.splashFilter(out, 1.2f, 3.0f); });
    print("profile.splashFilterPolar",
          [](Line& line, P p, P out) { line << p.splashFilterPolar(out, 150.0f, 1.2f, 3.0f); });
    print("profile.wndFilterPolar", [](Line&, P p, P out) { p.wndFilterPolar(out, 0.5f, 9, 4); });
    print("profile.removeNoise", [](Line&, P p, P) { p.removeNoise(9, 3, 0.4f, 0.0f); });
    print("profile.removeLineParts", [](Line&, P p, P) { p.removeLineParts(9, 0.97f, 0.2f, 5); });
    print("profile.levels", [](Line&, P p, P) {
        p.removeHighLevel(KxLine(0.01f, 22.0f));
        p.removeLowLevel(KxLine(-0.01f, 14.0f));
    });
}

void printTransforms(const Printer& print) {
    print("profile.polar", [](Line& line, P p, P) {
        p.toPolar();
        line << p;
        p.rotatePolar(10.5f);
        p.toEvklid();
    });
    print("profile.rotated", [](Line&, P p, P) {
        p.rotateEvklid(33.3f);
        KxPointXY centre(1.5f, -2.5f);
        p.rotateFixed(-0.77f, centre);
    });
    print("profile.trimmed", [](Line& line, P p, P) {
        line << p.trimX(-30, 30) << p.trimY(2, 40) << p.trimLower(5.5f) << p.trimUpper(24.0f) << p.removeDuplicates();
        line << p.findNearestToX(3.21f, true) << p.calcCenterX() << p.calcCenterY();
    });
}

void printCalculus(const Printer& print) {
    print("profile.polynom", [](Line& line, P p, P) {
        p.trimY(-100, 100); // removes NaN heights
        std::array<double, 7> coeffs{};
        line << p.calcPolynomCoeffs(6, coeffs.data());
        for (const double c : coeffs) {
            line << c;
        }
        line << p.polynomFit(12);
    });
    print("profile.calculus", [](Line& line, P p, P) {
        KxProfile slope = p.derivative();
        std::array<float, 4096> zeros{};
        line << slope << slope.findZeros(zeros.data()) << zeros[0] << p.calcCorrelation();
        line << p.integral(10, 600, true) << p.integral(10, 600, false);
        int segment = 0;
        line << p.calcY(-12.345f, 2.0f, &segment) << segment << p.calcY(21.0f, 2.0f, nullptr);
    });
    print("profile.fits", [](Line& line, P p, P) {
        KxLine straight;
        KxCircle circle;
        p.calcLine(straight);
        p.calcCircle(circle);
        line << straight << circle;
    });
    print("profile.interpolate", [](Line& line, P p, P) { line << p.interpolate(0.07f, -30, 30, Akima); });
    print("profile.akima", [](Line& line, P p, P out) {
        KxInterpolant akima;
        line << akima.buildFromPointCloud(p, Akima);
        for (const float x : {-34.9f, -1.0f / 3, 0.0f, 17.77f}) {
            line << akima.calcY(x);
        }
        line << akima.generatePointCloud(out, 0.0371f, -33, 33);
    });
}

void printFeatures(const Printer& print) {
    print("profile.cutPoints", [](Line& line, P p, P out) {
        QList<int> indices;
        line << p.calcCutPoint(8, 0.7f) << p.detectCutPoints(out, indices, 8, 0.7f) << indices;
    });
    print("profile.shapes", [](Line& line, P p, P) {
        KxLine weld;
        KxCircle circle;
        float centre = 0;
        line << p.detectWeld(weld, &centre) << weld << centre << p.detectCircle(circle) << circle;
        float width = 0, height = 0, angle = 0;
        p.calcRange();
        p.calcRect(&width, &height, &angle, 3.0f);
        KxPointCloud<KxPointXY> corners;
        p.calcRect(corners, &angle, 3.0f);
        line << width << height << angle << corners;
        KxPointCloud<KxPointXY> joint;
        line << p.detectJoint(joint) << joint;
    });
    print("profile.segments", [](Line& line, P p, P out) {
        KxProfile piece;
        line << p.calcLineSegment(1.0f, 1.0f, 5, piece, 0, 40, 1, 100) << piece;
        p.addLineSegments(out, 5, 0);
        line << out;
        p.addParallelLine(out, 5, 0, 0.02f);
        line << out;
        line << p.addLineSegmentsWithMMWindow(out, 1.5f);
    });
    print("profile.calcDistance", [&](Line&, P p, P out) {
        KxProfile other;
        other.points = profilePoints(7, 500, 66, print.isDamaged);
        p.calcDistance(other, out, 5, 0, true);
    });
    print("profile.topView", [](Line& line, P p, P) {
        KxPointCloud<KxPointXYZ> cloud;
        cloud.points = spacePoints(8, 900);
        line << p.makeCloudTopView(cloud, 1.25f);
    });
}

} // namespace

void printProfiles() {
    for (const bool isDamaged : {false, true}) {
        printFilters({isDamaged});
        printTransforms({isDamaged});
        printCalculus({isDamaged});
        printFeatures({isDamaged});
    }
}

} // namespace golden
