// Tasks P1 to P9: cleaning, cutting and smoothing of profiles.
#include "tasks.h"

#include <algorithm>
#include <vector>

using namespace KxMath;

namespace {

// P1. Remove missing points.
void removeMissing(KxProfile& profile) {
    profile.points.removeIf([](KxPointXY p) { return p.isNull(); });
}

// P2. Put the points in the order of x.
void orderByX(KxProfile& profile) {
    removeMissing(profile); // P1: no point passes one whose x is NaN
    profile.sort(KxSortAscending, KxSortNone);
    profile.removeDuplicates(); // where equal x would divide by zero
}

// P3. Cut to a range of x and y.
void cut(KxProfile& profile) {
    profile.trim(-40.0f, kNaN, 40.0f, 12.0f); // NaN: no lower bound of y
    profile.calcRange();
}

// P4. Keep what lies below or above a line.
void keepBetween(KxProfile& profile, KxLine low, KxLine high) {
    profile.removeHighLevel(high); // keeps what is below
    profile.removeLowLevel(low); // keeps what is above
}

// P5. Remove narrow spikes.
bool removeSpikes(KxProfile& profile) {
    return profile.splashFilter(profile, 0.5f, 2.0f); // little more than a spike is wide; only the argument is changed
}

// P6. Remove noisy stretches before a fit.
bool fitQuietPart(KxProfile profile, KxLine& line) {
    removeMissing(profile); // P1
    profile.removeNoise(10, 2, 0.3f, 0.0f);
    return profile.calcLine(line);
}

// P7. Smooth a profile with even spacing, without the lag.
void smooth(KxProfile& profile, float spacing) {
    profile.kihFilter20(kNaN);
    profile.points.remove(0, std::min<qsizetype>(20, profile.points.size())); // these are not smoothed
    profile.shift(-10.0f * spacing, 0.0f, 0.0f);
}

// P8. Take the median of each 2 * reach + 1 heights.
void medianFilter(KxProfile& profile, qsizetype reach) {
    removeMissing(profile); // P1
    const QList<KxPointXY> raw = profile.points;
    for (qsizetype i = reach; i + reach < raw.size(); ++i) {
        std::vector<float> heights;
        for (qsizetype k = i - reach; k <= i + reach; ++k) {
            heights.push_back(raw[k].y);
        }
        std::nth_element(heights.begin(), heights.begin() + reach, heights.end());
        profile.points[i].y = heights[size_t(reach)];
    }
}

// P9. Turn a profile about a point.
void turn(KxProfile& profile, float degrees, KxPointXY centre) {
    profile.rotateFixed(degrees, centre); // counter-clockwise with y up
    profile.calcRange();
}

} // namespace

void tryCleaning() {
    KxProfile gaps;
    gaps.points = {{2, 3}, {kNaN, 1}, {1, kNaN}, {1, 2}, {1, 9}};
    KxProfile present = gaps;
    removeMissing(present);
    expect(present.size() == 3, "P1");
    orderByX(gaps);
    expect(gaps.size() == 2 && gaps.points[0].y == 2 && gaps.points[1].y == 3, "P2");

    KxProfile wide = sampled(101, 1.0f, [](float x) { return x / 4; });
    wide.shift(-50.0f, 0.0f, 0.0f);
    cut(wide);
    expect(wide.minX == -40 && wide.maxX == -2 && wide.maxY == 12, "P3");

    KxProfile band = sampled(9, 1.0f, [](float x) { return x; });
    keepBetween(band, KxLine(0, 2), KxLine(0, 6));
    expect(band.size() == 3 && band.points[0].y == 3, "P4");

    const auto roof = [](float x) { return x / 8; };
    KxProfile spiky = sampled(60, 0.5f, roof);
    spiky.points[30].y += 4;
    expect(removeSpikes(spiky) && spiky.size() < 60, "P5: the spike is found");
    expect(
        std::all_of(spiky.points.cbegin(), spiky.points.cend(), [&](const KxPointXY& p) { return p.y == roof(p.x); }),
        "P5: nothing of it is left");

    KxProfile noisy = sampled(95, 1.0f, roof);
    for (int i = 40; i < 50; ++i) {
        noisy.points[i].y += i % 2 == 0 ? 5.0f : 0.0f;
    }
    KxLine line;
    expect(fitQuietPart(noisy, line) && isNear(line.k, 0.125, 1e-5), "P6");

    KxProfile ramp = sampled(80, 0.5f, roof);
    smooth(ramp, 0.5f);
    expect(ramp.size() == 60 && isNear(ramp.points[9].y, roof(ramp.points[9].x), 0.02), "P7");

    KxProfile level = sampled(30, 1.0f, roof);
    level.points[12].y = 100;
    medianFilter(level, 2);
    expect(isNear(level.points[12].y, roof(12), 0.2), "P8");

    KxProfile corner = sampled(2, 1.0f, [](float) { return 5; });
    turn(corner, 90.0f, KxPointXY(0, 5));
    expect(isNear(corner.points[1].x, 0, 1e-5) && isNear(corner.maxY, 6, 1e-5), "P9");
}
