// The railway functions on profiles and clouds in memory with arbitrary arguments.
#include "input.h"

#include <KxMath/KxMetro.h>

#include <QtCore/QPointF>

using namespace KxMath;
using kxfuzz::Input;

namespace {

KxLine line(Input& in) {
    const float k = in.number();
    return {k, in.number()};
}

/// The apexes of the calibration object as a sensor sees them, or any points.
void calibrate(KxProfile& profile, Input& in) {
    QList<QPointF> apexes;
    const bool isObject = in.yes();
    for (int n = in.byte() % 12; n > 0; --n) {
        const auto i = static_cast<float>(apexes.size());
        const KxPointXY p = in.pointXY();
        apexes.append(isObject ? QPointF(30 * i + p.x, (apexes.size() % 2 == 0 ? 0 : 20) + p.y) : QPointF(p.x, p.y));
    }
    _KxMETRO_SensorCoord_ pose = {0, 0, 0, 0, 0, 0, in.count()};
    _KxMETRO_DbgData_ found;
    const float p1 = in.yes() ? 120.0f : in.number();
    const float p2 = in.yes() ? 20.0f : in.number();
    METRO_calcAnglesCoord(profile, p1, p2, in.number(), in.number(), pose, apexes, in.yes() ? &found : nullptr);
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
    calibrate(right, in);
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
    // The section is sampled every 0.1 mm, and far from the centre its turning makes it wide.
    constexpr float kFarthest = 1000.0f;
    const auto isFar = [](const KxPointXYZ& p) {
        return !(std::abs(p.x) < kFarthest && std::abs(p.y) < kFarthest && std::abs(p.z) < kFarthest);
    };
    if (std::none_of(rim.points.cbegin(), rim.points.cend(), isFar) && !isFar(KxPointXYZ(circle.x, 0.0f, circle.y))) {
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
