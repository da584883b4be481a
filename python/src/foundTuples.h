// Named tuples of kxmath._values for calls that find more than one thing.
#pragma once

#include "arguments.h"

#include <utility>

namespace kxpython {

struct JointTuple : py::object {
    explicit JointTuple(py::object tuple) : py::object(std::move(tuple)) {}
};

struct ApexesTuple : py::object {
    explicit ApexesTuple(py::object tuple) : py::object(std::move(tuple)) {}
};

struct ExtractTuple : py::object {
    explicit ExtractTuple(py::object tuple) : py::object(std::move(tuple)) {}
};

} // namespace kxpython

namespace pybind11::detail {

template <>
struct handle_type_name<kxpython::JointTuple> {
    static constexpr auto name = const_name("kxmath._values.Joint");
};
template <>
struct handle_type_name<kxpython::ApexesTuple> {
    static constexpr auto name = const_name("kxmath._values.Apexes");
};
template <>
struct handle_type_name<kxpython::ExtractTuple> {
    static constexpr auto name = const_name("kxmath._values.Extract");
};

} // namespace pybind11::detail
