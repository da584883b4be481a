// What is in a file.
#include "bindings.h"
#include "errors.h"
#include "headerTexts.h"
#include "progress.h"

#include <KxInspect/FileContents.h>

#include <pybind11/stl.h>

namespace kxpython {

namespace {

using KxInspect::PartKind;

const char* nameOf(PartKind kind) {
    switch (kind) {
    case PartKind::CloudSection2D:
        return "cloudSection2D";
    case PartKind::CloudSection3D:
        return "cloudSection3D";
    case PartKind::CloudSectionColours:
        return "cloudSectionColours";
    case PartKind::ProfileRecord:
        return "profileRecord";
    case PartKind::WholeFile:
        break;
    }
    return "wholeFile";
}

py::object rangeOf(const KxInspect::Range& range) {
    return range.isEmpty() ? py::object(py::none()) : py::make_tuple(range.min, range.max);
}

/// How a text was read, under the names that the command gives it.
py::object formOf(const std::optional<KxInspect::TextForm>& form) {
    py::dict values;
    if (!form) {
        return py::none();
    }
    values["columns"] = form->columns;
    values["separator"] = std::string(1, form->separator);
    values["decimalSign"] = std::string(1, form->decimalSign);
    values["titleLines"] = form->titleLines;
    values["remarks"] = form->remarks;
    return values;
}

/// The fields of kxmath.FileInfo.
py::tuple fieldsOf(const KxInspect::FileContents& contents) {
    py::dict parts;
    for (const KxInspect::PartCount& part : contents.parts) {
        parts[nameOf(part.kind)] = part.count;
    }
    const py::object kind = contents.kind ? py::object(py::str(kindName(*contents.kind))) : py::object(py::none());
    return py::make_tuple(kind, parts, contents.points, contents.missing, rangeOf(contents.x), rangeOf(contents.y),
                          rangeOf(contents.z), contents.spacing, formOf(contents.text),
                          contents.damage ? exceptionOf(*contents.damage) : py::object(py::none()));
}

} // namespace

void bindFileContents(py::module_& module) {
    module.def(
        "_file_info",
        [](const Path& path, const py::object& progress) {
            KxInspect::FileContents contents;
            {
                const KxInspect::Progress report = progressOf(progress);
                const py::gil_scoped_release release;
                contents = KxInspect::readFileContents(path.bytes, report);
            }
            return fieldsOf(contents);
        },
        py::arg("path"), py::arg("progress"), doc("What is in a file.", {"readFileContents", "kindName"}).c_str());
}

} // namespace kxpython
