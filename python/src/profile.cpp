// The class Profile: construction, views, and how a profile moves.
#include "bindings.h"
#include "lists.h"

#include <KxMath/KxMetro.h>

#include <cmath>

namespace kxpython {

namespace {

using Point = KxMath::KxPointXY;

Profile profileFrom(const ArrayLike& points, MaybeFloat z) {
    if (py::isinstance<Profile>(points.object)) {
        return {points.object.cast<const Profile&>().points, z.value};
    }
    return {pointsFrom<Point>(points.object), z.value};
}

Profile profileFromXY(const ArrayLike& x, const ArrayLike& y, MaybeFloat z) {
    const py::object columns = py::module_::import("numpy").attr("stack")(py::make_tuple(x.object, y.object), 1);
    return {pointsFrom<Point>(columns), z.value};
}

std::string repr(const Profile& self) {
    const std::string z = std::isnan(self.z) ? "" : ", z=" + std::string(py::str("{:g}").format(self.z));
    return reprOf("Profile", self.points.size(), rangeOf(self), z);
}

void bindConstruction(py::class_<Profile>& type) {
    type.def(py::init(&profileFrom), py::arg("points") = py::tuple(), py::kw_only(), py::arg("z") = py::none(),
             "A profile of an n x 2 array of x and y, of any strides and any type of real numbers, copied once.\n\n"
             "z is the position along the scan, None where it is not known. ValueError for another shape.");
    type.def_static("from_xy", &profileFromXY, py::arg("x"), py::arg("y"), py::kw_only(), py::arg("z") = py::none(),
                    "A profile of two arrays of equal length, x and y.");
    type.def_property(
        "points", [](const Profile& self) { return pointsView(self.points); },
        [](Profile& self, const ArrayLike& points) { self.points = pointsFrom<Point>(points.object); },
        "The points as a read-only view, n x 2, float32. Assigning an array copies it.");
    type.def_property(
        "z", [](const Profile& self) { return MaybeFloat{self.z}; },
        [](Profile& self, MaybeFloat z) { self.z = z.value; },
        "The position along the scan, mm; None where it is not known.");
    type.def("__repr__", &repr);
    type.def("_repr_html_",
             [](const py::object& self) { return py::module_::import("kxmath._html").attr("profile")(self); });
    type.def(
        "plot",
        [](const py::object& self, const py::object& axes, const py::kwargs& options) {
            return py::module_::import("kxmath._plots").attr("profile")(self, axes, **options);
        },
        py::arg("ax") = py::none(),
        "Draws the points with matplotlib, with `before`, a profile, in grey behind them. Returns the axes.");
    defCopies<Profile>(
        type, [](const Profile& self) { return py::make_tuple(bytesOf(self.points), self.z); },
        [](const py::tuple& parts) {
            return Profile{fromBytes<Point>(parts[0].cast<py::bytes>()), parts[1].cast<float>()};
        });
}

} // namespace

void bindProfileChanges(py::class_<Profile>& type) {
    type.def(
        "shift",
        [](const Profile& self, float dx, float dy) { return changed(self, [=](auto& p) { p.shift(dx, dy, 0.0f); }); },
        py::arg("dx") = 0.0f, py::arg("dy") = 0.0f, doc("Moved.", {"KxPointCloudXY::shift"}).c_str());
    type.def(
        "scale",
        [](const Profile& self, float sx, float sy) { return changed(self, [=](auto& p) { p.resize(sx, sy, 1.0f); }); },
        py::arg("sx") = 1.0f, py::arg("sy") = 1.0f, doc("Scaled.", {"KxPointCloudXY::resize"}).c_str());
    type.def(
        "rotate",
        [](const Profile& self, float angle, std::optional<std::array<float, 2>> center) {
            return changed(self, [=](auto& p) {
                if (center) {
                    Point about((*center)[0], (*center)[1]);
                    p.rotateFixed(angle, about);
                } else {
                    p.rotateEvklid(angle);
                }
            });
        },
        py::arg("angle"), py::arg("center") = py::none(),
        doc("Turned by degrees, about the origin or a centre.", {"KxProfile::rotateEvklid", "KxProfile::rotateFixed"})
            .c_str());
    type.def(
        "to_polar", [](const Profile& self) { return changed(self, [](auto& p) { p.toPolar(); }); },
        doc("In polar form: the radius in x, the angle in degrees in y. Shift the centre to the origin before.",
            {"KxProfile::toPolar"})
            .c_str());
    type.def(
        "to_cartesian", [](const Profile& self) { return changed(self, [](auto& p) { p.toEvklid(); }); },
        doc("Back from polar form.", {"KxProfile::toEvklid"}).c_str());
    type.def(
        "rotate_polar",
        [](const Profile& self, float angle) { return changed(self, [=](auto& p) { p.rotatePolar(angle); }); },
        py::arg("angle"), doc("A profile in polar form, turned.", {"KxProfile::rotatePolar"}).c_str());
    type.def(
        "sort",
        [](const Profile& self, bool ascending) {
            return changed(self, [=](auto& p) {
                p.sort(ascending ? KxMath::KxSortAscending : KxMath::KxSortDescending, KxMath::KxSortNone);
            });
        },
        py::arg("ascending") = true, doc("In the order of x.", {"KxPointCloudXY::sort"}).c_str());
    type.def(
        "trim",
        [](const Profile& self, Bounds x, Bounds y) {
            return changed(self, [=](auto& p) { p.trim(x.min, y.min, x.max, y.max); });
        },
        py::arg("x") = py::none(), py::arg("y") = py::none(),
        doc("The points within bounds (low, high), None for no bound; those with NaN stay.",
            {"KxProfile::trim", "KxProfile::trimX", "KxProfile::trimY", "KxProfile::trimLower", "KxProfile::trimUpper"})
            .c_str());
    type.def(
        "in_box",
        [](const Profile& self, Bounds x, Bounds y) {
            QList<int> positions;
            found(self, [&](auto& p) { return p.getRangeIndeces(positions, x.min, x.max, y.min, y.max); });
            return positionsOf(positions);
        },
        py::arg("x") = py::none(), py::arg("y") = py::none(),
        doc("The positions of the points within bounds (low, high), None for no bound.",
            {"KxPointCloudXY::getRangeIndeces"})
            .c_str());
    type.def(
        "remove_missing", [](const Profile& self) { return without(self, [](Point p) { return p.isNull(); }); },
        doc("Without the points that have a NaN.", {"KxPointXY::isNull"}).c_str());
    type.def(
        "remove_duplicates", [](const Profile& self) { return changed(self, [](auto& p) { p.removeDuplicates(); }); },
        doc("Without points whose x an earlier point has, whatever their y.", {"KxProfile::removeDuplicates"}).c_str());
}

void bindProfile(py::module_& module) {
    bindIterator<Profile>(module);
    py::class_<Profile> type(module, "Profile",
                             "The points that a sensor measures at once: x along the laser line and y, mm, float32.\n\n"
                             "NaN marks a missing value. Operations return new objects; the points keep their order. "
                             "Angles are in degrees. np.asarray(profile) is an n x 2 view without a copy, read-only: "
                             "write by `profile.points = array` or `with profile.edit() as array`.");
    bindConstruction(type);
    bindItems(type);
    bindMeasures(type, "KxPointCloudXY");
    bindProfileChanges(type);
    bindProfileFilters(type);
    bindProfileFits(type);
    bindProfileFeatures(type);
}

} // namespace kxpython
