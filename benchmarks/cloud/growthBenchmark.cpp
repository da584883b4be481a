// Growing clouds, compared with the vector of the standard library.
#include "cloud/growth.h"

#include <vector>

namespace kxbench {

namespace {

using KxMath::KxPointXYZ;

struct VectorJob {
    std::vector<KxPointXYZ> points;
    std::vector<KxPointXYZ> piece;
};

Digest digestVector(VectorJob& j) {
    return digestXY(j.points);
}

void addByPoints(int n) {
    add<CloudJob>(
        kGrowByPoints, n, "kx", 1, [=](CloudJob&) { randomPoints(n); },
        [=](CloudJob& j) {
            for (const KxPointXYZ& p : randomPoints(n)) {
                j.cloud.points.append(p);
            }
        },
        digestCloud);
    add<VectorJob>(
        kGrowByPoints, n, "peer_std_vector", 1, [=](VectorJob&) { randomPoints(n); },
        [=](VectorJob& j) {
            for (const KxPointXYZ& p : randomPoints(n)) {
                j.points.push_back(p);
            }
        },
        digestVector);
}

void addByClouds(int n) {
    const int size = n / kPieces;
    add<CloudJob>(
        kGrowByClouds, n, "kx", 1, [=](CloudJob& j) { j.out.points = freshCopy(randomPoints(size)); },
        [=](CloudJob& j) {
            for (int i = 0; i < kPieces; ++i) {
                j.cloud += j.out;
            }
        },
        digestCloud);
    add<VectorJob>(
        kGrowByClouds, n, "peer_std_vector", 1,
        [=](VectorJob& j) { j.piece.assign(randomPoints(size).begin(), randomPoints(size).end()); },
        [=](VectorJob& j) {
            for (int i = 0; i < kPieces; ++i) {
                j.points.insert(j.points.end(), j.piece.begin(), j.piece.end());
            }
        },
        digestVector);
}

[[maybe_unused]] const bool isRegistered = [] {
    for (const int n : kGrownSizes) {
        addByPoints(n);
        addByClouds(n);
    }
    return true;
}();

} // namespace

} // namespace kxbench
