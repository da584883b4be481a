// The histogram of heights.
#include "cloud/jobs.h"

namespace kxbench {

namespace {

[[maybe_unused]] const bool isRegistered = [] {
    for (const int n : kCloudSizes) {
        struct Job : CloudJob {
            KxMath::KxLevelHistogram<KxMath::KxPointXYZ> histogram;
        };
        add<Job>(
            "level histogram", n, "kx", 1, [=](Job& j) { cloudOf(scanPoints, n)(j); },
            [](Job& j) { j.histogram.calcFromPointCloud(j.cloud, 0.05f); },
            [](Job& j) {
                int largest = 0;
                for (const int count : std::as_const(j.histogram.levels)) {
                    largest = std::max(largest, count);
                }
                return Digest{static_cast<double>(largest), 0.01}; // a height on a border may count on either side
            });
    }
    return true;
}();

} // namespace

} // namespace kxbench
