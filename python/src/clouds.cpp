// The classes Cloud and ColourCloud.
#include "bindings.h"
#include "lists.h"

namespace kxpython {

using KxMath::KxPointXYZ;
using KxMath::KxPointXYZRGB;

namespace {

template <typename Value>
KxMath::KxSortOrder orderOf(const std::optional<bool>& ascending) {
    return !ascending ? KxMath::KxSortNone : *ascending ? KxMath::KxSortAscending : KxMath::KxSortDescending;
}

/// What both clouds can do.
template <typename Value>
void bindPictures(py::class_<Value>& type, const char* draw, const char* text) {
    type.def("_repr_html_", [](const py::object& self) {
        return py::module_::import("kxmath._html").attr("from_above")(self, self.attr("points"));
    });
    type.def(
        "plot",
        [draw](const py::object& self, const py::object& axes, const py::kwargs& options) {
            return py::module_::import("kxmath._plots").attr(draw)(self, axes, **options);
        },
        py::arg("ax") = py::none(), text);
}

template <typename Value>
void bindCommon(py::class_<Value>& type, const std::string& cloud) {
    bindItems(type);
    bindMeasures(type, cloud);
    type.def("__repr__", [](const Value& self) { return reprOf(Value::kName, self.points.size(), rangeOf(self), ""); });
    defCopies<Value>(
        type, [](const Value& self) { return bytesOf(self.points); },
        [](const py::bytes& bytes) { return Value{fromBytes<typename Value::Point>(bytes)}; });
    type.def(
        "shift",
        [](const Value& self, float dx, float dy, float dz) {
            return changed(self, [=](auto& c) { c.shift(dx, dy, dz); });
        },
        py::arg("dx") = 0.0f, py::arg("dy") = 0.0f, py::arg("dz") = 0.0f, doc("Moved.", {cloud + "::shift"}).c_str());
    type.def(
        "sort",
        [](const Value& self, std::optional<bool> x, std::optional<bool> z) {
            return changed(self, [=](auto& c) { c.sort(orderOf<Value>(x), orderOf<Value>(z)); });
        },
        py::arg("x_ascending") = py::none(), py::arg("z_ascending") = py::none(),
        doc("None switches a key off; the library's order has its oddities, sort_by_z_then_x() has none.",
            {cloud + "::sort"})
            .c_str());
    type.def(
        "sort_by_z_then_x",
        [](const Value& self) {
            return changed(self, [](auto& c) {
                c.points.removeIf([](const typename Value::Point& p) { return std::isnan(p.x) || std::isnan(p.z); });
                c.sort(KxMath::KxSortAscending, KxMath::KxSortNone);
                c.sort(KxMath::KxSortNone, KxMath::KxSortAscending);
            });
        },
        "Ordered by z and, where z is equal, by x. Points without x or z are left out.");
    type.def(
        "in_box",
        [](const Value& self, Bounds x, Bounds y, Bounds z) {
            QList<int> positions;
            found(self,
                  [&](auto& c) { return c.getRangeIndeces(positions, x.min, x.max, y.min, y.max, z.min, z.max); });
            return positionsOf(positions);
        },
        py::arg("x") = py::none(), py::arg("y") = py::none(), py::arg("z") = py::none(),
        doc("The positions of the points within bounds (low, high), None for no bound.", {cloud + "::getRangeIndeces"})
            .c_str());
}

Cloud cloudFrom(const ArrayLike& points) {
    if (py::isinstance<Cloud>(points.object)) {
        return points.object.cast<const Cloud&>();
    }
    return {pointsFrom<KxPointXYZ>(points.object)};
}

ColourCloud colourCloudFrom(const ArrayLike& points, const ArrayLike& colours) {
    ColourCloud cloud{pointsFrom<KxPointXYZRGB>(points.object)};
    setColours(cloud.points, colours.object);
    return cloud;
}

/// New coordinates for the points of a coloured cloud, whose colours stay.
void setCoordinates(ColourCloud& self, const ArrayLike& points) {
    QList<KxPointXYZRGB> list = pointsFrom<KxPointXYZRGB>(points.object);
    if (list.size() != self.points.size()) {
        throw py::value_error(std::to_string(list.size()) + " points for the colours of " +
                              std::to_string(self.points.size()) + ": make a new ColourCloud");
    }
    for (qsizetype i = 0; i < list.size(); ++i) {
        list[i].rgb = std::as_const(self.points)[i].rgb;
    }
    self.points = list;
}

void bindColours(py::module_& module) {
    bindIterator<ColourCloud>(module);
    py::class_<ColourCloud> type(module, "ColourCloud",
                                 "A cloud whose points have colours. Otherwise as Cloud, with fewer operations.");
    type.def(py::init(&colourCloudFrom), py::arg("points"), py::arg("rgb"),
             "A cloud of an n x 3 array of coordinates and one of colours, n x 3 uint8: red, green, blue.");
    type.def_property(
        "points", [](const ColourCloud& self) { return pointsView(self.points); }, &setCoordinates,
        "The points as a read-only view, n x 3, float32. As many may be assigned; colours stay.");
    type.def_property(
        "rgb", [](const ColourCloud& self) { return coloursView(self.points); },
        [](ColourCloud& self, const ArrayLike& colours) {
            QList<KxPointXYZRGB> list = self.points;
            setColours(list, colours.object);
            self.points = list;
        },
        "Red, green and blue as a read-only view, n x 3, uint8.");
    type.def(
        "without_colours",
        [](const ColourCloud& self) {
            Cloud cloud;
            for (const KxPointXYZRGB& p : self.points) {
                cloud.points.append(KxPointXYZ(p.x, p.y, p.z));
            }
            return cloud;
        },
        "A plain cloud of the same points.");
    bindCommon(type, "KxPointCloudXYZRGB");
    bindPictures(type, "colour_cloud",
                 "Draws the points in their colours from above with matplotlib. Returns the axes.");
}

} // namespace

void bindClouds(py::module_& module) {
    bindIterator<Cloud>(module);
    py::class_<Cloud> type(module, "Cloud",
                           "Points in space, mm, float32: x along the laser line, y the height, z along the scan.\n\n"
                           "NaN marks a missing value. Operations return new objects. np.asarray(cloud) is an n x 3 "
                           "view without a copy, read-only.");
    type.def(py::init(&cloudFrom), py::arg("points") = py::tuple(),
             "A cloud of an n x 3 array, of any strides and any type of real numbers, copied once. ValueError for "
             "another shape.");
    type.def_property(
        "points", [](const Cloud& self) { return pointsView(self.points); },
        [](Cloud& self, const ArrayLike& points) { self.points = pointsFrom<KxPointXYZ>(points.object); },
        "The points as a read-only view, n x 3, float32. Assigning an array copies it.");
    bindCommon(type, "KxPointCloudXYZ");
    bindPictures(type, "cloud", "Draws the heights from above with matplotlib. Returns the axes.");
    bindCloudOperations(type);
    bindColours(module);
}

} // namespace kxpython
