// Chains of operations on profiles with arbitrary arguments.
#include "input.h"

#include <KxMath/KxInterpolant.h>
#include <KxMath/KxProfile.h>

#include <QtCore/QRectF>

#include <array>
#include <vector>

using namespace KxMath;
using kxfuzz::Input;

namespace {

constexpr int kMaxPoints = 200;
constexpr int kMaxOperations = 12;
constexpr int kMaxDegree = 50;

/// The arguments of one operation.
struct Arguments {
    std::array<float, 8> n;
    int w;
    int v;
    bool flag;

    explicit Arguments(Input& in) {
        for (float& value : n) {
            value = in.number();
        }
        w = in.count();
        v = in.count();
        flag = in.yes();
    }
};

/// Enlarges profiles that are written by index.
void enlarge(KxProfile& out, KxProfile& source) {
    while (out.size() < source.size()) {
        out.points.append(KxPointXY(0, 0));
    }
}

bool isLongSampling(KxProfile& profile, float step) {
    return kxfuzz::isLongWalk(kxfuzz::extentOf(profile.points, &KxPointXY::x), step);
}

void filter(KxProfile& profile, KxProfile& other, const Arguments& a, std::uint8_t operation) {
    KxProfile& out = a.flag ? profile : other;
    enlarge(out, profile);
    const KxLine line(a.n[0], a.n[1]);
    switch (operation % 16) {
    case 0:
        profile.kihFilter20(out, a.n[0]);
        break;
    case 1:
        profile.medFilt(out, a.w, 0);
        break;
    case 2:
        profile.diffFilt(out, a.w);
        break;
    case 3:
        enlarge(out, other);
        profile.calcDistance(other, out, a.w, 0, a.v > 0);
        break;
    case 4:
        profile.addLineSegments(out, a.w, 0);
        break;
    case 5:
        profile.addParallelLine(out, a.w, 0, a.n[0]);
        break;
    case 6:
        profile.addLineSegmentsWithMMWindow(out, a.n[0]);
        break;
    case 7:
        profile.wndFilter(a.w);
        break;
    case 8:
        profile.splashFilter(out, a.n[0], a.n[1]);
        break;
    case 9:
        profile.splashFilterPolar(out, a.n[0], a.n[1], a.n[2]);
        break;
    case 10:
        profile.wndFilterPolar(out, a.n[0], std::min(a.w, 4096), a.v); // every window is visited to its end
        break;
    case 11:
        profile.removeNoise(a.w, a.v, a.n[0], a.n[1]);
        break;
    case 12:
        profile.removeHighLevel(line);
        break;
    case 13:
        profile.removeLowLevel(line);
        break;
    case 14:
        profile.removeLineParts(a.w, a.n[0], a.n[1], a.v);
        break;
    default:
        profile.removeDuplicates();
        break;
    }
}

void interpolate(KxProfile& profile, KxProfile& other, const Arguments& a) {
    const auto type = static_cast<_KxInterpolantType_>(a.v);
    KxInterpolant spline(other, type);
    kxfuzz::require(spline.count == 0 || spline.count == other.size());
    spline.calcY(a.n[3]);
    if (!isLongSampling(other, a.n[0])) {
        spline.generatePointCloud(profile, a.n[0], a.n[1], a.n[2]);
    }
    if (!isLongSampling(profile, a.n[4])) {
        profile.interpolate(a.n[4], a.n[5], a.n[6], type);
    }
}

void calculate(KxProfile& profile, KxProfile& other, const Arguments& a, std::uint8_t operation) {
    switch (operation % 8) {
    case 0:
        profile.polynomFit(static_cast<int>(static_cast<unsigned>(a.w) % (kMaxDegree + 1)));
        break;
    case 1:
        profile = profile.derivative();
        break;
    case 2: {
        std::vector<float> zeros(static_cast<size_t>(std::max(profile.size() - 1, 0)));
        kxfuzz::require(profile.findZeros(zeros.data()) <= static_cast<int>(zeros.size()));
        break;
    }
    case 3:
        profile.calcCorrelation();
        break;
    case 4:
        if (!profile.isEmpty()) {
            const auto n = static_cast<unsigned>(profile.size());
            // The refined form halves its step until the area settles, which takes long for large areas.
            const bool isPlain = a.flag || !(kxfuzz::extentOf(profile.points, &KxPointXY::x) < 10.0f) ||
                                 !(kxfuzz::extentOf(profile.points, &KxPointXY::y) < 10.0f);
            profile.integral(static_cast<int>(static_cast<unsigned>(a.w) % n),
                             static_cast<int>(static_cast<unsigned>(a.v) % n), isPlain);
        }
        break;
    case 5: {
        int segment = 0;
        profile.calcY(a.n[0], a.n[1], a.flag ? &segment : nullptr);
        break;
    }
    case 6:
        interpolate(profile, other, a);
        break;
    default:
        profile.findNearestToX(a.n[0], a.flag);
        break;
    }
}

void detect(KxProfile& profile, KxProfile& other, Arguments& a, std::uint8_t operation) {
    KxProfile& out = a.flag ? profile : other;
    KxLine line(a.n[0], a.n[1]);
    switch (operation % 8) {
    case 0:
        profile.calcCutPoint(a.w, a.n[0]);
        break;
    case 1: {
        QList<int> indices;
        profile.detectCutPoints(out, indices, a.w, a.n[0]);
        break;
    }
    case 2:
        profile.detectWeld(line, a.n.data());
        break;
    case 3: {
        KxCircle circle;
        profile.detectCircle(circle);
        break;
    }
    case 4:
        // A step of a millionth of a degree turns the profile 180 million times.
        if (!kxfuzz::isLongWalk(180.0f, a.n[3], 2000.0f) && !kxfuzz::isLongWalk(180.0f, a.n[4], 2000.0f)) {
            profile.calcRect(a.n.data(), a.n.data() + 1, a.n.data() + 2, a.n[3]);
            profile.calcRect(out, a.n.data(), a.n[4]);
        }
        break;
    case 5:
        profile.detectJoint(out);
        break;
    case 6:
        profile.calcLineSegment(a.n[0], a.n[1], a.w, other, a.n[2], a.n[3], a.n[4], a.n[5]);
        break;
    default: {
        KxPointCloud<KxPointXYZ> cloud;
        for (const KxPointXY& p : std::as_const(profile.points)) {
            cloud.points.append(KxPointXYZ(p.x, p.y, a.n[0]));
        }
        other.makeCloudTopView(cloud, a.n[1]);
        break;
    }
    }
}

void move(KxProfile& profile, KxProfile& other, Arguments& a, std::uint8_t operation) {
    KxPointXY point(a.n[0], a.n[1]);
    int indices[4];
    QRectF rect;
    switch (operation % 8) {
    case 0:
        profile.rotateFixed(a.n[2], point);
        break;
    case 1:
        profile.toPolar();
        profile.rotatePolar(a.n[0]);
        break;
    case 2:
        profile.toEvklid();
        break;
    case 3:
        profile.trim(a.n[0], a.n[1], a.n[2], a.n[3]);
        break;
    case 4:
        if (profile.calcRange(rect, indices)) {
            profile.trim(a.flag ? rect : rect.normalized());
        }
        break;
    case 5:
        profile.sort(KxSortAscending, KxSortAscending);
        break;
    case 6:
        profile.copyFromXYPointsBuffer(a.n.data(), static_cast<unsigned short>(a.n.size() / 2));
        break;
    default:
        std::swap(profile.points, other.points);
        break;
    }
}

void change(KxProfile& profile, KxProfile& other, Input& in) {
    Arguments arguments(in);
    const std::uint8_t operation = in.byte();
    switch (operation / 16 % 4) {
    case 0:
        filter(profile, other, arguments, operation);
        break;
    case 1:
        calculate(profile, other, arguments, operation);
        break;
    case 2:
        detect(profile, other, arguments, operation);
        break;
    default:
        move(profile, other, arguments, operation);
        break;
    }
    for (KxProfile* const p : {&profile, &other}) {
        p->points.resize(std::min<qsizetype>(p->points.size(), qsizetype{4} * kMaxPoints));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
    Input in(data, size);
    KxProfile profiles[2];
    for (KxProfile& profile : profiles) {
        kxfuzz::appendPoints(profile.points, in, kMaxPoints, &Input::pointXY);
    }
    for (int n = 0; n < kMaxOperations && !in.isEmpty(); ++n) {
        change(profiles[0], profiles[1], in);
    }
    return 0;
}
