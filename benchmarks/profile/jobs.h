// Input and output of the competitors for operations on profiles.
#pragma once

#include "digests.h"
#include "inputs.h"

#include <vector>

namespace kxbench {

using KxMath::KxPointXY;
using KxMath::KxProfile;
using Points = QList<KxPointXY>;

/// A profile, a result that starts with the same points, and the numbers that a competitor calculates.
struct ProfileJob {
    KxProfile profile;
    KxProfile out;
    std::vector<KxPointXY> flat; ///< for competitors that work on a plain array
    std::vector<float> xs;
    std::vector<float> ys;
    QList<int> positions;
    std::vector<double> values;
};

inline void fillProfile(ProfileJob& job) {
    job.profile.points = freshCopy(profilePoints());
    job.out.points = freshCopy(profilePoints());
}

/// For competitors that take numbers instead of points.
inline void fillNumbers(ProfileJob& job) {
    job.xs.reserve(kProfilePoints);
    job.ys.reserve(kProfilePoints);
    for (const KxPointXY& p : profilePoints()) {
        job.xs.push_back(p.x);
        job.ys.push_back(p.y);
    }
}

/// Profiles of a number of points, for competitors that are measured at several sizes.
inline auto profileOf(int count) {
    return [=](ProfileJob& job) { job.profile.points = freshCopy(profilePoints(count)); };
}
inline auto flatOf(int count) {
    return [=](ProfileJob& job) { job.flat.assign(profilePoints(count).cbegin(), profilePoints(count).cend()); };
}

inline Digest digestProfile(ProfileJob& job) {
    return digestXY(job.profile.points);
}
inline Digest digestFlat(ProfileJob& job) {
    return digestXY(job.flat);
}
inline Digest digestOut(ProfileJob& job) {
    return digestXY(job.out.points);
}

/// Of the results of competitors with other roundings. Ranges have different weights, because all least-squares fits have
/// the same sum.
template <typename Values>
Digest digestWithin(const Values& values, double tolerance) {
    constexpr int kStretch = 80;
    double sum = 0.0;
    int i = 0;
    for (const auto value : values) {
        sum += (1 + i / kStretch % 3) * static_cast<double>(value);
        ++i;
    }
    return {sum, tolerance};
}
inline Digest digestNearly(ProfileJob& job) {
    return digestWithin(job.values, 1e-4);
}

/// The heights of points.
inline std::vector<float> heightsOf(const Points& points) {
    std::vector<float> heights;
    for (const KxPointXY& p : points) {
        heights.push_back(p.y);
    }
    return heights;
}

/// A competitor on `fillProfile()`, twenty profiles at a time, which fit into the cache.
template <typename Work, typename Result>
void addProfile(const char* operation, const char* who, Work work, Result digest, int batch = 20) {
    add<ProfileJob>(operation, kProfilePoints, who, batch, fillProfile, work, digest);
}

/// The library on profiles of a number of points, and a competitor on a plain array of the same points.
template <typename Work, typename PeerWork>
void addBesideFlat(const char* operation, int count, Work work, const char* peer, PeerWork peerWork) {
    constexpr int kBatch = 20;
    add<ProfileJob>(operation, count, "kx", kBatch, profileOf(count), work, digestProfile);
    add<ProfileJob>(operation, count, peer, kBatch, flatOf(count), peerWork, digestFlat);
}

/// A competitor on `fillNumbers()`.
template <typename Work, typename Result>
void addOnNumbers(const char* operation, const char* who, Work work, Result digest, int batch = 20) {
    add<ProfileJob>(operation, kProfilePoints, who, batch, fillNumbers, work, digest);
}

} // namespace kxbench
