// What results have in common: JSON and pages.
#pragma once

#include "report/elements/pageOrigin.h"
#include <KxInspect/Json.h>

#include <QtCore/QString>

#include <pybind11/pybind11.h>

#include <string>

namespace kxpython {

namespace py = pybind11;

/// The class of a result, with what all of them have in common.
template <typename Result>
py::class_<Result> bindResult(py::module_& module, const char* name, Result (*read)(const std::string&),
                              QString (*page)(const Result&, const kxreport::PageOrigin&)) {
    py::class_<Result> type(module, name);
    type.def(
        "to_json",
        [](const Result& self, bool pictures) {
            return toJson(self, pictures ? KxInspect::Pictures::Included : KxInspect::Pictures::Left);
        },
        py::arg("pictures") = false,
        "As the command writes it; with what pages draw too, so that it can be read again.");
    type.def_static("from_json", read, py::arg("json"), "A result that was written as JSON.");
    type.def(
        "page", [page](const Result& self) { return page(self, {}).toStdString(); }, "A page of HTML.");
    return type;
}

} // namespace kxpython
