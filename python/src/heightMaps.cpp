// Height maps of scans.
#include "arguments.h"
#include "bindings.h"
#include "errors.h"
#include "headerTexts.h"
#include "progress.h"
#include "results.h"

#include "report/grid/gridReport.h"

#include <KxInspect/Grid.h>
#include <KxInspect/HeightMap.h>
#include <KxInspect/HeightMapFile.h>

#include <pybind11/stl.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <memory>
#include <tuple>

namespace kxpython {

namespace {

using KxInspect::HeightMap;
using SharedMap = std::shared_ptr<HeightMap>;

/// A scan of profiles that have their positions; points that are not finite are left out, as when a scan is read.
KxInspect::Scan scanOf(const std::vector<Profile>& profiles, float distance) {
    KxInspect::Scan scan;
    scan.distance = distance;
    for (const Profile& profile : profiles) {
        scan.emptyRecords += profile.points.isEmpty() ? 1 : 0;
        KxInspect::Profile& copy = scan.profiles.emplace_back();
        copy.z = profile.z;
        for (const KxMath::KxPointXY& p : profile.points) {
            if (std::isfinite(p.x) && std::isfinite(p.y)) {
                copy.points.push_back({p.x, p.y});
            }
        }
    }
    return scan;
}

SharedMap mapOf(const std::vector<Profile>& profiles, float distance, float pitch, std::optional<float> gap,
                const py::object& progress) {
    const KxInspect::Progress report = progressOf(progress);
    const py::gil_scoped_release release;
    return std::make_shared<HeightMap>(KxInspect::makeHeightMap(scanOf(profiles, distance), {pitch, gap}, report));
}

/// A read-only array over the floats of an owner that lives as long as the array.
py::array viewOf(const std::shared_ptr<std::vector<float>>& values, const HeightMap& map) {
    const py::capsule owner(new std::shared_ptr<std::vector<float>>(values),
                            [](void* p) { delete static_cast<std::shared_ptr<std::vector<float>>*>(p); });
    py::array view(py::dtype::of<float>(), {py::ssize_t(map.rows), py::ssize_t(map.columns)}, values->data(), owner);
    py::detail::array_proxy(view.ptr())->flags &= ~py::detail::npy_api::NPY_ARRAY_WRITEABLE_;
    return view;
}

/// What a pickle holds: the fields in their order, the heights last.
using State = std::tuple<int, int, float, float, float, float, int, py::bytes>;

State stateOf(const HeightMap& map) {
    const py::bytes heights(reinterpret_cast<const char*>(map.heights.data()), map.heights.size() * sizeof(float));
    return {map.rows, map.columns, map.pitch, map.gap, map.originX, map.originZ, map.interpolatedRows, heights};
}

SharedMap mapFrom(const State& state) {
    auto map = std::make_shared<HeightMap>();
    py::bytes bytes;
    std::tie(map->rows, map->columns, map->pitch, map->gap, map->originX, map->originZ, map->interpolatedRows, bytes) =
        state;
    const std::string_view content = bytes;
    const std::size_t count = content.size() / sizeof(float);
    if (map->rows < 0 || map->columns < 0 || content.size() % sizeof(float) != 0 ||
        std::uint64_t(map->rows) * std::uint64_t(map->columns) != count) {
        throw py::value_error("a pickle of " + std::to_string(content.size()) + " bytes for " +
                              std::to_string(map->rows) + " rows and " + std::to_string(map->columns) + " columns");
    }
    map->heights.resize(count);
    std::memcpy(map->heights.data(), content.data(), content.size());
    return map;
}

bool haveSameBits(const HeightMap& a, const HeightMap& b) {
    const auto numbersOf = [](const HeightMap& map) {
        return std::bit_cast<std::array<std::uint32_t, 4>>(std::array{map.pitch, map.gap, map.originX, map.originZ});
    };
    return a.rows == b.rows && a.columns == b.columns && a.interpolatedRows == b.interpolatedRows &&
           numbersOf(a) == numbersOf(b) &&
           std::memcmp(a.heights.data(), b.heights.data(), a.heights.size() * sizeof(float)) == 0;
}

py::array blockMeansOf(const SharedMap& map, int size) {
    auto means = std::make_shared<std::vector<float>>();
    {
        const py::gil_scoped_release release;
        *means = KxInspect::blockMeans(*map, size);
    }
    return viewOf(means, *map);
}

/// The fields of kxmath.Patch, for each.
py::list listOf(const std::vector<KxInspect::Patch>& found) {
    py::list patches;
    for (const KxInspect::Patch& patch : found) {
        Cloud cloud;
        for (const KxInspect::Point3& p : patch.points) {
            cloud.points.append({p.x, p.y, p.z});
        }
        patches.append(
            py::make_tuple(cloud, patch.cells, patch.area, patch.mean, patch.deviation, patch.centreX, patch.centreZ));
    }
    return patches;
}

py::list patchesOf(const SharedMap& map, const KxInspect::PatchOptions& options, const py::object& progress) {
    const KxInspect::Progress report = progressOf(progress);
    KxInspect::PatchResult result;
    {
        const py::gil_scoped_release release;
        result = KxInspect::findPatches(*map, options, report);
    }
    return listOf(result.patches);
}

KxInspect::GridResult measureGrid(const Path& path, float pitch, std::optional<float> gap,
                                  std::optional<float> distance, float firstZ, const KxInspect::PatchOptions& patches,
                                  const py::object& progress) {
    const KxInspect::Progress report = progressOf(progress);
    const py::gil_scoped_release release;
    return KxInspect::measureGrid(path.bytes, {{pitch, gap}, firstZ, distance, patches}, report);
}

/// The kind that was named, or that which `found` tells of the path.
KxInspect::FileKind kindFor(const Path& path, const std::optional<std::string>& name,
                            std::optional<KxInspect::FileKind> (*found)(const std::string&)) {
    const std::optional<KxInspect::FileKind> kind = name ? KxInspect::kindByName(*name) : found(path.bytes);
    if (!kind && !name && found == &KxInspect::kindOfFile) {
        refuseUnknownKind(path.bytes);
    }
    if (!kind) {
        throw py::value_error(name ? "no kind of point files is called '" + *name + "'"
                                   : "the name of the file tells no kind of files: give one by `kind`");
    }
    return *kind;
}

void writeMap(const SharedMap& map, const Path& path, const std::optional<std::string>& kind) {
    const KxInspect::FileKind which = kindFor(path, kind, &KxInspect::kindByFileName);
    const py::gil_scoped_release release;
    KxInspect::writeHeightMap(path.bytes, which, *map);
}

SharedMap readMap(const Path& path, const std::optional<std::string>& kind, std::optional<float> pitch) {
    const KxInspect::FileKind which = kindFor(path, kind, &KxInspect::kindOfFile);
    const py::gil_scoped_release release;
    return std::make_shared<HeightMap>(KxInspect::readHeightMap(path.bytes, which, pitch));
}

KxInspect::PatchOptions patchOptions(int block, std::optional<float> cut, std::optional<float> tolerance,
                                     std::optional<int> count) {
    KxInspect::PatchOptions options;
    options.blockSize = block;
    options.edgeCut = cut;
    options.tolerance = tolerance;
    options.minCount = count;
    return options;
}

void bindGrids(py::module_& module) {
    bindResult<KxInspect::GridResult>(module, "_GridResult", &KxInspect::gridFromJson, &kxreport::gridReport)
        .def_property_readonly(
            "map",
            [](const KxInspect::GridResult& self) {
                if (self.map.heights.empty()) {
                    refuseResult("the result was read from JSON without pictures, which holds no heights");
                }
                return std::make_shared<HeightMap>(self.map);
            },
            "The height map. kx.NoResult where the result was read from JSON without pictures.")
        .def_property_readonly(
            "patches", [](const KxInspect::GridResult& self) { return listOf(self.found.patches); },
            "The patches; without points where the result was read from JSON.");
    module.def(
        "_measure_grid",
        [](const Path& path, float pitch, std::optional<float> gap, std::optional<float> distance, float firstZ,
           int block, std::optional<float> cut, std::optional<float> tolerance, std::optional<int> count,
           const py::object& progress) {
            return measureGrid(path, pitch, gap, distance, firstZ, patchOptions(block, cut, tolerance, count),
                               progress);
        },
        py::arg("path"), py::arg("pitch"), py::arg("gap"), py::arg("distance"), py::arg("first_z"),
        py::arg("block_size"), py::arg("edge_cut"), py::arg("tolerance"), py::arg("min_count"), py::arg("progress"),
        doc("The height map of a file and its patches.", {"measureGrid", "gridFromJson"}).c_str());
}

} // namespace

void bindHeightMaps(py::module_& module) {
    py::class_<HeightMap, SharedMap>(module, "_HeightMap")
        .def(py::pickle(&stateOf, &mapFrom))
        .def("has_same_bits", &haveSameBits, py::arg("other"))
        .def_readonly("pitch", &HeightMap::pitch)
        .def_readonly("gap", &HeightMap::gap)
        .def_readonly("origin_x", &HeightMap::originX)
        .def_readonly("origin_z", &HeightMap::originZ)
        .def_readonly("interpolated_rows", &HeightMap::interpolatedRows)
        .def_property_readonly("heights",
                               [](const SharedMap& self) {
                                   return viewOf(std::shared_ptr<std::vector<float>>(self, &self->heights), *self);
                               })
        .def("write", &writeMap, py::arg("path"), py::arg("kind"),
             doc("Writes a file of a kind, by default that which its name tells.", {"writeHeightMap"}).c_str())
        .def("block_means", &blockMeansOf, py::arg("size"), doc("The means of blocks.", {"blockMeans"}).c_str())
        .def(
            "patches",
            [](const SharedMap& self, int block, std::optional<float> cut, std::optional<float> tolerance,
               std::optional<int> count, const py::object& progress) {
                return patchesOf(self, patchOptions(block, cut, tolerance, count), progress);
            },
            py::arg("block_size"), py::arg("edge_cut"), py::arg("tolerance"), py::arg("min_count"), py::arg("progress"),
            doc("The flat patches.", {"findPatches"}).c_str());
    module.def("_read_height_map", &readMap, py::arg("path"), py::arg("kind"), py::arg("pitch"),
               doc("The height map of a file.", {"readHeightMap"}).c_str());
    module.def("_make_height_map", &mapOf, py::arg("profiles"), py::arg("distance"), py::arg("pitch"), py::arg("gap"),
               py::arg("progress"), doc("A height map of profiles.", {"makeHeightMap"}).c_str());
    bindGrids(module);
}

} // namespace kxpython
