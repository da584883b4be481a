// Kinds of arguments that functions of this module share.
#pragma once

#include "points.h"

#include <pybind11/pybind11.h>

#include <KxMath/KxPrimitives.h>

#include <string>
#include <utility>

namespace kxpython {

/// A lower and an upper bound, both included. NaN is no bound; None, alone or as one of two, stands for it.
struct Bounds {
    float min = kNaN;
    float max = kNaN;
};

/// The name of a file as the system has it, from str, bytes or os.PathLike.
struct Path {
    std::string bytes;
};

/// A float that may be left out: NaN stands for None.
struct MaybeFloat {
    float value = kNaN;
};

/// Anything that pointsFrom() takes.
struct ArrayLike {
    py::object object;
};

/// From so many points on a call takes longer than handing over the lock of the interpreter.
inline constexpr qsizetype kManyPoints = 2000;

/// Calls a function of the library without the lock of the interpreter when it has many points to work on. What it uses
/// must belong to this call.
template <typename Work>
auto unlocked(qsizetype points, Work work) {
    if (points < kManyPoints) {
        return work();
    }
    const py::gil_scoped_release release;
    return work();
}

/// Throws kx.NoResult.
[[noreturn]] void refuseResult(const std::string& reason);

/// Calls a named tuple of kxmath._values. Each is looked up once and lives as long as the interpreter.
template <typename... Values>
py::object namedTuple(PyObject* type, Values... values) {
    return py::reinterpret_borrow<py::object>(type)(values...);
}
PyObject* namedTupleType(const char* name);

/// Lets a class be pickled and copied by its parts, and by what makes it of them.
template <typename T, typename Class, typename Parts, typename Make>
void defCopies(Class& type, Parts parts, Make make) {
    type.def(py::pickle(parts, make));
    type.def("__copy__", [](const T& self) { return self; });
    type.def(
        "__deepcopy__", [](const T& self, const py::dict&) { return self; }, py::arg("memo"));
}

} // namespace kxpython

namespace pybind11::detail {

template <>
struct type_caster<kxpython::Bounds> {
    PYBIND11_TYPE_CASTER(kxpython::Bounds, const_name("tuple[float | None, float | None] | None"));

    bool load(handle source, bool) {
        if (source.is_none()) {
            return true;
        }
        if (!isinstance<sequence>(source) || isinstance<str>(source) || len(source) != 2) {
            return false;
        }
        const sequence pair = reinterpret_borrow<sequence>(source);
        return loadBound(pair[0], value.min) && loadBound(pair[1], value.max);
    }

    static handle cast(const kxpython::Bounds& bounds, return_value_policy, handle) {
        return make_tuple(bounds.min, bounds.max).release();
    }

private:
    static bool loadBound(const object& source, float& bound) {
        make_caster<float> number;
        if (!source.is_none() && !number.load(source, true)) {
            return false;
        }
        bound = source.is_none() ? kxpython::kNaN : cast_op<float>(number);
        return true;
    }
};

template <>
struct type_caster<kxpython::MaybeFloat> {
    PYBIND11_TYPE_CASTER(kxpython::MaybeFloat, const_name("float | None"));

    bool load(handle source, bool) {
        make_caster<float> number;
        if (!source.is_none() && !number.load(source, true)) {
            return false;
        }
        value.value = source.is_none() ? kxpython::kNaN : cast_op<float>(number);
        return true;
    }

    static handle cast(kxpython::MaybeFloat number, return_value_policy, handle) {
        return std::isnan(number.value) ? none().release() : float_(number.value).release();
    }
};

template <>
struct type_caster<kxpython::Path> {
    PYBIND11_TYPE_CASTER(kxpython::Path, const_name("str | bytes | os.PathLike"));

    bool load(handle source, bool) {
        PyObject* encoded = nullptr;
        if (PyUnicode_FSConverter(source.ptr(), &encoded) == 0) {
            if (PyErr_ExceptionMatches(PyExc_TypeError) != 0) {
                PyErr_Clear();
                return false;
            }
            throw error_already_set();
        }
        value.bytes = reinterpret_steal<bytes>(encoded);
        return true;
    }

    static handle cast(const kxpython::Path& path, return_value_policy, handle) {
        return PyUnicode_DecodeFSDefaultAndSize(path.bytes.data(), ssize_t(path.bytes.size()));
    }
};

template <>
struct type_caster<kxpython::ArrayLike> {
    PYBIND11_TYPE_CASTER(kxpython::ArrayLike, const_name("numpy.typing.ArrayLike"));

    bool load(handle source, bool) {
        value.object = reinterpret_borrow<object>(source);
        return true;
    }

    static handle cast(const kxpython::ArrayLike& array, return_value_policy, handle) { return array.object.inc_ref(); }
};

} // namespace pybind11::detail
