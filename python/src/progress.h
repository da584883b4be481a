// Reports of long work to Python, which may end it.
#pragma once

#include <pybind11/pybind11.h>

#include <KxInspect/Progress.h>

namespace kxpython {

namespace py = pybind11;

/// Calls a function of Python, or none, with each step and its completed part, from work that runs without the lock of
/// the interpreter. An exception of the function ends the work, and so does Ctrl-C.
KxInspect::Progress progressOf(const py::object& function);

} // namespace kxpython
