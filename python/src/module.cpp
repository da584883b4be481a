// The extension module kxmath._kxmath.
#include "bindings.h"
#include "errors.h"
#include "lists.h"

#include <KxMath/KxMathVersion.h>

namespace {

/// A plain function of C: in an interpreter of its own the tables of pybind11 are not usable.
PyObject* refuseSubinterpreters(PyObject*, PyObject*) {
    if (PyInterpreterState_Get() != PyInterpreterState_Main()) {
        PyErr_SetString(PyExc_ImportError, "kxmath works in the main interpreter only, this is a subinterpreter");
        return nullptr;
    }
    Py_INCREF(Py_None);
    return Py_None;
}

PyMethodDef plainFunctions[] = {
    {"_refuse_subinterpreters", &refuseSubinterpreters, METH_NOARGS, "Raises ImportError in a subinterpreter."},
    {nullptr, nullptr, 0, nullptr}};

} // namespace

namespace kxpython {

namespace {

py::module_::module_def definition;

void bindAll(py::module_& module) {
    module.doc() = "Profiles, clouds and measurements of laser triangulation profile sensors.";
    if (PyModule_AddFunctions(module.ptr(), plainFunctions) != 0) {
        throw py::error_already_set();
    }
    module.attr("version") = KxMath_GetVersionString();
    bindErrors(module);
    bindEdit(module);
    bindPrimitives(module);
    bindProfile(module);
    bindClouds(module);
    bindDirections(module);
    bindFiles(module);
    bindRecords(module);
    bindFileContents(module);
    bindRecordingGroups(module);
    bindHeightMaps(module);
    bindMeasuring(module);
    bindSettings(module);
}

} // namespace

} // namespace kxpython

/// What PYBIND11_MODULE makes, but for the first line: in a subinterpreter already its second one waits for ever.
// NOLINTNEXTLINE(bugprone-reserved-identifier): Python looks for a module by this name.
extern "C" PYBIND11_EXPORT PyObject* PyInit__kxmath() {
    if (refuseSubinterpreters(nullptr, nullptr) == nullptr) {
        return nullptr;
    }
    PYBIND11_CHECK_PYTHON_VERSION
    PYBIND11_ENSURE_INTERNALS_READY
    auto module = pybind11::module_::create_extension_module("_kxmath", nullptr, &kxpython::definition);
    try {
        kxpython::bindAll(module);
        return module.ptr();
    }
    PYBIND11_CATCH_INIT_EXCEPTIONS
}
