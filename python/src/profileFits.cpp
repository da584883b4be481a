// Lines, circles and curves through profiles, and the calculus of y over x.
#include "bindings.h"
#include "lists.h"

#include <KxInspect/KxMathTypes.h>
#include <KxInspect/SplineArea.h>
#include <KxMath/KxInterpolant.h>

#include <pybind11/numpy.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace kxpython {

using KxMath::KxCircle;
using KxMath::KxLine;
using KxMath::KxPointXY;
using KxMath::KxProfile;

namespace {

[[noreturn]] void refuseFit(const Profile& self, const char* reason) {
    const auto missing = std::ranges::count_if(self.points, [](KxPointXY p) { return p.isNull(); });
    if (missing > 0) {
        refuseResult("the profile has " + std::to_string(missing) +
                     " missing points: remove_missing() leaves them out");
    }
    refuseResult(reason);
}

/// In single precision sums keep their digits near the origin only: the points are moved there and the line back.
KxLine fittedLine(const Profile& self) {
    auto object = libraryObject(self);
    KxLine line;
    const bool isFitted = unlocked(self.points.size(), [&] {
        const KxPointXY start = object.isEmpty() ? KxPointXY(0, 0) : self.points.first();
        object.shift(-start.x, -start.y, 0.0f);
        const bool isDone = object.calcLine(line);
        line.b += start.y - line.k * start.x;
        return isDone && std::isfinite(line.k) && std::isfinite(line.b);
    });
    if (!isFitted) {
        refuseFit(self, "a line needs 2 points at different x");
    }
    return line;
}

/// From the sums in double precision, over all points.
float rmsOf(const QList<KxPointXY>& points, const KxCircle& circle) {
    double sum = 0.0;
    for (const KxPointXY& p : points) {
        const double off = std::hypot(double(p.x) - double(circle.x), double(p.y) - double(circle.y));
        const double difference = off - double(circle.radius);
        sum += difference * difference;
    }
    return static_cast<float>(std::sqrt(sum / double(points.size())));
}

Circle fittedCircle(const Profile& self) {
    auto object = libraryObject(self);
    KxCircle circle;
    const bool isFitted = unlocked(self.points.size(), [&] {
        const float x = object.calcCenterX(), y = object.calcCenterY();
        object.shift(-x, -y, 0.0f);
        const bool isDone = object.calcCircle(circle);
        circle.x += x;
        circle.y += y;
        return isDone && std::isfinite(circle.radius) && std::isfinite(circle.x) && std::isfinite(circle.y);
    });
    if (!isFitted) {
        refuseFit(self, "a circle needs 3 points that are not on one line");
    }
    return {circle.x, circle.y, circle.radius, rmsOf(self.points, circle)};
}

Circle detectedCircle(const Profile& self) {
    KxCircle circle;
    if (!found(self, [&](auto& p) { return p.detectCircle(circle); }) || !std::isfinite(circle.radius)) {
        refuseFit(self, "no circle through the points at least 1.0 above the lowest one");
    }
    return {circle.x, circle.y, circle.radius, kNaN};
}

py::array_t<double> fittedPolynomial(const Profile& self, int degree, float about) {
    if (degree < 0 || degree > 50) {
        throw py::value_error("the degree must be 0 to 50, got " + std::to_string(degree));
    }
    py::array_t<double> coefficients(degree + 1);
    double* const to = coefficients.mutable_data();
    const bool isFitted = found(self, [=](auto& p) {
        p.shift(-about, 0.0f, 0.0f);
        return p.calcPolynomCoeffs(degree, to) &&
               std::all_of(to, to + degree + 1, [](double c) { return std::isfinite(c); });
    });
    if (!isFitted) {
        refuseFit(self, "too few points for this degree");
    }
    return coefficients;
}

void bindCurves(py::class_<Profile>& type) {
    type.def("fit_line", &fittedLine,
             doc("The line y = slope * x + intercept through all points. kx.NoResult where there is none.\n\n"
                 "The points are moved so that the first one is at the origin, and the line back, to keep its digits.",
                 {"KxProfile::calcLine", "KxLine::calcFromPointCloud"})
                 .c_str());
    type.def(
        "fit_circle", &fittedCircle,
        doc("The circle through all points, with their root mean square distance from it. kx.NoResult where there "
            "is none.\n\nThe points are moved so that the centre of their box is at the origin, and the circle back, "
            "to keep its digits.",
            {"KxProfile::calcCircle", "KxCircle::calcFromPointCloud"})
            .c_str());
    type.def("detect_circle", &detectedCircle,
             doc("As the library does it, without a move.", {"KxProfile::detectCircle"}).c_str());
    type.def(
        "fit_polynomial", &fittedPolynomial, py::arg("degree"), py::arg("about") = 0.0f,
        doc("The coefficients of a polynomial in x - about, that of the constant first, float64. High degrees need "
            "`about` in the middle of the profile.",
            {"KxProfile::calcPolynomCoeffs"})
            .c_str());
    type.def(
        "polynomial_fit",
        [](const Profile& self, int degree) {
            bool isDone = false;
            Profile fitted = changed(self, [&](auto& p) { isDone = p.polynomFit(degree); });
            if (!isDone) {
                refuseFit(self, "no polynomial of this degree");
            }
            return fitted;
        },
        py::arg("degree"), doc("With the heights of a polynomial.", {"KxProfile::polynomFit"}).c_str());
    type.def(
        "resample",
        [](const Profile& self, float step, MaybeFloat start, MaybeFloat stop) {
            if (!(step > 0.0f)) {
                throw py::value_error("the step must be above 0");
            }
            Profile clean = without(self, [](KxPointXY p) { return p.isNull(); });
            clean = changed(clean, [](auto& p) { p.removeDuplicates(); });
            if (clean.points.size() < 3) {
                refuseResult("a spline needs 3 points at different x");
            }
            return changed(clean, [=](auto& p) { p.interpolate(step, start.value, stop.value, KxMath::Akima); });
        },
        py::arg("step"), py::arg("start") = py::none(), py::arg("stop") = py::none(),
        doc("At a regular step, along an Akima spline. Missing points and those of equal x are left out before.",
            {"KxProfile::interpolate", "KxInterpolant::generatePointCloud"})
            .c_str());
}

/// y at x, a number or an array of any shape.
py::object heightsAt(const Profile& self, const py::object& x, MaybeFloat distance) {
    auto object = libraryObject(self);
    if (py::isinstance<py::float_>(x) || py::isinstance<py::int_>(x)) {
        return py::float_(double(object.calcY(x.cast<float>(), distance.value, nullptr)));
    }
    const py::array_t<float, py::array::c_style | py::array::forcecast> places(x);
    py::array_t<float> heights(std::vector<py::ssize_t>(places.shape(), places.shape() + places.ndim()));
    const float* const from = places.data();
    float* const to = heights.mutable_data();
    const py::ssize_t count = places.size();
    unlocked(count, [&] {
        for (py::ssize_t i = 0; i < count; ++i) {
            to[i] = object.calcY(from[i], distance.value, nullptr);
        }
    });
    return heights;
}

float integralOf(const Profile& self, std::optional<py::ssize_t> first, std::optional<py::ssize_t> last, bool plain) {
    const py::ssize_t count = self.points.size();
    const auto position = [count](py::ssize_t i) {
        if (i < -count || i >= count) {
            throw py::index_error("point " + std::to_string(i) + " of " + std::to_string(count));
        }
        return static_cast<int>(i < 0 ? i + count : i);
    };
    const int from = position(first.value_or(0)), to = position(last.value_or(-1));
    return found(self, [=](auto& p) { return p.integral(from, to, plain); });
}

void bindCalculus(py::class_<Profile>& type) {
    type.def("y_at", &heightsAt, py::arg("x"), py::arg("max_distance") = py::none(),
             doc("The height at a position, or at an array of them; NaN in gaps. The points must be in the order of x.",
                 {"KxProfile::calcY"})
                 .c_str());
    type.def(
        "derivative",
        [](const Profile& self) {
            Profile slopes;
            found(self, [&](auto& p) {
                slopes.points = p.derivative().points;
                return true;
            });
            for (KxPointXY& p : slopes.points) {
                p = KxPointXY(p.y, p.x);
            }
            return slopes;
        },
        doc("The slopes: x is the position and y the slope, other than in the library.", {"KxProfile::derivative"})
            .c_str());
    type.def("integral", &integralOf, py::arg("first") = py::none(), py::arg("last") = py::none(),
             py::arg("plain") = true,
             doc("The area under y(x) between two points, by default the first and the last. IndexError for a position "
                 "outside.",
                 {"KxProfile::integral"})
                 .c_str());
    type.def(
        "spline_area",
        [](const Profile& self, std::optional<float> start, std::optional<float> stop) {
            constexpr float kInfinity = std::numeric_limits<float>::infinity();
            const KxInspect::Profile profile = KxInspect::fromKxProfile(libraryObject(self));
            const auto area = KxInspect::splineArea(profile, start.value_or(-kInfinity), stop.value_or(kInfinity));
            if (!area) {
                refuseResult("no curve goes through these points, or a bound is NaN");
            }
            return *area;
        },
        py::arg("start") = py::none(), py::arg("stop") = py::none(),
        doc("The area under the smooth curve through the points, from one x to another, by default all of it. "
            "kx.NoResult "
            "where there is no curve.",
            {"splineArea"})
            .c_str());
    type.def(
        "find_zeros",
        [](const Profile& self) {
            std::vector<float> zeros(std::size_t(std::max<qsizetype>(self.points.size(), 1)));
            const int count = found(self, [&](auto& p) { return p.findZeros(zeros.data()); });
            return py::array_t<float>(count, zeros.data());
        },
        doc("The x at which y has changed its sign.", {"KxProfile::findZeros"}).c_str());
    type.def(
        "correlation", [](const Profile& self) { return found(self, [](auto& p) { return p.calcCorrelation(); }); },
        doc("Correlation of x and y, -1 to 1; NaN or infinite where there is none.", {"KxProfile::calcCorrelation"})
            .c_str());
}

} // namespace

void bindProfileFits(py::class_<Profile>& type) {
    bindCurves(type);
    bindCalculus(type);
}

} // namespace kxpython
