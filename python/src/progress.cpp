// Reports of long work to Python.
#include "progress.h"

namespace kxpython {

KxInspect::Progress progressOf(const py::object& function) {
    return [&function](const std::string& step, double part) {
        const py::gil_scoped_acquire lock;
        if (PyErr_CheckSignals() != 0) {
            throw py::error_already_set();
        }
        if (!function.is_none()) {
            function(step, part);
        }
    };
}

} // namespace kxpython
