// Turns, cuts and filters of clouds.
#include "bindings.h"
#include "foundTuples.h"
#include "lists.h"

#include <KxMath/KxLevelHistogram.h>
#include <KxMath/KxProfileZ.h>

#include <map>
#include <vector>

namespace kxpython {

using KxMath::KxPointXYZ;

namespace {

using LibraryCloud = KxMath::KxPointCloud<KxPointXYZ>;

void bindTurns(py::class_<Cloud>& type) {
    type.def(
        "rotate_xy", [](const Cloud& self, float angle) { return changed(self, [=](auto& c) { c.rotateXY(angle); }); },
        py::arg("angle"),
        doc("Turned about the z axis by `angle`, degrees, from x towards y.", {"KxPointCloudXYZ::rotateXY"}).c_str());
    type.def(
        "rotate_xz", [](const Cloud& self, float angle) { return changed(self, [=](auto& c) { c.rotateXZ(angle); }); },
        py::arg("angle"),
        doc("Turned about the y axis by `angle`, degrees, from x towards z.", {"KxPointCloudXYZ::rotateXZ"}).c_str());
    type.def(
        "rotate_yz", [](const Cloud& self, float angle) { return changed(self, [=](auto& c) { c.rotateYZ(angle); }); },
        py::arg("angle"),
        doc("Turned about the x axis by `angle`, degrees, from y towards z.", {"KxPointCloudXYZ::rotateYZ"}).c_str());
    type.def(
        "rotate",
        [](const Cloud& self, float xy, float xz, float yz) {
            return changed(self, [=](auto& c) { c.rotate(xy, xz, yz); });
        },
        py::arg("xy") = 0.0f, py::arg("xz") = 0.0f, py::arg("yz") = 0.0f,
        doc("Turned in the plane of x and y, then of x and z, then of y and z; degrees.", {"KxPointCloudXYZ::rotate"})
            .c_str());
}

void bindCuts(py::class_<Cloud>& type) {
    type.def(
        "crop",
        [](const Cloud& self, Bounds x, Bounds y, Bounds z) {
            return changed(self, [=](auto& c) { c.trim(x.min, x.max, y.min, y.max, z.min, z.max); });
        },
        py::arg("x") = py::none(), py::arg("y") = py::none(), py::arg("z") = py::none(),
        doc("The points within bounds (low, high), None for no bound.", {"KxPointCloudXYZ::trim"}).c_str());
    type.def(
        "extract",
        [](const Cloud& self, Bounds x, Bounds y, Bounds z) {
            LibraryCloud taken;
            Cloud rest =
                changed(self, [&](auto& c) { c.extract(taken, x.min, x.max, y.min, y.max, z.min, z.max, true); });
            static PyObject* const tuple = namedTupleType("Extract");
            return ExtractTuple(namedTuple(tuple, Cloud{taken.points}, rest));
        },
        py::arg("x") = py::none(), py::arg("y") = py::none(), py::arg("z") = py::none(),
        doc("The points within bounds in reverse order as `inside`, and the others as `rest`.",
            {"KxPointCloudXYZ::extract"})
            .c_str());
    type.def(
        "section",
        [](const Cloud& self, float z, float thickness) {
            LibraryCloud out;
            found(self, [&](auto& c) { return c.calcSection(out, z, thickness / 2.0f); });
            return Cloud{out.points};
        },
        py::arg("z"), py::arg("thickness"),
        doc("A slice along z, half of its thickness to each side.", {"KxPointCloudXYZ::calcSection"}).c_str());
    type.def(
        "remove_level",
        [](const Cloud& self, float level, bool above) {
            return changed(self, [=](auto& c) { c.removePointsByYLevel(level, above); });
        },
        py::arg("level"), py::arg("above") = false,
        doc("Without the points at and below a height, mm, or with `above` those at and above it. Points whose y is "
            "NaN stay.",
            {"KxPointCloudXYZ::removePointsByYLevel"})
            .c_str());
    type.def(
        "within",
        [](const Cloud& self, const std::array<float, 3>& place, float distance) {
            QList<int> positions;
            found(self, [&](auto& c) {
                return c.getRangeIndeces(positions, KxPointXYZ(place[0], place[1], place[2]), 2.0f * distance);
            });
            return positionsOf(positions);
        },
        py::arg("place"), py::arg("distance"),
        doc("The positions of the points within a distance of a place.", {"KxPointCloudXYZ::getRangeIndeces"}).c_str());
}

/// The profiles of a cloud, `step` apart along z.
std::vector<Profile> slicesOf(const Cloud& self, float step) {
    KxMath::KxProfileZSet set;
    const int count = found(self, [&](auto& c) {
        c.calcRange();
        return set.calcFromPointCloud(c, step);
    });
    if (count < 2) { // points that share one z are in no slice
        refuseResult("the cloud has no extent in z, or the step is not above 0 or too small");
    }
    std::vector<Profile> profiles;
    for (const KxMath::KxProfileZ& profile : std::as_const(set.profiles)) {
        profiles.push_back({profile.points, profile.z});
    }
    return profiles;
}

void bindFilters(py::class_<Cloud>& type) {
    type.def(
        "remove_sparse",
        [](const Cloud& self, float cell, int count) {
            return changed(self, [=](auto& c) {
                c.calcRange();
                c.cubicFilter(cell, count);
            });
        },
        py::arg("cell"), py::arg("min_count"),
        doc("Without what lies in cells of few points.", {"KxPointCloudXYZ::cubicFilter"}).c_str());
    type.def(
        "remove_isolated",
        [](const Cloud& self, float cell, MaybeFloat distance, int count, bool spherical) {
            return changed(self, [=](auto& c) {
                c.calcRange();
                if (spherical) {
                    c.sphericalFilter2(cell, distance.value, count);
                } else {
                    c.cubicFilter2(cell, distance.value, count, false);
                }
            });
        },
        py::arg("cell"), py::arg("max_distance"), py::arg("min_count"), py::arg("spherical") = true,
        doc("Without points that have no neighbour in their cell.",
            {"KxPointCloudXYZ::sphericalFilter2", "KxPointCloudXYZ::cubicFilter2"})
            .c_str());
    type.def(
        "tape",
        [](const Cloud& self, float step, MaybeFloat low, MaybeFloat high) {
            LibraryCloud tape;
            found(self, [&](auto& c) { return c.extractInsulatingTape(tape, step, low.value, high.value); });
            return Cloud{tape.points};
        },
        py::arg("step"), py::arg("min_height"), py::arg("max_height"),
        doc("The points of a tape on a surface.", {"KxPointCloudXYZ::extractInsulatingTape"}).c_str());
    type.def(
        "top_view",
        [](const Cloud& self, MaybeFloat level) {
            KxMath::KxProfile outline;
            auto cloud = libraryObject(self);
            unlocked(self.points.size(), [&] { outline.makeCloudTopView(cloud, level.value); });
            return profileOf(outline);
        },
        py::arg("level") = py::none(),
        doc("Seen from above: a profile of x and z.", {"KxProfile::makeCloudTopView"}).c_str());
    type.def(
        "level_counts",
        [](const Cloud& self, float step) {
            if (!(step > 0.0f)) {
                throw py::value_error("the step must be above 0");
            }
            KxMath::KxLevelHistogram<KxPointXYZ> histogram;
            auto cloud = libraryObject(self);
            unlocked(self.points.size(), [&] { histogram.calcFromPointCloud(cloud, step); });
            return histogram.levels.toStdMap();
        },
        py::arg("step"),
        doc("The table as the library makes it. Counts by height alone are np.histogram(cloud.y, ...).",
            {"KxLevelHistogram::calcFromPointCloud"})
            .c_str());
}

} // namespace

void bindCloudOperations(py::class_<Cloud>& type) {
    bindTurns(type);
    bindCuts(type);
    bindFilters(type);
    type.def("slices", &slicesOf, py::arg("step"),
             doc("The points sliced into profiles, for kx.ProfileSet(). kx.NoResult where there are none.",
                 {"KxProfileZSet::calcFromPointCloud"})
                 .c_str());
}

} // namespace kxpython
