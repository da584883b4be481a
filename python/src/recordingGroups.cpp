// Recordings below a folder, and how far they are written.
#include "bindings.h"
#include "headerTexts.h"

#include <KxInspect/RecordingGroups.h>

#include <pybind11/stl.h>

namespace kxpython {

namespace {

using Recording = std::tuple<Path, int, std::int64_t, std::int64_t>;
using Group = std::tuple<std::string, std::string, std::vector<Recording>>;
using Skipped = std::tuple<Path, std::string>;

std::pair<std::vector<Group>, std::vector<Skipped>> findRecordings(const Path& folder, const std::string& layout) {
    const py::gil_scoped_release release;
    const KxInspect::FoundRecordings found = KxInspect::findRecordings(folder.bytes, layout);
    std::vector<Group> groups;
    for (const KxInspect::RecordingGroup& group : found.groups) {
        std::vector<Recording> recordings;
        for (const KxInspect::FoundRecording& recording : group.recordings) {
            recordings.emplace_back(Path{recording.path}, recording.serial, recording.bytes, recording.changed);
        }
        groups.emplace_back(group.station, group.time, std::move(recordings));
    }
    std::vector<Skipped> skipped;
    for (const KxInspect::SkippedPath& path : found.skipped) {
        skipped.emplace_back(Path{path.path}, path.reason);
    }
    return {std::move(groups), std::move(skipped)};
}

bool isWhole(const Path& path) {
    const py::gil_scoped_release release;
    return KxInspect::recordingEnd(path.bytes).isWhole();
}

} // namespace

void bindRecordingGroups(py::module_& module) {
    module.def("_find_recordings", &findRecordings, py::arg("folder"), py::arg("layout"),
               doc("Station, time and recordings (path, serial, bytes, changed) of each group; what is in none.",
                   {"findRecordings"})
                   .c_str());
    module.def("_is_whole", &isWhole, py::arg("path"),
               doc("Whether a recording ends with a whole record.", {"recordingEnd", "RecordingEnd::isWhole"}).c_str());
}

} // namespace kxpython
