// Tasks R1 to R10: wheels and sensors.
#include "tasks.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QPointF>
#include <QtCore/QSettings>

#include <numbers>

using namespace KxMath;

namespace {

// R1. Ask whether a profile shows a wheel.
bool showsWheel(KxProfile& profile) {
    return METRO_isWheel(profile, KxLine(0.0f, 200.0f), 50); // more than 50 points below the line y = 200
}

// R2. Find the wheels in a recording.
int findWheels(const QString& recording, QSettings& settings) {
    int wheels = 0; // the profiles are written to NAME/WW_PP.bin in the current folder
    return METRO_detectWheels(recording, &settings, 0, &wheels) ? wheels : -1;
}

// R3. Read the profiles of a wheel that was found.
QList<KxProfileZ> wheelProfiles(const QString& recording, int wheel) {
    const KxRecordingName name(recording);
    QList<KxProfileZ> profiles;
    for (int number = 1;; ++number) {
        KxProfileZ profile;
        if (profile.KxProfile::readFromFile(name.wheelFile(wheel, number)) < 0) { // a 2-D cloud section
            return profiles;
        }
        profiles.append(profile);
    }
}

// R4. Measure the distance across a wheel pair.
float distance(KxProfile left, KxProfile right, KxLine leftReference, KxLine rightReference, float base) {
    left.sort(KxSortAscending, KxSortNone); // the first half in the list counts
    right.sort(KxSortAscending, KxSortNone);
    return METRO_calcWheelsDist(left, right, leftReference, rightReference, base); // cuts both in half
}

// R5. Measure the distances of all pairs of a train.
QList<float> distances(const QString& first, const QString& second, int wheels, QSettings& settings) {
    QList<float> distances(wheels, kNaN); // of those behind a failure nothing is written
    METRO_calcWheelsDistInTrain(first, second, wheels, &settings, distances.data()); // after R2 for both
    return distances;
}

// R6. Judge the tread of a wheel profile.
bool isTreadSound(KxProfile tread) {
    tread.calcRange();
    tread.shift(-tread.calcCenterX(), 0.0f, 0.0f); // a degree of 20 needs x about 0
    return METRO_detectWheelDefect(tread, 0, 0.2f, 5); // more than 5 points more than 0.2 off are a defect
}

// R7. Measure the flange of a rim's section.
_WheelProfileValues flangeMeasures(KxPointCloud<KxPointXYZ> section, float centreX, float centreZ) {
    _WheelProfileValues values;
    const KxCircle axle(centreX, centreZ, 0.0f); // its y is the z of the centre
    METRO_calcWheelParameters(section, axle, &values, nullptr);
    return values; // each NaN when not found
}

// R8. Find the pose of a sensor from a profile of the calibration object.
bool findPose(KxProfile& profile, _KxMETRO_SensorCoord_& pose) {
    pose.position = 2; // one that finds y too
    return METRO_calcAnglesCoord(profile, 48.0f, 14.4f, -0.25f, 500.0f, pose, {}, nullptr); // angles in radians
}

// R9. Put the points of a profile into the track frame.
void toTrackFrame(KxProfile& profile, _KxMETRO_SensorCoord_ pose, KxPointCloud<KxPointXYZ>& cloud) {
    constexpr float kDegrees = 180.0f / std::numbers::pi_v<float>;
    pose.alpha *= kDegrees; // R8 gives radians, this conversion reads degrees
    pose.beta *= kDegrees;
    pose.gamma *= kDegrees;
    METRO_XYtoXYZ(profile, cloud, pose); // appends
    cloud.calcRange();
}

// R10. Find the circle of a wheel from three stretches of it.
KxCircle wheelCircle(KxPointCloud<KxPointXYZ>& front, KxPointCloud<KxPointXYZ>& below, KxPointCloud<KxPointXYZ>& back) {
    KxCircle circle; // in x and y, through the leftmost point, the one of least z and the rightmost point
    METRO_calcWheel(front, below, back, circle);
    return circle; // NaN when there is none
}

/// A wheel at height `y` or, without one, an empty track.
KxProfile seen(bool isWheel, float y) {
    return sampled(100, 1.0f, [=](float x) { return isWheel && x >= 10 && x < 90 ? y : 400.0f; });
}

/// A recording of two wheels, of 6 and 7 profiles.
void writeRecording(const char* name, float firstY, float secondY) {
    QFile file(QString::fromLatin1(name));
    bool isWritten = file.open(QIODevice::WriteOnly);
    for (int i = 0; i < 30; ++i) {
        const bool isFirst = i >= 5 && i < 11, isSecond = i >= 18 && i < 25;
        isWritten = seen(isFirst || isSecond, isFirst ? firstY : secondY).writeToFile(file) && isWritten;
    }
    expect(isWritten, "a recording is written");
}

void tryPass() {
    writeRecording("north_11.bin", 120, 122);
    writeRecording("south_12.bin", 130, 133);
    QSettings settings("station.ini", QSettings::IniFormat);
    settings.setValue("minProfsInWheel", 5);
    settings.setValue("calibrLines2", 1000);
    for (const int sensor : {1, 2}) {
        const QString group = QStringLiteral("SENSOR%1/").arg(sensor);
        settings.setValue(group + "SN", 10 + sensor);
        settings.setValue(group + "level_k", 0);
        settings.setValue(group + "level_b", 200);
        settings.setValue(group + "minPointsIn", 20);
        settings.setValue(group + "k2", 0);
        settings.setValue(group + "b2", 100);
    }
    expect(findWheels("north_11.bin", settings) == 2 && findWheels("south_12.bin", settings) == 2, "R2");
    expect(findWheels("west_13.bin", settings) == -1, "R2: no such sensor");
    const QList<KxProfileZ> profiles = wheelProfiles("north_11.bin", 2);
    expect(profiles.size() == 7 && !profiles[6].points.isEmpty(), "R3");
    const QList<float> all = distances("north_11.bin", "south_12.bin", 3, settings);
    expect(isNear(all[0], 1050, 0.01) && isNear(all[1], 1055, 0.01) && std::isnan(all[2]), "R5");
}

/// Heights over the way inwards from the outer end: the back of the flange, its tip, a flank of slope 1, a tread.
KxPointCloud<KxPointXYZ> section() {
    KxPointCloud<KxPointXYZ> section;
    for (int i = 0; i < 2700; ++i) {
        const float x = float(i) * 0.05f;
        section.points.append(KxPointXYZ(800 - x, x < 10 ? 10 - x : std::min(x - 10, 28.0f), 0));
    }
    return section;
}

/// What a sensor at placement 2 sees of the object: straight lines between its seven apexes and half a ridge beyond.
KxProfile objectSeenBy(const _KxMETRO_SensorCoord_& pose) {
    const double b = pose.beta, c = pose.gamma; // alpha is 0
    const double ux = std::sin(b) * std::sin(c), uy = -std::sin(c) * std::cos(b), uz = std::cos(c);
    const double vx = std::cos(b), vy = std::sin(b);
    const double side = vy < 0 ? -1 : 1; // in which direction along Y the object falls away
    KxProfile corners, profile;
    const double p = 24, t = -0.25, m = 1.2;
    const double lines[9][4] = {{-p * 1.5, 0, m * p / 2, 0},
                                {-p, 0, 0, 0},
                                {-p / 2, 0, m * p / 2, 0},
                                {0, 0, 0, 0},
                                {p / 2, 0, m * p / 2, 0},
                                {p, 0, 0, 0},
                                {1.75 * p, t / 2, 0.75 * p * m, t / 2 * m},
                                {2.5 * p, t, 0, 0},
                                {3 * p, t, m * p / 2, 0}};
    for (const auto& [z, k, depth, e] : lines) { // the line Z = z + k X at Y = 500 + side (depth + e X)
        const double a = uz - k * ux, d = -k * vx, f = uy - side * e * ux, g = vy - side * e * vx;
        const double r = z - double(pose.z) + k * double(pose.x);
        const double s = 500 + side * depth - double(pose.y) + side * e * double(pose.x);
        corners.points.append(
            KxPointXY(float((r * g - s * d) / (a * g - f * d)), float((a * s - f * r) / (a * g - f * d))));
    }
    corners.calcRange();
    for (float x = corners.minX; x <= corners.maxX; x += 0.15f) {
        profile.points.append(KxPointXY(x, corners.calcY(x, kNaN, nullptr)));
    }
    return profile;
}

void tryPose() {
    constexpr float kRadians = std::numbers::pi_v<float> / 180;
    const _KxMETRO_SensorCoord_ truth{-170, 670, 15, 0, -135 * kRadians, 27 * kRadians, 2};
    KxProfile profile = objectSeenBy(truth);
    _KxMETRO_SensorCoord_ pose{};
    expect(findPose(profile, pose), "R8: a pose is found");
    expect(isNear(pose.x, truth.x, 0.2) && isNear(pose.y, truth.y, 0.2) && isNear(pose.z, truth.z, 0.2), "R8: place");
    expect(isNear(std::remainder(pose.beta - truth.beta, 2 * std::numbers::pi), 0, 0.001), "R8: beta");

    KxPointCloud<KxPointXYZ> cloud;
    toTrackFrame(profile, pose, cloud);
    expect(cloud.size() == profile.size() && isNear(cloud.maxY, 500, 0.2),
           "R9: the crests stand where the object does");
}

} // namespace

void tryRailway() {
    KxProfile wheel = seen(true, 120), track = seen(false, 0);
    expect(showsWheel(wheel) && !showsWheel(track), "R1");
    tryPass();

    KxProfile left = sampled(60, 1.0f, [](float) { return 103; }), right = sampled(60, 1.0f, [](float) { return 105; });
    expect(isNear(distance(left, right, KxLine(0, 100), KxLine(0, 101), 1360), 1367, 1e-3), "R4");

    KxProfile tread = sampled(450, 0.1f, [](float x) { return x / 20; });
    expect(isTreadSound(tread), "R6: sound");
    for (int i = 200; i < 220; ++i) {
        tread.points[i].y += 2;
    }
    expect(!isTreadSound(tread), "R6: a defect");

    const _WheelProfileValues flange = flangeMeasures(section(), 0, 0);
    expect(isNear(flange.heightAt70, 28, 0.1) && isNear(flange.xAtLevel18, 28, 0.5), "R7");
    tryPose();

    KxPointCloud<KxPointXYZ> front, below, back;
    front.points = {{-30, 40, 0}, {-20, 60, 0}};
    below.points = {{0, 10, 1}, {5, 11, 2}};
    back.points = {{20, 60, 0}, {30, 40, 0}};
    const KxCircle circle = wheelCircle(front, below, back);
    expect(isNear(circle.radius, 30, 0.01) && isNear(circle.y, 40, 0.01), "R10");
}
