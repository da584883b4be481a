// Tasks P18 to P25: features of profiles.
#include "tasks.h"

#include <algorithm>
#include <vector>

using namespace KxMath;

namespace {

// P18. Find ridges and grooves.
QList<KxPointXY> ridgesAndGrooves(KxProfile& ordered) {
    KxProfile found;
    QList<int> indices; // entries after the first are off; use the points
    ordered.detectCutPoints(found, indices, 5, 3.0f);
    return found.points;
}

// P19. Find a gap or a step between two plates.
bool findJoint(KxProfile& profile, float& gap, float& offset) {
    KxPointCloud<KxPointXY> edges;
    if (!profile.detectJoint(edges)) {
        return false;
    }
    gap = edges.points[1].x - edges.points[0].x;
    offset = edges.points[1].y - edges.points[0].y;
    return true;
}

// P20. Find the corners between straight flanks.
QList<KxPointXY> corners(KxProfile& profile) {
    KxProfile apexes;
    QList<KxLine> lines; // of the flanks between the turns, one more than corners
    METRO_detectApexes(profile, apexes, lines, 0.5f);
    return apexes.points;
}

// P21. Find where the height changes its sign.
std::vector<float> zeros(KxProfile& profile) {
    std::vector<float> xs(size_t(std::max(profile.size(), 1))); // room for all
    xs.resize(size_t(profile.findZeros(xs.data())));
    return xs;
}

// P22. Find the point nearest to a position.
KxPointXY nearest(KxProfile& profile, float x) {
    KxPointXY best;
    for (const KxPointXY& p : std::as_const(profile.points)) {
        if (std::isnan(best.x) || std::abs(p.x - x) < std::abs(best.x - x)) {
            best = p;
        }
    }
    return best;
}

// P23. Find the top of a weld.
bool findWeld(KxProfile& profile, KxPointXY& top) {
    KxLine line;
    if (!profile.detectWeld(line, &top.x)) {
        return false;
    }
    top.y = line.b; // the lowest point of the top; the slope is not written
    return true;
}

// P24. Find the level stretch about a position.
bool levelStretch(KxProfile& ordered, float x, KxProfile& stretch) {
    return ordered.calcLineSegment(x, 0.2f, 3, stretch, kNaN, kNaN, 5.0f, kNaN); // at least 5 mm long
}

// P25. Get the size and the centre of the bounding box.
bool box(KxProfile& profile, float& width, float& height, KxPointXY& centre) {
    if (!profile.calcRange()) { // made from the points, whatever was cached
        return false;
    }
    width = profile.size_x();
    height = profile.size_y();
    return profile.calcCenterPoint(centre);
}

} // namespace

void tryFeatures() {
    const auto ridge = [](float x) { return x >= 40 && x < 43 ? 4.0f : x >= 80 && x < 83 ? -4.0f : 0.0f; };
    KxProfile ridges = sampled(120, 1.0f, ridge);
    const QList<KxPointXY> found = ridgesAndGrooves(ridges);
    expect(found.size() == 2 && isNear(found[0].x, 41, 2) && isNear(found[1].x, 81, 2), "P18");

    KxProfile plates = sampled(200, 0.1f, [](float x) { return x < 10 ? 1.0f : 2.0f; });
    plates.points.removeIf([](const KxPointXY& p) { return p.x > 9.95f && p.x < 11.05f; });
    float gap = 0, offset = 0;
    expect(findJoint(plates, gap, offset) && isNear(gap, 1.2, 0.11) && isNear(offset, 1, 0.01), "P19");

    const auto zigzag = [](float x) { return std::abs(std::remainder(x, 40.0f)); }; // turns at 20, 40, 60, 80
    KxProfile roofs = sampled(181, 0.5f, zigzag);
    const QList<KxPointXY> apexes = corners(roofs);
    expect(apexes.size() == 2 && isNear(apexes[0].x, 40, 0.3) && isNear(apexes[1].y, 20, 0.3), "P20");

    KxProfile wave = sampled(40, 0.25f, [](float x) { return std::sin(x + 0.1f); });
    expect(zeros(wave).size() == 3, "P21");
    expect(nearest(wave, 2.1f).x == 2.0f, "P22");

    KxProfile weld = sampled(101, 0.1f, [](float x) { return 3 - (x - 5) * (x - 5); });
    KxPointXY top;
    expect(findWeld(weld, top) && isNear(top.x, 5, 0.05) && isNear(top.y, 2.1, 0.2), "P23");

    KxProfile shelf = sampled(60, 0.5f, [](float x) { return x < 8 ? 0.0f : x < 20 ? 5.0f : 9.0f; });
    KxProfile stretch;
    expect(levelStretch(shelf, 12.2f, stretch) && stretch.points.first().x == 8 && stretch.points.last().x == 19.5f,
           "P24");

    float width = 0, height = 0;
    KxPointXY centre;
    expect(box(shelf, width, height, centre) && width == 29.5f && height == 9 && centre.y == 4.5f, "P25");
}
