// Polar form and polar filters, compared with loops over the functions of the standard library.
#include "polar.h"
#include "profile/jobs.h"

namespace kxbench {

namespace {

void toPolar(Points& points) {
    for (KxPointXY& p : points) {
        kxbench::toPolar(p.x, p.y);
    }
}

void toEvklid(Points& points) {
    for (KxPointXY& p : points) {
        fromPolar(p.x, p.y);
    }
}

/// Angles as they are after toPolar().
void fillPolar(ProfileJob& j) {
    fillProfile(j);
    toPolar(j.profile.points);
}

/// The polar filters convert points to polar form, sort them by angle and convert them back; `count` times.
void turnThereAndBack(ProfileJob& j, int count) {
    KxMath::KxCircle circle;
    j.out.calcCircle(circle);
    j.out.shift(-circle.x, -circle.y, 0);
    toPolar(j.out.points);
    for (KxPointXY& p : j.out.points) {
        p = KxPointXY(p.y, p.x);
    }
    j.out.sort(KxMath::KxSortAscending, KxMath::KxSortAscending);
    for (int i = 0; i < count; ++i) {
        for (KxPointXY& p : j.out.points) {
            p = KxPointXY(p.y, p.x);
        }
        toEvklid(j.out.points);
        j.out.shift(circle.x, circle.y, 0);
    }
}

[[maybe_unused]] const bool isRegistered = [] {
    addProfile(
        "toPolar", "kx", [](ProfileJob& j) { j.profile.toPolar(); }, digestProfile);
    addProfile(
        "toPolar", "peer_std_functions", [](ProfileJob& j) { toPolar(j.profile.points); }, digestProfile);
    add<ProfileJob>(
        "toEvklid", kProfilePoints, "kx", 20, fillPolar, [](ProfileJob& j) { j.profile.toEvklid(); }, digestProfile);
    add<ProfileJob>(
        "toEvklid", kProfilePoints, "peer_std_functions", 20, fillPolar,
        [](ProfileJob& j) { toEvklid(j.profile.points); }, digestProfile);
    addProfile(
        "polar splash filter", "kx", [](ProfileJob& j) { j.profile.splashFilterPolar(j.out, 200, 1, 1); },
        nothing<ProfileJob>);
    addProfile(
        "polar splash filter", "limit_std_functions", [](ProfileJob& j) { turnThereAndBack(j, 1); },
        nothing<ProfileJob>);
    addProfile(
        "polar window filter", "kx", [](ProfileJob& j) { j.profile.wndFilterPolar(j.out, 0.5f, 10, 5); },
        nothing<ProfileJob>, 1);
    addProfile(
        "polar window filter", "limit_std_functions", [](ProfileJob& j) { turnThereAndBack(j, kProfilePoints); },
        nothing<ProfileJob>, 1);
    return true;
}();

} // namespace

} // namespace kxbench
