// Failures of the libraries as exceptions of Python.
#pragma once

#include <pybind11/pybind11.h>

#include <KxInspect/Error.h>

#include <string>

namespace kxpython {

namespace py = pybind11;

/// Makes KxInspect::Error an exception of kxmath._errors.
void bindErrors(py::module_& module);

/// The exception that stands for an error.
py::object exceptionOf(const KxInspect::Error& error);

/// Issues a kx.ReadingWarning about a file, unless the note is empty. Throws where warnings are exceptions.
void warnOfReading(const std::string& path, const std::string& note);

/// Says what is wrong with a file whose kind neither its content nor its name tells: it may not be there at all.
[[noreturn]] void refuseUnknownKind(const std::string& path);

} // namespace kxpython
