// A simulated scan of flat patches.
#include "shapes/patchScan.h"

#include <cmath>
#include <random>

namespace kxtool {

namespace {

/// Nearly normal numbers with the deviation 1: the sum of twelve even ones, which is the same on every platform, unlike
/// the distributions of the standard library.
class Noise {
public:
    explicit Noise(unsigned seed) : engine_(seed) {}

    float next() {
        constexpr int kSummed = 12; // the variance of one is 1/12
        double sum = -kSummed / 2.0;
        for (int i = 0; i < kSummed; ++i) {
            sum += static_cast<double>(engine_()) * 0x1p-32;
        }
        return static_cast<float>(sum);
    }

private:
    std::mt19937 engine_;
};

float heightAt(const PatchScan& scan, std::span<const Patch> patches, int profile, int point) {
    float height = scan.base;
    for (const Patch& patch : patches) {
        if (profile >= patch.firstProfile && profile <= patch.lastProfile && point >= patch.firstPoint &&
            point <= patch.lastPoint) {
            height = patch.height;
        }
    }
    return height;
}

} // namespace

void appendPatchScan(KxMath::KxProfileZSet& set, const PatchScan& scan, std::span<const Patch> patches) {
    Noise noise(scan.seed);
    for (int i = 0; i < scan.profiles; ++i) {
        KxMath::KxProfileZ profile(static_cast<float>(i) * scan.pitch);
        for (int j = 0; j < scan.points; ++j) {
            const float height = heightAt(scan, patches, i, j) + scan.noise * noise.next();
            if (!std::isnan(height)) {
                profile.points.append(KxMath::KxPointXY(scan.firstX + static_cast<float>(j) * scan.pitch, height));
            }
        }
        set.profiles.append(profile);
    }
}

} // namespace kxtool
