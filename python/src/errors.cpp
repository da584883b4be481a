// Failures of the libraries as exceptions of Python.
#include "errors.h"

#include "arguments.h"

#include <pybind11/stl.h>

#include <exception>
#include <utility>

namespace kxpython {

namespace {

const char* nameOf(KxInspect::ErrorKind kind) {
    switch (kind) {
    case KxInspect::ErrorKind::NotFound:
        return "not found";
    case KxInspect::ErrorKind::Unreadable:
        return "unreadable";
    case KxInspect::ErrorKind::Damaged:
        return "damaged";
    case KxInspect::ErrorKind::Unsuitable:
        return "unsuitable";
    case KxInspect::ErrorKind::BadArgument:
        return "bad argument";
    case KxInspect::ErrorKind::NoResult:
        return "no result";
    case KxInspect::ErrorKind::Unwritable:
        return "unwritable";
    }
    return "";
}

} // namespace

py::object exceptionOf(const KxInspect::Error& error) {
    const KxInspect::ErrorPlace& place = error.place();
    return py::module_::import("kxmath._errors")
        .attr("made")(nameOf(error.kind()), Path{error.source().file}, error.source().key, error.reason(), error.what(),
                      py::make_tuple(place.byte, place.record, place.line, place.column));
}

void refuseResult(const std::string& reason) {
    throw KxInspect::Error(KxInspect::ErrorKind::NoResult, {}, reason);
}

void bindErrors(py::module_&) {
    py::register_local_exception_translator([](std::exception_ptr thrown) {
        try {
            std::rethrow_exception(std::move(thrown));
        } catch (const KxInspect::Error& error) {
            const py::object exception = exceptionOf(error);
            PyErr_SetObject(py::type::of(exception).ptr(), exception.ptr());
        }
    });
}

} // namespace kxpython
