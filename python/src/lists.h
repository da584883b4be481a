// What profiles and clouds have in common: they are lists of points with views of NumPy.
#pragma once

#include "headerTexts.h"
#include "values.h"

#include <pybind11/stl.h>

#include <string>
#include <utility>
#include <vector>

namespace kxpython {

/// Walks over the points as they were when it began.
template <typename Value>
struct PointIterator {
    QList<typename Value::Point> points;
    qsizetype next = 0;
};

/// The array of `with value.edit() as array`.
struct Edit {
    py::object owner;
    py::object array;
};

/// Named tuples of kxmath._values: a point, and a range of such points.
template <typename Point>
struct PointTuple : py::object {
    explicit PointTuple(py::object tuple) : py::object(std::move(tuple)) {}
};
template <typename Point>
struct RangeTuple : py::object {
    explicit RangeTuple(py::object tuple) : py::object(std::move(tuple)) {}
};

} // namespace kxpython

namespace pybind11::detail {

template <>
struct handle_type_name<kxpython::PointTuple<KxMath::KxPointXY>> {
    static constexpr auto name = const_name("kxmath._values.Point");
};
template <>
struct handle_type_name<kxpython::PointTuple<KxMath::KxPointXYZ>> {
    static constexpr auto name = const_name("kxmath._values.Point3");
};
template <>
struct handle_type_name<kxpython::RangeTuple<KxMath::KxPointXY>> {
    static constexpr auto name = const_name("kxmath._values.Range");
};
template <>
struct handle_type_name<kxpython::RangeTuple<KxMath::KxPointXYZ>> {
    static constexpr auto name = const_name("kxmath._values.Range3");
};

} // namespace pybind11::detail

namespace kxpython {

inline PointTuple<KxMath::KxPointXY> pointOf(const KxMath::KxPointXY& p) {
    static PyObject* const type = namedTupleType("Point");
    return PointTuple<KxMath::KxPointXY>(namedTuple(type, p.x, p.y));
}

template <typename Point>
PointTuple<KxMath::KxPointXYZ> pointOf(const Point& p) {
    static PyObject* const type = namedTupleType("Point3");
    return PointTuple<KxMath::KxPointXYZ>(namedTuple(type, p.x, p.y, p.z));
}

template <typename Value>
RangeTuple<std::conditional_t<std::is_same_v<Value, Profile>, KxMath::KxPointXY, KxMath::KxPointXYZ>>
rangeOf(const Value& value) {
    auto object = libraryObject(value);
    object.KxMath::template KxPointCloud<
        typename Value::Point>::calcRange(); // that of a profile keeps a NaN in its first point
    if constexpr (std::is_same_v<Value, Profile>) {
        static PyObject* const type = namedTupleType("Range");
        return RangeTuple<KxMath::KxPointXY>(namedTuple(type, object.minX, object.maxX, object.minY, object.maxY));
    } else {
        static PyObject* const type = namedTupleType("Range3");
        return RangeTuple<KxMath::KxPointXYZ>(
            namedTuple(type, object.minX, object.maxX, object.minY, object.maxY, object.minZ, object.maxZ));
    }
}

template <typename Value>
QList<typename Value::Point> slicePoints(const Value& self, const py::slice& slice) {
    py::ssize_t start = 0, stop = 0, step = 0, length = 0;
    if (!slice.compute(self.points.size(), &start, &stop, &step, &length)) {
        throw py::error_already_set();
    }
    if (step == 1) {
        return self.points.mid(start, length);
    }
    QList<typename Value::Point> points;
    points.reserve(length);
    for (py::ssize_t i = 0; i < length; ++i) {
        points.append(self.points[start + i * step]);
    }
    return points;
}

/// The points at the positions that NumPy's indexing picks.
template <typename Value>
QList<typename Value::Point> pickedPoints(const Value& self, const py::object& index) {
    const py::object all = py::module_::import("numpy").attr("arange")(self.points.size());
    const py::array_t<std::int64_t, py::array::c_style | py::array::forcecast> positions{py::object(all[index])};
    if (positions.ndim() != 1) {
        throw py::index_error("an index of points must give a list of positions");
    }
    QList<typename Value::Point> points;
    points.reserve(positions.size());
    for (py::ssize_t i = 0; i < positions.size(); ++i) {
        points.append(self.points[positions.at(i)]);
    }
    return points;
}

template <typename Value>
py::object itemOf(const Value& self, const py::object& index) {
    if (py::isinstance<py::slice>(index)) {
        return py::cast(withPoints(self, slicePoints(self, index)));
    }
    if (PyIndex_Check(index.ptr()) == 0 || py::isinstance<py::array>(index)) {
        return py::cast(withPoints(self, pickedPoints(self, index)));
    }
    py::ssize_t i = PyNumber_AsSsize_t(index.ptr(), PyExc_IndexError);
    if (i == -1 && PyErr_Occurred() != nullptr) {
        throw py::error_already_set();
    }
    const py::ssize_t count = self.points.size();
    if (i < -count || i >= count) {
        throw py::index_error("point " + std::to_string(i) + " of " + std::to_string(count));
    }
    return pointOf(self.points[i < 0 ? i + count : i]);
}

/// What np.asarray() calls.
template <typename Value>
py::object arrayOf(const Value& self, const py::object& type, const py::object& copy) {
    const py::array view = pointsView(self.points);
    if (!type.is_none() && !py::dtype::from_args(type).equal(py::dtype::of<float>())) {
        return view.attr("astype")(type);
    }
    return !copy.is_none() && py::bool_(copy) ? py::object(view.attr("copy")()) : py::object(view);
}

std::string reprOf(const char* name, qsizetype count, const py::object& range, const std::string& more);

/// The positions of points as an array.
py::array positionsOf(const QList<int>& positions);
QList<int> positionsFrom(const ArrayLike& positions, qsizetype count);

void bindEdit(py::module_& module);

template <typename Value>
void bindIterator(py::module_& module) {
    using Iterator = PointIterator<Value>;
    py::class_<Iterator>(module, (std::string("_") + Value::kName + "Iterator").c_str())
        .def("__iter__", [](py::object self) { return self; })
        .def("__next__", [](Iterator& self) {
            if (self.next >= self.points.size()) {
                throw py::stop_iteration();
            }
            return pointOf(self.points[self.next++]);
        });
}

/// len(), iteration, items, views, writing.
template <typename Value>
void bindItems(py::class_<Value>& type) {
    type.def("__len__", [](const Value& self) { return self.points.size(); });
    type.def("__iter__", [](const Value& self) { return PointIterator<Value>{self.points}; });
    type.def("__getitem__", &itemOf<Value>, py::arg("index"),
             "A point; or a new object with the points of a slice, a mask or an array of positions.");
    type.def("__array__", &arrayOf<Value>, py::arg("dtype") = py::none(), py::arg("copy") = py::none());
    type.def(
        "edit",
        [](py::object self) {
            return Edit{std::move(self), py::none()};
        },
        "A context whose array takes the place of the points when it ends without an exception:\n\n"
        "    with profile.edit() as a:\n        a[:, 1] -= 3.5\n\nThe array is a copy, float32.");
    type.def_property_readonly(
        "x", [](const Value& self) { return coordinateView(self.points, 0); },
        "x of all points, mm: a read-only view, float32.");
    type.def_property_readonly(
        "y", [](const Value& self) { return coordinateView(self.points, 1); },
        "y of all points, mm: a read-only view, float32.");
    if constexpr (!std::is_same_v<Value, Profile>) {
        type.def_property_readonly(
            "z", [](const Value& self) { return coordinateView(self.points, 2); },
            "z of all points, mm: a read-only view, float32.");
    }
}

inline bool sameValues(const Profile& a, const Profile& b) {
    return areSame(a.points, b.points) && std::bit_cast<std::uint32_t>(a.z) == std::bit_cast<std::uint32_t>(b.z);
}

template <typename Value>
bool sameValues(const Value& a, const Value& b) {
    return areSame(a.points, b.points);
}

/// Measures and changes that all lists of points have.
template <typename Value>
void bindMeasures(py::class_<Value>& type, const std::string& cloud) {
    const auto named = [&cloud](const char* member) { return cloud + "::" + member; };
    type.def_property_readonly("range", &rangeOf<Value>,
                               doc("The smallest and the largest coordinates.", {named("calcRange")}).c_str());
    type.def(
        "center",
        [](const Value& self) {
            typename Value::Point point;
            if (!found(self, [&](auto& object) { return object.calcCenterPoint(point); })) {
                refuseResult("no points, no centre");
            }
            return pointOf(point);
        },
        doc("The centre of the bounding box. kx.NoResult without points.", {named("calcCenterPoint")}).c_str());
    type.def(
        "center_of_mass",
        [](const Value& self) {
            typename Value::Point point;
            if (!found(self, [&](auto& object) { return object.caclCenterMassPoint(point); })) {
                refuseResult("no points, no mean");
            }
            return pointOf(point);
        },
        doc("The mean of the points. kx.NoResult without points.", {named("caclCenterMassPoint")}).c_str());
    type.def(
        "average_y",
        [](const Value& self) {
            if (self.points.isEmpty()) {
                refuseResult("no points, no mean");
            }
            return found(self, [](auto& object) { return object.calcAverageY(); });
        },
        doc("The mean of y. kx.NoResult without points.", {named("calcAverageY")}).c_str());
    type.def(
        "remove",
        [](const Value& self, const ArrayLike& positions) {
            QList<int> list = positionsFrom(positions, self.points.size());
            return changed(self, [&](auto& object) { object.removeIndeces(list); });
        },
        py::arg("positions"),
        doc("Without the points at these positions, each of which counts once. IndexError for one outside.",
            {named("removeIndeces")})
            .c_str());
    type.def(
        "joined", [](const Value& self, const Value& other) { return withPoints(self, self.points + other.points); },
        py::arg("other"),
        doc("With the points of the other one behind its own.", {named("appendFromPointCloud")}).c_str());
    type.def(
        "__eq__",
        [](const Value& self, const py::object& other) -> py::object {
            if (!py::isinstance<Value>(other)) {
                return py::reinterpret_borrow<py::object>(Py_NotImplemented);
            }
            return py::bool_(sameValues(self, other.cast<const Value&>()));
        },
        py::arg("other"), "Whether both hold the same bits: NaN equals NaN, 0 does not equal -0.");
    type.attr("__hash__") = py::none();
}

} // namespace kxpython
