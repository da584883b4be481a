// The railway functions on profiles and clouds in memory with arbitrary arguments.
#include "input.h"

#include <KxMath/KxMetro.h>

using namespace KxMath;
using kxfuzz::Input;

namespace {

KxLine line(Input& in) {
    const float k = in.number();
    return {k, in.number()};
}

void judge(Input& in) {
    KxProfile left;
    KxProfile right;
    kxfuzz::appendPoints(left.points, in, 200, &Input::pointXY);
    kxfuzz::appendPoints(right.points, in, 200, &Input::pointXY);
    METRO_isWheel(left, line(in), in.count());
    METRO_isWheel(left, line(in), line(in), in.count());
    METRO_detectWheelDefect(left, in.count(), in.number(), in.count());
    KxProfile apexes;
    QList<KxLine> lines;
    METRO_detectApexes(right, apexes, lines, in.number());
    kxfuzz::require(apexes.size() == std::max<qsizetype>(lines.size() - 1, 0));
    METRO_calcWheelsDist(left, in.yes() ? left : right, line(in), line(in), in.number());
}

/// A rim with a flange and a tread, more or less.
void appendRim(KxPointCloud<KxPointXYZ>& rim, Input& in) {
    const int points = in.byte();
    const float spacing = static_cast<float>(in.byte() % 32) / 8.0f;
    const float radius = in.yes() ? 400.0f : in.number();
    for (int i = 0; i < points; ++i) {
        const float x = static_cast<float>(i) * spacing;
        const float height = x < 40.0f ? 28.0f * std::sin(x / 13.0f) : x * 0.05f;
        rim.points.append(KxPointXYZ(radius - x, height + static_cast<float>(in.byte() % 8) / 16.0f, 0.0f));
    }
    kxfuzz::appendPoints(rim.points, in, 16, &Input::pointXYZ);
}

void measure(Input& in) {
    KxPointCloud<KxPointXYZ> rim;
    appendRim(rim, in);
    KxProfile profile;
    kxfuzz::appendPoints(profile.points, in, 40, &Input::pointXY);
    _KxMETRO_SensorCoord_ pose = {in.number(), in.number(), in.number(), in.number(),
                                  in.number(), in.number(), in.count()};
    KxPointCloud<KxPointXYZ> cloud;
    METRO_XYtoXYZ(profile, cloud, pose);
    METRO_XYtoXYZ(profile, cloud, pose, in.number(), in.number(), in.count());
    kxfuzz::require(cloud.size() == 2 * profile.size());
    KxCircle circle(in.number(), in.number(), in.number());
    METRO_calcWheel(rim, cloud, in.yes() ? rim : cloud, circle);
    if (in.yes()) {
        circle = KxCircle(0.0f, 0.0f, 400.0f);
    }
    // The section is sampled every 0.1 mm.
    constexpr float kMostMm = 500.0f;
    if (kxfuzz::extentOf(rim.points, &KxPointXYZ::x) < kMostMm &&
        kxfuzz::extentOf(rim.points, &KxPointXYZ::z) < kMostMm && std::abs(circle.x) < kMostMm &&
        std::abs(circle.y) < kMostMm) {
        _WheelProfileValues values;
        KxProfile measured;
        METRO_calcWheelParameters(rim, circle, &values, in.yes() ? &measured : nullptr);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
    Input in(data, size);
    if (in.yes()) {
        judge(in);
    } else {
        measure(in);
    }
    return 0;
}
