// Failures of the libraries as exceptions of Python.
#include "errors.h"

#include "arguments.h"

#include <pybind11/stl.h>

#include <cerrno>
#include <cstring>
#include <exception>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
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

void warnOfReading(const std::string& path, const std::string& note) {
    if (!note.empty()) {
        py::module_::import("kxmath._errors").attr("warn_of_reading")(Path{path}, note);
    }
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

void refuseUnknownKind(const std::string& path) {
    using KxInspect::ErrorKind;
    ErrorKind kind = ErrorKind::Unsuitable;
    std::string reason = "is of no known kind, by its content and by its name: name one by `kind`";
    struct stat status = {};
    if (::stat(path.c_str(), &status) != 0 || ::access(path.c_str(), R_OK) != 0) {
        kind = errno == ENOENT || errno == ENOTDIR ? ErrorKind::NotFound : ErrorKind::Unreadable;
        reason = std::string("cannot be read: ") + std::strerror(errno);
    } else if (S_ISDIR(status.st_mode)) {
        reason = "cannot be read: it is a folder";
    } else if (S_ISREG(status.st_mode) && status.st_size == 0) {
        reason = "is empty";
    }
    throw KxInspect::Error(kind, {{}, path, {}}, reason, {});
}

} // namespace kxpython
