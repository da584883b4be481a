// Akima splines of the GNU Scientific Library.
#include "profile/jobs.h"

#include <gsl/gsl_spline.h>

#include <memory>

namespace kxbench {

namespace {

/// A spline through the points of a job with its look-up cache.
class GslSpline {
public:
    explicit GslSpline(const ProfileJob& j) : xs_(j.xs.begin(), j.xs.end()), ys_(j.ys.begin(), j.ys.end()) {
        gsl_spline_init(spline_.get(), xs_.data(), ys_.data(), xs_.size());
    }

    double at(double x) { return gsl_spline_eval(spline_.get(), x, cursor_.get()); }
    double area() { return gsl_spline_eval_integ(spline_.get(), xs_.front(), xs_.back(), cursor_.get()); }

private:
    std::vector<double> xs_;
    std::vector<double> ys_;
    std::unique_ptr<gsl_spline, void (*)(gsl_spline*)> spline_{gsl_spline_alloc(gsl_interp_akima, xs_.size()),
                                                               gsl_spline_free};
    std::unique_ptr<gsl_interp_accel, void (*)(gsl_interp_accel*)> cursor_{gsl_interp_accel_alloc(),
                                                                           gsl_interp_accel_free};
};

[[maybe_unused]] const bool isRegistered = [] {
    for (const char* const name : {"refined integral", "area under the spline"}) {
        addOnNumbers(
            name, "peer_gsl_akima", [](ProfileJob& j) { j.values = {GslSpline(j).area()}; }, digestNearly, 10);
    }
    addOnNumbers(
        "Akima spline and 3840 samples", "peer_gsl_akima",
        [](ProfileJob& j) {
            GslSpline spline(j);
            for (double x = -40.0; x < 39.9; x += 80.0 / 3840) {
                j.values.push_back(spline.at(x));
            }
        },
        digestNearly);
    return true;
}();

} // namespace

} // namespace kxbench
