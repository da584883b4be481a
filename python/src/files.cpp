// Files of points: reading them by their content, writing them by their names.
#include "bindings.h"
#include "errors.h"
#include "headerTexts.h"

#include <KxInspect/FileContents.h>
#include <KxInspect/KxMathTypes.h>
#include <KxInspect/PointFile.h>
#include <KxInspect/ProfileFile.h>

#include <pybind11/stl.h>

#include <algorithm>
#include <iterator>

namespace kxpython {

namespace {

using KxInspect::FileKind;
using KxInspect::PointSet;
using KxInspect::TextForm;

using Text = std::optional<std::string>;

std::optional<char> signOf(const Text& text, const char* name) {
    if (text && text->size() != 1) {
        throw py::value_error(std::string(name) + " needs one character, got '" + *text + "'");
    }
    return text ? std::optional<char>(text->front()) : std::nullopt;
}

KxInspect::TextOptions textOptions(const std::vector<int>& columns, const Text& separator, const Text& decimal) {
    return {columns, signOf(separator, "separator"), signOf(decimal, "decimal_sign")};
}

FileKind kindOf(const std::string& name) {
    const std::optional<FileKind> kind = KxInspect::kindByName(name);
    if (!kind) {
        throw py::value_error("no kind of point files is called '" + name + "'");
    }
    return *kind;
}

/// The kind that was named, or that of the file.
FileKind kindFor(const Path& path, const Text& name, std::optional<FileKind> (*found)(const std::string&)) {
    const std::optional<FileKind> kind = name ? kindOf(*name) : found(path.bytes);
    if (!kind && found == &KxInspect::kindOfFile) {
        refuseUnknownKind(path.bytes);
    }
    if (!kind) {
        throw py::value_error("the name of the file tells no kind of point files: give one by `kind`");
    }
    return *kind;
}

/// Says how a text was read, without what the caller said.
void warnOfReading(const Path& path, std::optional<TextForm> form, const KxInspect::TextOptions& options) {
    if (form) {
        form->decimalSign = options.decimalSign ? '.' : form->decimalSign;
        kxpython::warnOfReading(path.bytes, readingNote(*form));
    }
}

py::object objectOf(const PointSet& set) {
    if (set.hasColours) {
        ColourCloud cloud;
        for (std::size_t i = 0; i < set.points.size(); ++i) {
            const KxInspect::Point3& p = set.points[i];
            cloud.points.append({p.x, p.y, p.z, set.colours[i] & 0xFFFFFFu});
        }
        return py::cast(cloud);
    }
    if (set.hasZ) {
        Cloud cloud;
        for (const KxInspect::Point3& p : set.points) {
            cloud.points.append({p.x, p.y, p.z});
        }
        return py::cast(cloud);
    }
    Profile profile;
    for (const KxInspect::Point3& p : set.points) {
        profile.points.append({p.x, p.y});
    }
    return py::cast(profile);
}

py::object readPointFile(const Path& path, const Text& kind, const std::vector<int>& columns, const Text& separator,
                         const Text& decimal) {
    const KxInspect::TextOptions options = textOptions(columns, separator, decimal);
    const FileKind which = kindFor(path, kind, &KxInspect::kindOfFile);
    PointSet set;
    {
        const py::gil_scoped_release release;
        set = KxInspect::readPoints(path.bytes, which, options);
    }
    warnOfReading(path, set.text, options);
    return objectOf(set);
}

Profile valueOf(const KxInspect::Profile& profile) {
    return {KxInspect::toKxProfile(profile).points, profile.z};
}

Profile readProfileFile(const Path& path, const std::vector<int>& columns, const Text& separator, const Text& decimal) {
    const KxInspect::TextOptions options = textOptions(columns, separator, decimal);
    std::optional<TextForm> form;
    Profile profile;
    {
        const py::gil_scoped_release release;
        profile = valueOf(KxInspect::readProfile(path.bytes, options, &form));
    }
    warnOfReading(path, form, options);
    return profile;
}

std::vector<Profile> readProfileFiles(const Path& path) {
    std::optional<TextForm> form;
    std::vector<Profile> profiles;
    {
        const py::gil_scoped_release release;
        std::ranges::transform(KxInspect::readProfiles(path.bytes, {}, &form), std::back_inserter(profiles), &valueOf);
    }
    warnOfReading(path, form, {});
    return profiles;
}

PointSet pointSetOf(const Profile& profile) {
    PointSet set;
    for (const KxMath::KxPointXY& p : profile.points) {
        set.points.push_back({p.x, p.y, profile.z});
    }
    set.hasZ = !std::isnan(profile.z);
    return set;
}

PointSet pointSetOf(const Cloud& cloud) {
    PointSet set;
    for (const KxMath::KxPointXYZ& p : cloud.points) {
        set.points.push_back({p.x, p.y, p.z});
    }
    set.hasZ = true;
    return set;
}

PointSet pointSetOf(const ColourCloud& cloud) {
    PointSet set;
    for (const KxMath::KxPointXYZRGB& p : cloud.points) {
        set.points.push_back({p.x, p.y, p.z});
        set.colours.push_back(p.rgb);
    }
    set.hasZ = set.hasColours = true;
    return set;
}

template <typename Value>
void save(const Value& value, const Path& path, const Text& kind) {
    const FileKind which = kindFor(path, kind, &KxInspect::kindByFileName);
    const PointSet set = pointSetOf(value);
    const py::gil_scoped_release release;
    KxInspect::writePoints(path.bytes, which, set);
}

template <typename Value>
py::class_<Value> classIn(const py::module_& module) {
    return py::reinterpret_borrow<py::class_<Value>>(module.attr(Value::kName));
}

template <typename Value>
void bindSaving(const py::module_& module) {
    classIn<Value>(module).def(
        "save", &save<Value>, py::arg("path"), py::kw_only(), py::arg("kind") = py::none(),
        doc("Writes a file of points, of the kind that the ending of its name or `kind` tells. kx.FileError.",
            {"writePoints", "kindByFileName", "kindByName"})
            .c_str());
}

} // namespace

void bindFiles(py::module_& module) {
    module.def("_read_points", &readPointFile, py::arg("path"), py::arg("kind") = py::none(),
               py::arg("columns") = std::vector<int>(), py::arg("separator") = py::none(),
               py::arg("decimal_sign") = py::none(),
               doc("A Profile, Cloud or ColourCloud of a file of points.", {"readPoints", "kindOfFile", "readingNote"})
                   .c_str());
    module.def("_read_profiles", &readProfileFiles, py::arg("path"),
               doc("All profiles of a file.", {"readProfiles"}).c_str());
    classIn<Profile>(module).def_static(
        "from_csv", &readProfileFile, py::arg("path"), py::kw_only(), py::arg("columns") = std::vector<int>(),
        py::arg("separator") = py::none(), py::arg("decimal_sign") = py::none(),
        doc("The profile of a file, in mm: text in two columns, whose separator and decimal sign are found, or the "
            "first profile of another file.\n\nMissing values are NaN. kx.FileError tells line and column of what is "
            "no point. A kx.ReadingWarning says where commas were taken for decimal signs, unless `decimal_sign` says "
            "so, and where remarks were left out.",
            {"readProfile"})
            .c_str());
    bindSaving<Profile>(module);
    bindSaving<Cloud>(module);
    bindSaving<ColourCloud>(module);
}

} // namespace kxpython
