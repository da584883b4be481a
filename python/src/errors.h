// Failures of the libraries as exceptions of Python.
#pragma once

#include <pybind11/pybind11.h>

#include <KxInspect/Error.h>

namespace kxpython {

namespace py = pybind11;

/// Makes KxInspect::Error an exception of kxmath._errors.
void bindErrors(py::module_& module);

/// The exception that stands for an error.
py::object exceptionOf(const KxInspect::Error& error);

} // namespace kxpython
