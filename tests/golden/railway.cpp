// Conicity, sensor coordinates, apexes and wheels.
#include "golden.h"

#include "shapes/crossSections.h"

#include <QtCore/QPointF>

#include <array>

using namespace KxMath;

namespace golden {

namespace {

/// A flange of a parabola, a straight flank and a tread over 135 mm, its lowest point that of the flange.
QList<KxPointXYZ> rimPoints() {
    QList<KxPointXYZ> points;
    for (int i = 0; i < 1350; ++i) {
        const float x = static_cast<float>(i) * 0.1f;
        const float flange = (x - 16.0f) * (x - 16.0f) / 8.5f;
        const float tread = 28.0f + (x - 70.0f) / 20.0f;
        points.append(KxPointXYZ(800.0f - x, flange < tread ? flange : tread, 1.0f));
    }
    return points;
}

void printConicity() {
    KxProfile wheel1, wheel2, rail1, rail2, conicity, deltaR, slope1, slope2;
    kxtool::appendConicalWheel(wheel1, 0.05f);
    kxtool::appendConicalWheel(wheel2, 0.0625f);
    kxtool::appendRoundRail(rail1, 80.0f);
    kxtool::appendRoundRail(rail2, 80.0f);
    std::array<KxProfile*, 4> placed{};
    std::array<KxProfile*, 4096> contacts1{}, contacts2{};
    int count1 = 0, count2 = 0;
    const int made =
        EquivalentConicity(wheel1, wheel2, rail1, rail2, 460.0f, 459.5f, 1442.0f, 1360.0f, 12u, conicity, deltaR,
                           slope1, slope2, placed.data(), contacts1.data(), count1, contacts2.data(), count2, 0.001f);
    Line("conicity") << made << conicity << deltaR << slope1 << slope2 << count1 << count2;
    for (KxProfile* profile : placed) {
        Line("conicity.placed") << *profile;
        delete profile;
    }
    QList<KxPointXY> points;
    for (std::size_t i = 0; i < static_cast<std::size_t>(count1); ++i) {
        for (KxProfile* const contact : {contacts1[i], contacts2[i]}) {
            points.append(contact->points);
            delete contact;
        }
    }
    Line("conicity.contacts") << points;
}

/// The calibration object as seen by a sensor of placement 2: straight flanks between these turning points.
void printCalibration() {
    const QList<KxPointXY> knots{{-80.75f, 213.4272f},   {-67.3396f, 239.7931f}, {-53.8717f, 225.5428f},
                                 {-40.4037f, 252.0218f}, {-26.9358f, 237.7714f}, {-13.4679f, 264.2504f},
                                 {0.0f, 250.0f},         {26.5839f, 302.2661f},  {49.2815f, 272.3734f},
                                 {81.3145f, 317.4631f},  {98.5f, 294.8298f},     {99.0f, 294.8298f}};
    Source source(12);
    KxProfile profile;
    int next = 1;
    for (float x = -80.75f; x < 98.5f; x += 0.1875f) {
        next += x > knots[next].x ? 1 : 0;
        const KxPointXY& a = knots[next - 1];
        const KxPointXY& b = knots[next];
        profile.points.append(KxPointXY(x, a.y + (x - a.x) / (b.x - a.x) * (b.y - a.y) + source.value() / 4096.0f));
    }
    _KxMETRO_SensorCoord_ coord{0, 0, 0, 0, 0, 0, 2};
    _KxMETRO_DbgData_ dbg{};
    Line line("calibration");
    line << METRO_calcAnglesCoord(profile, 48.0f, 14.4f, -0.25f, 500.0f, coord, {}, &dbg) << coord.x << coord.y
         << coord.z << coord.alpha << coord.beta << coord.gamma << dbg.apexCount;
    for (int i = 0; i < dbg.apexCount; ++i) {
        line << dbg.apexX[i] << dbg.apexY[i] << dbg.lineK[i] << dbg.lineB[i];
    }
}

} // namespace

void printRailway() {
    printConicity();
    printCalibration();

    _KxMETRO_SensorCoord_ coord{1.5f, -250.25f, 33.0f, 10.5f, 46.75f, 27.1f, 1};
    for (const int position : {1, 2, 3, 4, 5}) {
        coord.position = position;
        KxProfile profile;
        profile.points = profilePoints(9, 300, 60, true);
        KxPointCloud<KxPointXYZ> placed, rolled;
        METRO_XYtoXYZ(profile, placed, coord);
        Line("coordinates") << placed;
        METRO_XYtoXYZ(profile, rolled, coord, 430.0f, 2.5f, 7);
        Line("coordinates.rolled") << rolled;
    }

    KxProfile ridges, apexes;
    for (int i = 0; i < 640; ++i) {
        const int phase = i % 160;
        ridges.points.append(
            KxPointXY(static_cast<float>(i) * 0.1f, static_cast<float>(phase < 80 ? phase : 160 - phase) * 0.12f));
    }
    QList<KxLine> lines;
    Line line("apexes");
    line << METRO_detectApexes(ridges, apexes, lines, 0.3f) << apexes;
    for (const KxLine& flank : std::as_const(lines)) {
        line << flank;
    }

    KxProfile left, right;
    left.points = profilePoints(10, 400, 70, false);
    right.points = profilePoints(11, 400, 70, false);
    Line("wheels.distance") << METRO_calcWheelsDist(left, right, KxLine(0.01f, 15), KxLine(-0.02f, 14), 1360.0f);

    std::array<KxPointCloud<KxPointXYZ>, 3> arcs;
    for (int i = 0; i < 60; ++i) {
        for (int arc = 0; arc < 3; ++arc) {
            const float x = static_cast<float>(arc * 100 - 100 + i);
            arcs[static_cast<std::size_t>(arc)].points.append(
                KxPointXYZ(x, x * x / 860.0f, static_cast<float>((i - 30) * (i - 30))));
        }
    }
    KxCircle circle;
    METRO_calcWheel(arcs[0], arcs[1], arcs[2], circle);
    Line("wheel.circle") << circle;
    KxPointCloud<KxPointXYZ> rim;
    rim.points = rimPoints();
    _WheelProfileValues values{};
    KxProfile measured;
    METRO_calcWheelParameters(rim, KxCircle(0, 0, 430), &values, &measured);
    Line("wheel.parameters") << values.heightAt70 << values.xAtLevel18 << values.widthLevel2ToH13 << values.heightExcess
                             << measured;
}

} // namespace golden
