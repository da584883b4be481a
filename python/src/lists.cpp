// What profiles and clouds have in common.
#include "lists.h"

#include <algorithm>

namespace kxpython {

namespace {

/// "x -40.5 to 38.2"
std::string rangeText(const char* name, const py::object& low, const py::object& high) {
    return ", " + std::string(name) + " " + std::string(py::str("{:g} to {:g}").format(low, high));
}

} // namespace

std::string reprOf(const char* name, qsizetype count, const py::object& range, const std::string& more) {
    std::string text =
        "<kxmath." + std::string(name) + ": " + std::to_string(count) + (count == 1 ? " point" : " points");
    if (count > 0) {
        text += rangeText("x", range[py::int_(0)], range[py::int_(1)]);
        text += rangeText("y", range[py::int_(2)], range[py::int_(3)]);
        if (py::len(range) > 4) {
            text += rangeText("z", range[py::int_(4)], range[py::int_(5)]);
        }
    }
    return text + more + ">";
}

PyObject* namedTupleType(const char* name) {
    return py::module_::import("kxmath._values").attr(name).cast<py::object>().release().ptr();
}

py::array positionsOf(const QList<int>& positions) {
    py::array_t<std::int64_t> array(positions.size());
    std::copy(positions.begin(), positions.end(), array.mutable_data());
    return array;
}

QList<int> positionsFrom(const ArrayLike& positions, qsizetype count) {
    const py::module_ numpy = py::module_::import("numpy");
    const py::object index = numpy.attr("asarray")(positions.object);
    if (index.attr("size").cast<py::ssize_t>() == 0) { // of floats, where it was an empty list
        return {};
    }
    const auto sorted = numpy.attr("unique")(numpy.attr("arange")(count)[index]).cast<py::array_t<std::int64_t>>();
    QList<int> list;
    list.reserve(sorted.size());
    for (py::ssize_t i = 0; i < sorted.size(); ++i) {
        list.append(static_cast<int>(sorted.at(i)));
    }
    return list;
}

void bindEdit(py::module_& module) {
    py::class_<Edit>(module, "_Edit")
        .def("__enter__",
             [](Edit& self) {
                 self.array = self.owner.attr("points").attr("copy")();
                 return self.array;
             })
        .def("__exit__", [](Edit& self, const py::object& type, const py::object&, const py::object&) {
            if (type.is_none()) {
                self.owner.attr("points") = self.array;
            }
        });
}

} // namespace kxpython
