#include "states.h"

#include "shapes/crossSections.h"

#include <QtCore/QPointF>

#include <algorithm>

namespace faults {

namespace {

/// The profiles of a wheel-set on its track, and what the conicity is made of.
struct TrackState {
    bool isShared = false;
    KxProfile wheel1, wheel2, rail1, rail2;
    KxProfile conicity, deltaR, slope1, slope2;
    std::array<KxProfile*, 4> placed{};
    std::array<KxProfile*, 2048> contacts1{}, contacts2{};
    int count1 = 0, count2 = 0;

    ~TrackState() { release(); }

    void prepare() {
        release();
        for (KxProfile* const each : {&wheel1, &wheel2, &rail1, &rail2, &conicity, &deltaR, &slope1, &slope2}) {
            clear(*each);
        }
        takeEvery(4, wheel1, [](KxProfile& p) { kxtool::appendConicalWheel(p, 0.05f); });
        takeEvery(4, wheel2, [](KxProfile& p) { kxtool::appendConicalWheel(p, 0.0625f); });
        takeEvery(4, rail1, [](KxProfile& p) { kxtool::appendRoundRail(p, 80); });
        takeEvery(4, rail2, [](KxProfile& p) { kxtool::appendRoundRail(p, 82); });
    }

    void addTo(Digest& digest) const {
        for (const KxProfile* const each : {&conicity, &deltaR, &slope1, &slope2}) {
            digest.add(each->points);
        }
        for (const KxProfile* const each : placed) {
            digest.add(each->points);
        }
        digest.add(count1);
        digest.add(count2);
        for (std::size_t i = 0; i < static_cast<std::size_t>(count1); ++i) {
            digest.add(contacts1[i]->points);
            digest.add(contacts2[i]->points);
        }
    }

private:
    template <typename Append>
    static void takeEvery(int step, KxProfile& profile, Append append) {
        KxProfile all;
        append(all);
        for (qsizetype i = 0; i < all.points.size(); i += step) {
            profile.points.append(all.points[i]);
        }
    }

    void release() {
        for (auto* const list : {placed.data(), placed.data() + 1, placed.data() + 2, placed.data() + 3}) {
            delete *list;
            *list = nullptr;
        }
        for (auto* const contacts : {&contacts1, &contacts2}) {
            for (KxProfile*& contact : *contacts) {
                delete contact;
                contact = nullptr;
            }
        }
        count1 = count2 = 0;
    }
};

/// Profiles of sensors and clouds of a rim.
struct SensorState {
    bool isShared = false;
    KxProfile ridges, left, right, out, copy;
    KxPointCloud<KxPointXYZ> cloud, rim, copyOfRim;
    QList<KxLine> lines;
    QList<QPointF> apexes;
    _KxMETRO_SensorCoord_ coord{};
    std::array<float, 8> values{};
    int number = 0;

    void prepare() {
        for (KxProfile* const each : {&ridges, &left, &right, &out, &copy}) {
            clear(*each);
        }
        for (int i = 0; i < 240; ++i) {
            const int phase = i % 80;
            ridges.points.append(
                KxPointXY(0.2f * static_cast<float>(i), 0.24f * static_cast<float>(phase < 40 ? phase : 80 - phase)));
        }
        left.points = wave(80);
        right.points = wave(90, false);
        clear(cloud);
        cloud.points = layers(30, 3);
        clear(rim);
        for (int i = 0; i < 270; ++i) {
            const float x = 0.5f * static_cast<float>(i);
            const float flange = (x - 16) * (x - 16) / 8.5f;
            rim.points.append(KxPointXYZ(800 - x, std::min(flange, 28 + (x - 70) / 20), 1));
        }
        clear(copyOfRim);
        if (isShared) {
            copy.points = left.points;
            copyOfRim.points = rim.points;
        }
        lines = {};
        apexes = {};
        for (const auto& [x, y] : {std::pair(-53.9, 225.5),
                                   {-40.4, 252.0},
                                   {-26.9, 237.8},
                                   {-13.5, 264.3},
                                   {0.0, 250.0},
                                   {26.6, 302.3},
                                   {49.3, 272.4},
                                   {81.3, 317.5}}) {
            apexes.append(QPointF(x, y));
        }
        coord = {1.5f, -250.25f, 33.0f, 0.5f, 0.75f, 0.25f, 2};
        values.fill(0);
        number = 0;
    }

    void addTo(Digest& digest) const {
        for (const KxProfile* const each : {&left, &right, &out, &copy}) {
            digest.add(each->points);
        }
        digest.add(cloud.points);
        digest.add(rim.points);
        digest.add(copyOfRim.points);
        digest.add(lines);
        digest.addAll({coord.x, coord.y, coord.z, coord.alpha, coord.beta, coord.gamma});
        for (const float value : values) {
            digest.add(value);
        }
        digest.add(number);
    }
};

template <typename Act>
Operation on(const char* name, Act act) {
    return operation<SensorState>(name, act);
}

} // namespace

std::vector<Operation> railwayOperations() {
    using S = SensorState;
    return {
        operation<TrackState>("EquivalentConicity",
                              [](TrackState& s) {
                                  EquivalentConicity(s.wheel1, s.wheel2, s.rail1, s.rail2, 460, 459.5f, 1442, 1360, 4,
                                                     s.conicity, s.deltaR, s.slope1, s.slope2, s.placed.data(),
                                                     s.contacts1.data(), s.count1, s.contacts2.data(), s.count2,
                                                     0.001f);
                              }),
        on("SensorCoordinates", [](S& s) { METRO_XYtoXYZ(s.left, s.cloud, s.coord); }),
        on("SensorCoordinatesRolled", [](S& s) { METRO_XYtoXYZ(s.left, s.cloud, s.coord, 430, 2.5f, 7); }),
        on("Apexes", [](S& s) { s.number = METRO_detectApexes(s.ridges, s.out, s.lines, 0.3f); }),
        on("CalibrationFromApexes",
           [](S& s) {
               KxProfile none;
               s.number = METRO_calcAnglesCoord(none, 48, 14.4f, -0.25f, 500, s.coord, s.apexes, nullptr);
           }),
        on("CalibrationFromProfile",
           [](S& s) { s.number = METRO_calcAnglesCoord(s.ridges, 48, 14.4f, -0.25f, 500, s.coord, {}, nullptr); }),
        on("WheelDistance",
           [](S& s) {
               s.values[0] = METRO_calcWheelsDist(s.left, s.right, {0.01f, 15}, {-0.02f, 14}, 1360);
           }),
        on("WheelDefect", [](S& s) { s.number = METRO_detectWheelDefect(s.left, 20, 0.3f, 5); }),
        on("IsWheel",
           [](S& s) {
               s.number = METRO_isWheel(s.left, {0, 2}, {0, -1}, 5);
           }),
        on("WheelCircle",
           [](S& s) {
               KxCircle circle;
               METRO_calcWheel(s.rim, s.cloud, s.rim, circle);
               s.values[0] = circle.radius;
           }),
        on("WheelParameters",
           [](S& s) {
               _WheelProfileValues values{};
               METRO_calcWheelParameters(s.rim, {0, 0, 430}, &values, &s.out);
               s.values = {values.heightAt70, values.xAtLevel18, values.widthLevel2ToH13, values.heightExcess};
           }),
        on("WheelDetector",
           [](S& s) {
               KxWheelDetector detector({.level = {0, 2}, .low = {0, -4}, .maxParts = 4}, KxModeWithLowLine);
               s.number = detector.add(s.left);
               KxBestWheelProfile best({0, 2});
               best.add(s.right);
               s.out.points = best.profile().points;
           }),
    };
}

} // namespace faults
