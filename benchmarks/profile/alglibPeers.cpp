// ALGLIB: Akima splines, polynomials and moving averages.
#include "profile/jobs.h"

#include <interpolation.h>

#include <dataanalysis.h>

namespace kxbench {

namespace {

alglib::real_1d_array arrayOf(const std::vector<float>& values) {
    alglib::real_1d_array array;
    array.setlength(static_cast<alglib::ae_int_t>(values.size()));
    std::copy(values.begin(), values.end(), array.getcontent());
    return array;
}

alglib::spline1dinterpolant splineOf(const ProfileJob& j) {
    alglib::spline1dinterpolant spline;
    alglib::spline1dbuildakima(arrayOf(j.xs), arrayOf(j.ys), spline);
    return spline;
}

void sample(ProfileJob& j) {
    const alglib::spline1dinterpolant spline = splineOf(j);
    for (double x = -40.0; x < 39.9; x += 80.0 / 3840) {
        j.values.push_back(alglib::spline1dcalc(spline, x));
    }
}

void integrate(ProfileJob& j) {
    j.values = {alglib::spline1dintegrate(splineOf(j), static_cast<double>(j.xs.back()))}; // from the first point on
}

/// The values of the polynomial of a degree at all points.
void fit(ProfileJob& j, int degree) {
    const alglib::real_1d_array xs = arrayOf(j.xs);
    alglib::ae_int_t info = 0;
    alglib::barycentricinterpolant polynomial;
    alglib::polynomialfitreport report;
    alglib::polynomialfit(xs, arrayOf(j.ys), degree + 1, info, polynomial, report);
    for (alglib::ae_int_t i = 0; i < xs.length(); ++i) {
        j.values.push_back(alglib::barycentriccalc(polynomial, xs[i]));
    }
}

[[maybe_unused]] const bool isRegistered = [] {
    addOnNumbers("Akima spline and 3840 samples", "peer_alglib", sample, digestNearly);
    addOnNumbers("refined integral", "peer_alglib", integrate, digestNearly, 10);
    for (const int degree : {5, 20}) {
        const std::string name = "polynomial fit, degree " + std::to_string(degree);
        addOnNumbers(
            name.c_str(), "peer_alglib", [=](ProfileJob& j) { fit(j, degree); }, digestNearly);
    }
    // Means of preceding points, which include no other means.
    addOnNumbers(
        "moving average", "like_alglib_sma",
        [](ProfileJob& j) {
            alglib::real_1d_array ys = arrayOf(j.ys);
            alglib::filtersma(ys, 20);
            benchmark::DoNotOptimize(ys.getcontent());
        },
        nothing<ProfileJob>);
    return true;
}();

} // namespace

} // namespace kxbench
