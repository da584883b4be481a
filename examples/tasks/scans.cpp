// Tasks S1 to S6: scans, which are profiles with a position.
#include "tasks.h"

using namespace KxMath;

namespace {

// S1. Build a scan from profiles.
void addProfile(KxProfileZSet& scan, KxProfile& profile, float z) {
    KxProfileZ slice(profile); // initialising copies
    slice.z = z;
    scan.profiles.append(slice);
}

// S2. Replace a profile of a scan.
void replaceProfile(KxProfileZSet& scan, int i, const KxProfile& profile) {
    KxProfileZ& slice = scan.profiles[i];
    const float z = slice.z;
    slice.clear(); // an assignment appends
    slice = profile;
    slice.z = z; // it also forgets z
    slice.calcRange(); // the range stays that of the old points otherwise
    scan.calcRange();
}

// S3. Turn a scan into a cloud.
int toCloud(KxProfileZSet& scan, KxPointCloud<KxPointXYZ>& cloud) {
    const int count = scan.toPointCloud(cloud);
    cloud.calcRange();
    return count;
}

// S4. Slice a cloud into the profiles of a scan.
bool toScan(KxPointCloud<KxPointXYZ>& cloud, float step, KxProfileZSet& scan) {
    cloud.calcRange(); // a known range is trusted
    return scan.calcFromPointCloud(cloud, step) > 1; // slices all along z, empty ones too
}

// S5. Take a part of a scan along z.
int part(KxProfileZSet& scan, float from, float to, KxProfileZSet& out) {
    out.stepZ = scan.stepZ; // not copied
    return scan.getRange(from, to, out); // profiles without a position are left out
}

// S6. See a cloud from above, as an outline in x and z.
int seenFromAbove(KxPointCloud<KxPointXYZ>& cloud, float level, KxProfile& outline) {
    const int count = outline.makeCloudTopView(cloud, level); // the points at `level` or above; z becomes y
    outline.calcRange();
    return count;
}

} // namespace

void tryScans() {
    KxProfileZSet scan;
    KxProfile ramp = sampled(10, 1.0f, [](float x) { return x; });
    addProfile(scan, ramp, 0.0f);
    addProfile(scan, ramp, 0.5f);
    addProfile(scan, ramp, 1.0f);
    expect(scan.size() == 3 && scan.profiles[1].z == 0.5f && scan.profiles[1].size() == 10, "S1");

    scan.calcRange();
    KxProfile low = sampled(4, 1.0f, [](float) { return -3; });
    replaceProfile(scan, 1, low);
    KxProfileZ& replaced = scan.profiles[1];
    expect(replaced.size() == 4 && replaced.z == 0.5f && replaced.maxY == -3 && scan.minY == -3, "S2");

    KxPointCloud<KxPointXYZ> cloud;
    expect(toCloud(scan, cloud) == 24 && cloud.maxZ == 1, "S3");
    KxProfileZSet sliced;
    expect(toScan(cloud, 0.5f, sliced) && sliced.size() == 3 && sliced.profiles[1].size() == 4, "S4");

    KxProfileZSet some;
    expect(part(sliced, 0.4f, 1.0f, some) == 2 && some.stepZ == 0.5f, "S5");

    KxProfile outline;
    expect(seenFromAbove(cloud, 9.0f, outline) == 2 && outline.maxY == 1, "S6");
}
