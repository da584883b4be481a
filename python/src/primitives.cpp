// Lines, circles, planes and directions.
#include "bindings.h"
#include "lists.h"

#include <KxMath/KxMetro.h>

#include <pybind11/stl.h>

#include <array>
#include <bit>
#include <cmath>

namespace kxpython {

using KxMath::KxCircle;
using KxMath::KxFreeVector;
using KxMath::KxLine;
using KxMath::KxPlane;
using KxMath::KxPointXY;
using KxMath::KxPointXYZ;

namespace {

using Pair = std::array<float, 2>;
using Triple = std::array<float, 3>;

KxPointXY point2(const Pair& p) {
    return {p[0], p[1]};
}

KxPointXYZ point3(const Triple& p) {
    return {p[0], p[1], p[2]};
}

/// The fields of a value as Python's constructor takes them.
py::tuple fieldsOf(const KxLine& line) {
    return py::make_tuple(line.k, line.b);
}
py::tuple fieldsOf(const Circle& circle) {
    return py::make_tuple(circle.x, circle.y, circle.radius, circle.rms);
}
py::tuple fieldsOf(const KxPlane& plane) {
    return py::make_tuple(plane.a, plane.b, plane.c, plane.d);
}
py::tuple fieldsOf(const KxFreeVector& vector) {
    return py::make_tuple(vector.x, vector.y);
}

bool haveSameBits(const py::tuple& a, const py::tuple& b) {
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (std::bit_cast<std::uint32_t>(a[i].cast<float>()) != std::bit_cast<std::uint32_t>(b[i].cast<float>())) {
            return false;
        }
    }
    return true;
}

/// Equality, pickles, copies and text of a value that its fields make up.
template <typename T>
void bindValue(py::class_<T>& type, const char* format) {
    type.def(
        "__eq__",
        [](const T& self, const py::object& other) -> py::object {
            if (!py::isinstance<T>(other)) {
                return py::reinterpret_borrow<py::object>(Py_NotImplemented);
            }
            return py::bool_(haveSameBits(fieldsOf(self), fieldsOf(other.cast<const T&>())));
        },
        py::arg("other"), "Whether both hold the same bits: NaN equals NaN.");
    type.attr("__hash__") = py::none();
    type.def("__repr__",
             [format](const T& self) { return std::string(py::str(py::str(format).attr("format")(*fieldsOf(self)))); });
    type.def("__reduce__", [](const py::object& self) {
        return py::make_tuple(py::type::of(self), fieldsOf(self.cast<const T&>()));
    });
}

void bindLine(py::module_& module) {
    py::class_<KxLine> type(module, "Line", "The line y = slope * x + intercept.");
    type.def(py::init<float, float>(), py::arg("slope"), py::arg("intercept"))
        .def_readonly("slope", &KxLine::k, "The change of y per mm of x.")
        .def_readonly("intercept", &KxLine::b, "y at x = 0, mm.")
        .def_static(
            "through",
            [](const Pair& first, const Pair& second) {
                KxLine line;
                KxPointXY p = point2(first), q = point2(second);
                if (!line.calcFromTwoPoints(p, q)) {
                    refuseResult("the points are less than 1e-5 apart in x");
                }
                return line;
            },
            py::arg("first"), py::arg("second"),
            doc("The line through two points. kx.NoResult for an upright one.", {"KxLine::calcFromTwoPoints"}).c_str())
        .def(
            "y_at", [](KxLine self, float x) { return self.y(x); }, py::arg("x"),
            doc("The height at x, mm.", {"KxLine::y"}).c_str())
        .def(
            "x_at", [](KxLine self, float y) { return self.x(y); }, py::arg("y"),
            doc("The position of a height, mm; infinite or NaN on a level line.", {"KxLine::x"}).c_str())
        .def(
            "intersection",
            [](KxLine self, KxLine other) {
                KxPointXY point;
                if (!KxLine::calcIntersection(self, other, point)) {
                    refuseResult("the lines are parallel");
                }
                return pointOf(point);
            },
            py::arg("other"),
            doc("Where both lines meet. kx.NoResult for parallel ones.", {"KxLine::calcIntersection"}).c_str())
        .def(
            "angle", [](KxLine self, KxLine other) { return KxLine::calcAngle(self, other); }, py::arg("other"),
            doc("The angle from the other line to this one.", {"KxLine::calcAngle"}).c_str())
        .def(
            "distance",
            [](KxLine self, const Pair& point) {
                KxPointXY p = point2(point);
                return KxLine::calcDistanceToPoint(self, p);
            },
            py::arg("point"), doc("The distance of a point.", {"KxLine::calcDistanceToPoint"}).c_str());
    bindValue(type, "Line(slope={:g}, intercept={:g})");
}

void bindCircle(py::module_& module) {
    py::class_<Circle> type(module, "Circle", "A circle in the plane of a profile, mm.");
    type.def(py::init([](float x, float y, float radius, float rms) {
                 return Circle{x, y, radius, rms};
             }),
             py::arg("x"), py::arg("y"), py::arg("radius"), py::arg("rms") = kNaN)
        .def_readonly("x", &Circle::x, "Of the centre, mm.")
        .def_readonly("y", &Circle::y, "Of the centre, mm.")
        .def_readonly("radius", &Circle::radius, "mm")
        .def_readonly("rms", &Circle::rms,
                      "Root mean square distance of the fitted points from it; NaN without a fit.");
    bindValue(type, "Circle(x={:g}, y={:g}, radius={:g}, rms={:g})");
}

void bindPlane(py::module_& module) {
    py::class_<KxPlane> type(module, "Plane", "The plane a * x + b * y + c * z + d = 0.");
    type.def(py::init([](float a, float b, float c, float d) {
                 KxPlane plane;
                 plane.a = a;
                 plane.b = b;
                 plane.c = c;
                 plane.d = d;
                 return plane;
             }),
             py::arg("a"), py::arg("b"), py::arg("c"), py::arg("d"))
        .def_readonly("a", &KxPlane::a, "In a x + b y + c z + d = 0.")
        .def_readonly("b", &KxPlane::b, "In a x + b y + c z + d = 0.")
        .def_readonly("c", &KxPlane::c, "In a x + b y + c z + d = 0.")
        .def_readonly("d", &KxPlane::d, "In a x + b y + c z + d = 0.")
        .def_static(
            "through",
            [](const Triple& first, const Triple& second, const Triple& third) {
                KxPlane plane;
                KxPointXYZ p = point3(first), q = point3(second), r = point3(third);
                plane.calcFromPoints(p, q, r);
                if (plane.a == 0 && plane.b == 0 && plane.c == 0) {
                    refuseResult("the points are on one line");
                }
                return plane;
            },
            py::arg("first"), py::arg("second"), py::arg("third"),
            doc("The plane through three points. kx.NoResult for points on one line.", {"KxPlane::calcFromPoints"})
                .c_str())
        .def(
            "distance",
            [](KxPlane self, const Triple& point) {
                KxPointXYZ p = point3(point);
                return KxPlane::calcDistance(self, p);
            },
            py::arg("point"), doc("The distance of a point.", {"KxPlane::calcDistance"}).c_str())
        .def(
            "distances",
            [](KxPlane self, const Cloud& cloud) {
                py::array_t<float> distances(cloud.points.size());
                float* to = distances.mutable_data();
                for (KxPointXYZ p : cloud.points) {
                    *to++ = KxPlane::calcDistance(self, p);
                }
                return distances;
            },
            py::arg("cloud"), "The distances of all points of a cloud, see distance().");
    bindValue(type, "Plane(a={:g}, b={:g}, c={:g}, d={:g})");
}

void bindVector(py::module_& module) {
    py::class_<KxFreeVector> type(module, "Vector", "A direction in the plane of a profile.");
    type.def(py::init<float, float>(), py::arg("x"), py::arg("y"))
        .def_readonly("x", &KxFreeVector::x, "mm")
        .def_readonly("y", &KxFreeVector::y, "mm")
        .def_property_readonly(
            "length", [](KxFreeVector self) { return self.size(); }, doc("mm", {"KxFreeVector::size"}).c_str())
        .def(
            "with_length",
            [](KxFreeVector self, float length) {
                if (!self.resize(length)) {
                    throw py::value_error("a length must be above 0");
                }
                return self;
            },
            py::arg("length"), doc("The vector with another length.", {"KxFreeVector::resize"}).c_str())
        .def(
            "direction_with",
            [](KxFreeVector self, KxFreeVector other) {
                KxFreeVector sum;
                if (!sum.sumVectors(self, other)) {
                    refuseResult("the vectors cancel each other");
                }
                return sum;
            },
            py::arg("other"), doc("The direction of the sum of two vectors.", {"KxFreeVector::sumVectors"}).c_str())
        .def(
            "angle",
            [](KxFreeVector self, KxFreeVector other) { return KxFreeVector::calcAngleBetweenVectors(self, other); },
            py::arg("other"), doc("The angle between two vectors.", {"KxFreeVector::calcAngleBetweenVectors"}).c_str())
        .def_static(
            "along",
            [](const Profile& profile, int start, int direction, float length) {
                KxFreeVector vector;
                auto object = libraryObject(profile);
                if (!vector.calcFromPointCloud(object, start, direction, length)) {
                    refuseResult("the profile has no such walk");
                }
                return vector;
            },
            py::arg("profile"), py::arg("start"), py::arg("direction"), py::arg("length"),
            doc("The direction in which a profile leaves a point.", {"KxFreeVector::calcFromPointCloud"}).c_str());
    bindValue(type, "Vector(x={:g}, y={:g})");
}

} // namespace

void bindPrimitives(py::module_& module) {
    bindLine(module);
    bindCircle(module);
}

void bindDirections(py::module_& module) {
    module.def(
        "wheel_circle",
        [](const Cloud& first, const Cloud& second, const Cloud& third) {
            auto left = libraryObject(first);
            auto bottom = libraryObject(second);
            auto right = libraryObject(third);
            KxCircle circle; // all NaN
            KxMath::METRO_calcWheel(left, bottom, right, circle);
            if (std::isnan(circle.radius)) {
                refuseResult("the clouds give no three points that are on a circle");
            }
            return Circle{circle.x, circle.y, circle.radius, kNaN};
        },
        py::arg("first"), py::arg("second"), py::arg("third"),
        doc("The circle of a wheel through three of its points. kx.NoResult where there is none.", {"METRO_calcWheel"})
            .c_str());
    bindPlane(module);
    bindVector(module);
}

} // namespace kxpython
