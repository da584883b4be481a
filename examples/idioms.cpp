// Idioms for what the interface makes unusual: copies, const objects, containers, appending assignments.
// docs/idioms.md explains them.
#include <KxMath/KxMath.h>

#include <algorithm>
#include <cstdio>
#include <deque>
#include <memory>
#include <utility>
#include <vector>

using namespace KxMath;

namespace {

int failures = 0;

void expect(bool holds, const char* what) {
    if (!holds) {
        std::printf("not so: %s\n", what);
        ++failures;
    }
}

// Profiles are passed and returned by value.
KxProfile lowerHalf(KxProfile profile) {
    profile.calcRange(); // the centre is that of the cached range
    profile.trimUpper(profile.calcCenterY());
    return profile;
}

KxProfile makeRamp() {
    KxProfile ramp;
    for (int i = 0; i < 10; ++i) {
        ramp.points.append(KxPointXY(float(i), float(i)));
    }
    return ramp;
}

void copies() {
    KxProfile ramp = makeRamp();
    KxProfile lower = lowerHalf(ramp);
    KxProfile lowest = lowerHalf(lowerHalf(makeRamp()));
    expect(ramp.size() == 10 && lower.size() == 5 && lowest.size() == 3, "values are independent");

    const KxProfile& fixed = ramp;
    KxProfile copy;
    copy = fixed;
    expect(copy.size() == 10, "a const profile is assigned");
}

void constAndTemporaries() {
    KxProfile ramp = makeRamp();
    const KxProfile& fixed = ramp;
    const qsizetype count = fixed.points.size(); // fixed.size() does not compile
    expect(count == 10, "fields of const objects can be read");

    KxProfile upper = makeRamp(); // line.calcFromPointCloud(makeRamp()) does not compile
    KxLine line;
    line.calcFromPointCloud(upper);
    expect(line.k == 1 && makeRamp().size() == 10, "a temporary has members, but binds to no reference");

    float highest = 0;
    for (const KxPointXY& p : std::as_const(ramp.points)) {
        highest = std::max(highest, p.y);
    }
    expect(highest == 9, "a loop that only reads");
}

void containers() {
    const KxProfile ramp = makeRamp();

    std::deque<KxProfile> profiles;
    profiles.emplace_back();
    profiles.back() = ramp;
    expect(profiles[0].size() == 10, "a deque grows in place");

    std::vector<std::unique_ptr<KxProfile>> owned;
    owned.push_back(std::make_unique<KxProfile>());
    *owned.back() = ramp;
    expect(owned[0]->size() == 10, "a vector owns pointers");

    QList<KxProfileZ> scan;
    KxProfileZ slice(12.5f);
    slice.points = ramp.points;
    scan.append(slice);
    scan.insert(0, slice);
    expect(scan.size() == 2 && scan[1].z == 12.5f, "a list of profiles with z");
}

void appendingAssignments() {
    KxProfileZ slice(1.0f);
    KxProfile ramp = makeRamp();

    slice = ramp;
    slice = ramp;
    expect(slice.size() == 20 && slice.z != slice.z, "assignments append, and z is lost");

    slice.clear();
    slice = ramp;
    slice.z = 2.5f;
    slice.calcRange();
    expect(slice.size() == 10 && slice.z == 2.5f && slice.maxY == 9, "a replacement");

    KxProfileZ same = slice;
    expect(same.size() == 10 && same.z == 2.5f, "initialising is a plain copy");
}

void sharing() {
    KxPointCloud<KxPointXYZ> cloud;
    cloud.points = {{0, 0, 0}, {1, 2, 3}};
    KxPointCloud<KxPointXYZ> other(cloud);
    other.points[1].x = 7;
    expect(cloud.points[1].x == 1, "copies of clouds are deep");

    expect(cloud.size_x() != cloud.size_x(), "the range of new points is unknown");
    cloud.calcRange();
    expect(cloud.size_x() == 1, "calcRange makes it");
}

} // namespace

int main() {
    copies();
    constAndTemporaries();
    containers();
    appendingAssignments();
    sharing();
    return failures == 0 ? 0 : 1;
}
