// The histogram of the GNU Scientific Library.
#include "cloud/jobs.h"

#include <gsl/gsl_histogram.h>

#include <cmath>
#include <memory>

namespace kxbench {

namespace {

struct Free {
    void operator()(gsl_histogram* histogram) const { gsl_histogram_free(histogram); }
};

struct Job : CloudJob {
    std::unique_ptr<gsl_histogram, Free> histogram;
};

[[maybe_unused]] const bool isRegistered = [] {
    for (const int n : kCloudSizes) {
        add<Job>(
            "level histogram", n, "peer_gsl", 1, [=](Job& j) { cloudOf(scanPoints, n)(j); },
            [](Job& j) {
                const auto bins = static_cast<std::size_t>(std::ceil(j.cloud.size_y() / 0.05f)) + 1;
                j.histogram.reset(gsl_histogram_alloc(bins));
                gsl_histogram_set_ranges_uniform(j.histogram.get(), static_cast<double>(j.cloud.minY),
                                                 static_cast<double>(j.cloud.minY) + 0.05 * static_cast<double>(bins));
                for (const KxMath::KxPointXYZ& p : std::as_const(j.cloud.points)) {
                    gsl_histogram_increment(j.histogram.get(), static_cast<double>(p.y));
                }
            },
            [](Job& j) {
                return Digest{gsl_histogram_max_val(j.histogram.get()), 0.01};
            });
    }
    return true;
}();

} // namespace

} // namespace kxbench
