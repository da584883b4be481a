// The records of a file one by one: where each begins is found once, points are read when they are asked for.
#include "bindings.h"
#include "headerTexts.h"
#include "progress.h"

#include <KxInspect/Error.h>
#include <KxInspect/Recording.h>
#include <KxMath/KxRecording.h>

#include <QtCore/QFile>

#include <pybind11/stl.h>

#include <fcntl.h>

namespace kxpython {

namespace {

/// 12 bytes per record.
class RecordIndex {
public:
    RecordIndex(const Path& path, const py::object& progress) : path_(path) {
        const KxInspect::Progress report = progressOf(progress);
        const py::gil_scoped_release release;
        KxInspect::RecordingReader reader(path.bytes); // it knows what is damaged, and where
        for (KxInspect::Record record; reader.next(record);) {
            places_.push_back(record.byte);
            counts_.push_back(static_cast<int>(record.profile.points.size()));
            if (places_.size() % 256 == 0) {
                report("indexing", double(reader.position()) / double(reader.size()));
            }
        }
    }

    const Path& path() const { return path_; }
    std::size_t size() const { return places_.size(); }
    const std::vector<int>& counts() const { return counts_; }

    /// A record, from 0 on.
    Profile read(std::size_t number) {
        if (number >= size()) {
            throw py::index_error("record " + std::to_string(number) + " of " + std::to_string(size()));
        }
        KxMath::KxProfileZ profile;
        if (!isOpen() || !file_.seek(places_[number]) || KxReadRecord(file_, profile) == KxMath::KxNoRecord ||
            profile.points.size() != counts_[number]) {
            throw KxInspect::Error(KxInspect::ErrorKind::Damaged, {{}, path_.bytes, {}},
                                   "has changed since it was opened: no such record at byte " +
                                       std::to_string(places_[number]),
                                   {places_[number], std::int64_t(number) + 1, {}, {}});
        }
        return {profile.points, profile.z};
    }

private:
    /// By the bytes of its name, which need not be those of a text.
    bool isOpen() {
        if (!file_.isOpen()) {
            const int file = ::open(path_.bytes.c_str(), O_RDONLY | O_CLOEXEC);
            return file >= 0 && file_.open(file, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
        }
        return true;
    }

    Path path_;
    QFile file_;
    std::vector<qint64> places_;
    std::vector<int> counts_;
};

py::tuple nameOf(const Path& path) {
    const KxInspect::RecordingName name = KxInspect::recordingName(path.bytes);
    return py::make_tuple(Path{name.base}, name.serial);
}

} // namespace

void bindRecords(py::module_& module) {
    py::class_<RecordIndex>(module, "_RecordIndex")
        .def(py::init<const Path&, const py::object&>(), py::arg("path"), py::arg("progress") = py::none(),
             doc("Where the records of a file are. kx.FileError for one that is damaged.",
                 {"RecordingReader::next", "RecordingReader::position", "RecordingReader::size"})
                 .c_str())
        .def("__len__", &RecordIndex::size)
        .def_property_readonly("path", &RecordIndex::path, "The file.")
        .def_property_readonly(
            "counts",
            [](const RecordIndex& self) {
                return py::array_t<int>(py::ssize_t(self.counts().size()), self.counts().data());
            },
            "The number of points of each record.")
        .def("read", &RecordIndex::read, py::arg("number"),
             doc("A record, counted from 0, with its position; None for a 2-D cloud section.", {"KxReadRecord"})
                 .c_str());
    module.def(
        "_recording_name", &nameOf, py::arg("path"),
        doc("The name of a recording without .bin, and the serial number of its sensor.", {"recordingName"}).c_str());
}

} // namespace kxpython
