// The records of a file: where each begins is found once, points are read when they are asked for.
#include "bindings.h"
#include "headerTexts.h"
#include "progress.h"
#include "recordFile.h"

#include "lists/unfilledList.h"

#include <KxInspect/Error.h>
#include <KxInspect/Recording.h>

#include <pybind11/stl.h>

#include <algorithm>
#include <memory>
#include <utility>

namespace kxpython {

namespace {

using Numbers = py::array_t<std::int64_t, py::array::c_style | py::array::forcecast>;

/// Files up to this size are read without a look at their heads before.
constexpr qint64 kSmallFile = 64 << 20;

/// Iteration reads so many points ahead: 512 KiB, which stay in the cache of a processor until they are used.
constexpr qint64 kPointsAtOnce = 1 << 16;

/// A list of so many points, whose values have no meaning: the one that is given where it is not shared and of about that
/// size, else a new one.
QList<KxMath::KxPointXY> unfilled(QList<KxMath::KxPointXY> spare, int count) {
    if (spare.isDetached() && spare.capacity() >= count && spare.capacity() / 2 <= count) {
        spare.resize(count);
        return spare;
    }
    KxMath::detail::UnfilledList<KxMath::KxPointXY> points(count);
    points.extend(count);
    return points.take();
}

/// An array that was read: its points, where each record starts in it, and the positions of the records.
struct Arrays {
    py::array_t<float> points;
    std::vector<std::int64_t> starts;
    std::vector<float> z;

    py::tuple toTuple() const {
        return py::make_tuple(points, py::array_t<std::int64_t>(py::ssize_t(starts.size()), starts.data()),
                              py::array_t<float>(py::ssize_t(z.size()), z.data()));
    }
};

/// 12 bytes per record.
class RecordIndex {
public:
    RecordIndex(const Path& path, const py::object& progress) : path_(path), file_(path.bytes) {
        const KxInspect::Progress report = progressOf(progress);
        const py::gil_scoped_release release;
        const bool isWhole = walkRecords(file_, [&](qint64 place, const RecordHead& head) {
            append(place, head);
            reportNow(report, double(place) / double(file_.size()));
        });
        if (!isWhole) {
            readThrough(report);
        }
        places_.shrink_to_fit();
        counts_.shrink_to_fit();
    }

    const Path& path() const { return path_; }
    std::size_t size() const { return places_.size(); }

    py::array_t<int> counts() const {
        py::array_t<int> counts{py::ssize_t(size())};
        for (std::size_t i = 0; i < size(); ++i) {
            counts.mutable_at(py::ssize_t(i)) = head(i).count;
        }
        return counts;
    }

    /// A record, from 0 on.
    Profile read(std::int64_t number) const { return std::move(readSome(std::span(&number, 1), {}).front()); }

    /// The first ones of these records, one at least, as many as hold kPointsAtOnce points.
    /// @param spare lists of points; where nobody else shares one it is written again
    std::vector<Profile> readSome(std::span<const std::int64_t> numbers,
                                  std::vector<QList<KxMath::KxPointXY>> spare) const {
        check(numbers);
        numbers = numbers.first(fitting(numbers));
        spare.resize(numbers.size());
        std::vector<Profile> profiles(numbers.size());
        std::vector<RecordTarget> targets;
        targets.reserve(numbers.size());
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            const RecordHead expected = head(std::size_t(numbers[i]));
            profiles[i].points = unfilled(std::move(spare[i]), expected.count);
            targets.push_back({expected, profiles[i].points.data()});
        }
        readAll(numbers, targets, {});
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            profiles[i].z = targets[i].z;
        }
        return profiles;
    }

    Arrays arrays(std::span<const std::int64_t> numbers, const py::object& progress) const {
        check(numbers);
        Arrays result{{}, {0}, {}};
        for (const std::int64_t number : numbers) {
            result.starts.push_back(result.starts.back() + head(std::size_t(number)).count);
        }
        result.points = py::array_t<float>({py::ssize_t(result.starts.back()), py::ssize_t(2)});
        auto* const first = reinterpret_cast<KxMath::KxPointXY*>(result.points.mutable_data());
        const KxInspect::Progress report = progressOf(progress);
        const py::gil_scoped_release release;
        std::vector<RecordTarget> targets;
        targets.reserve(numbers.size());
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            targets.push_back({head(std::size_t(numbers[i])), first + result.starts[i]});
        }
        readAll(numbers, targets, report);
        std::ranges::transform(targets, std::back_inserter(result.z), &RecordTarget::z);
        return result;
    }

    /// The positions of records.
    py::array_t<float> positions(std::span<const std::int64_t> numbers) const {
        check(numbers);
        py::array_t<float> z{py::ssize_t(numbers.size())};
        HeadReader heads(file_);
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            const auto found = heads.at(places_[std::size_t(numbers[i])]);
            if (!found || found->head != head(std::size_t(numbers[i]))) {
                failAt(numbers[i]);
            }
            z.mutable_at(py::ssize_t(i)) = found->z;
        }
        return z;
    }

private:
    static constexpr int kIsSection = 1 << 16; // above all counts

    void append(qint64 place, const RecordHead& head) {
        places_.push_back(place);
        counts_.push_back(head.hasPosition ? head.count : head.count | kIsSection);
    }

    RecordHead head(std::size_t number) const {
        return {counts_[number] & (kIsSection - 1), (counts_[number] & kIsSection) == 0};
    }

    void reportNow(const KxInspect::Progress& report, double part) const {
        if (size() % 4096 == 0) {
            report("indexing", part);
        }
    }

    /// With the reader that knows what is wrong with a file, and where.
    void readThrough(const KxInspect::Progress& report) {
        places_.clear();
        counts_.clear();
        KxInspect::RecordingReader reader(path_.bytes);
        for (KxInspect::Record record; reader.next(record);) {
            append(record.byte,
                   {int(record.profile.points.size()), record.kind == KxInspect::RecordKind::ProfileRecord});
            reportNow(report, double(reader.position()) / double(reader.size()));
        }
    }

    std::size_t fitting(std::span<const std::int64_t> numbers) const {
        std::size_t count = 0;
        for (qint64 points = 0; count < numbers.size() && points < kPointsAtOnce; ++count) {
            points += head(std::size_t(numbers[count])).count;
        }
        return count;
    }

    void check(std::span<const std::int64_t> numbers) const {
        for (const std::int64_t number : numbers) {
            if (number < 0 || std::size_t(number) >= size()) {
                throw py::index_error("record " + std::to_string(number) + " of " + std::to_string(size()));
            }
        }
    }

    /// Reads records, those that follow one another at once.
    void readAll(std::span<const std::int64_t> numbers, std::vector<RecordTarget>& targets,
                 const KxInspect::Progress& report) const {
        for (std::size_t first = 0; first < numbers.size();) {
            std::size_t end = first + 1;
            while (end < numbers.size() && end - first < kLongestRun && numbers[end] == numbers[end - 1] + 1) {
                ++end;
            }
            const std::span run(targets.data() + first, end - first);
            const std::size_t read = file_.readRun(places_[std::size_t(numbers[first])], run);
            if (read < run.size()) {
                failAt(numbers[first + read]);
            }
            first = end;
            if (report) {
                report("reading", double(first) / double(numbers.size()));
            }
        }
    }

    [[noreturn]] void failAt(std::int64_t number) const {
        const qint64 place = places_[std::size_t(number)];
        throw KxInspect::Error(KxInspect::ErrorKind::Damaged, {{}, path_.bytes, {}},
                               "has changed since it was opened: no such record at byte " + std::to_string(place),
                               {place, number + 1, {}, {}});
    }

    Path path_;
    RecordFile file_;
    std::vector<qint64> places_;
    std::vector<int> counts_;
};

std::span<const std::int64_t> spanOf(const Numbers& numbers) {
    return {numbers.data(), std::size_t(numbers.size())};
}

/// Profiles as objects of Python, as py::cast() of each would make them, which would look up their type each time.
class ProfileObjects {
public:
    /// @param list takes the objects; those of an earlier block that nobody else holds are used again
    explicit ProfileObjects(py::list list)
        : type_(py::detail::get_type_info(typeid(Profile), true)), list_(std::move(list)) {}

    /// The points of the objects that are used again; empty lists for the others.
    std::vector<QList<KxMath::KxPointXY>> takePoints() {
        std::vector<QList<KxMath::KxPointXY>> points(list_.size());
        for (std::size_t i = 0; i < points.size(); ++i) {
            if (Profile* const profile = spareAt(i)) {
                points[i] = std::move(profile->points);
            }
        }
        return points;
    }

    py::list fill(std::vector<Profile> profiles) {
        const std::size_t old = std::min(list_.size(), profiles.size());
        for (std::size_t i = 0; i < old; ++i) {
            if (Profile* const profile = spareAt(i)) {
                *profile = std::move(profiles[i]);
            } else if (PyList_SetItem(list_.ptr(), py::ssize_t(i), made(std::move(profiles[i])).ptr()) != 0) {
                throw py::error_already_set();
            }
        }
        for (std::size_t i = old; i < profiles.size(); ++i) {
            list_.append(py::reinterpret_steal<py::object>(made(std::move(profiles[i]))));
        }
        if (list_.size() > profiles.size() &&
            PyList_SetSlice(list_.ptr(), py::ssize_t(profiles.size()), PY_SSIZE_T_MAX, nullptr) != 0) {
            throw py::error_already_set();
        }
        return list_;
    }

private:
    /// The profile of an object that the list alone holds; nullptr for all others.
    Profile* spareAt(std::size_t i) const {
        PyObject* const item = PyList_GET_ITEM(list_.ptr(), py::ssize_t(i));
        if (Py_TYPE(item) != type_->type || Py_REFCNT(item) != 1) {
            return nullptr;
        }
        auto* const instance = reinterpret_cast<py::detail::instance*>(item);
        if (instance->weakrefs != nullptr || instance->has_patients) {
            return nullptr;
        }
        return instance->get_value_and_holder(type_).value_ptr<Profile>();
    }

    /// A new reference.
    py::handle made(Profile profile) const {
        auto* const owned = new Profile(std::move(profile)); // by the object
        // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): which deletes it
        return py::detail::type_caster_generic::cast(owned, py::return_value_policy::take_ownership, {}, type_, nullptr,
                                                     nullptr);
    }

    const py::detail::type_info* type_;
    py::list list_;
};

/// The next profiles of an iteration. One that is still held by a caller stays as it is; the others are written again,
/// which saves making them.
py::list readSome(const RecordIndex& index, const Numbers& numbers, py::list spare) {
    ProfileObjects objects(std::move(spare));
    std::vector<QList<KxMath::KxPointXY>> points = objects.takePoints();
    std::vector<Profile> profiles;
    {
        const py::gil_scoped_release release;
        profiles = index.readSome(spanOf(numbers), std::move(points));
    }
    return objects.fill(std::move(profiles));
}

/// Reads a file in one go: it is expected to go on with records like the last one, and read on from where it does not.
bool readWhole(const RecordFile& file, KxMath::KxPointXY* points, Arrays& result, const KxInspect::Progress& report) {
    HeadReader heads(file);
    std::array<RecordTarget, kLongestRun> targets;
    std::optional<RecordHead> head; // as of the record before
    std::size_t count = 1;
    for (qint64 place = 0; place < file.size();) {
        const qint64 rest = file.size() - place;
        const bool isLooked = !head || head->size() > rest;
        if (isLooked) {
            const std::optional<HeadReader::Found> found = heads.at(place);
            if (!found || found->head.size() > rest) {
                return false;
            }
            head = found->head;
            count = 1;
        }
        count = std::min(count, std::size_t(rest / head->size()));
        for (std::size_t i = 0; i < count; ++i) {
            targets[i] = {*head, points + result.starts.back() + std::int64_t(i) * head->count};
        }
        const std::size_t read = file.readRun(place, std::span(targets.data(), count));
        if (read == 0 && isLooked) {
            return false; // it has changed since
        }
        place += qint64(read) * head->size();
        for (std::size_t i = 0; i < read; ++i) {
            result.starts.push_back(result.starts.back() + head->count);
            result.z.push_back(targets[i].z);
        }
        report("reading", double(place) / double(file.size()));
        if (read < count) {
            head.reset();
        }
        count = std::min(2 * count, kLongestRun);
    }
    return true;
}

py::tuple readArrays(const Path& path, const py::object& progress) {
    Arrays result{{}, {0}, {}};
    const RecordFile file(path.bytes);
    bool isWhole = false;
    if (file.size() > 0 && file.size() <= kSmallFile) {
        const py::ssize_t most = py::ssize_t(file.size() / qint64(sizeof(KxMath::KxPointXY)));
        result.points = py::array_t<float>({most, py::ssize_t(2)});
        auto* const points = reinterpret_cast<KxMath::KxPointXY*>(result.points.mutable_data());
        const KxInspect::Progress report = progressOf(progress);
        const py::gil_scoped_release release;
        isWhole = readWhole(file, points, result, report);
    }
    if (!isWhole) { // large or not as expected
        const RecordIndex index(path, progress);
        std::vector<std::int64_t> numbers(index.size());
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            numbers[i] = std::int64_t(i);
        }
        return index.arrays(numbers, progress).toTuple();
    }
    const py::object used = result.points[py::slice(0, py::ssize_t(result.starts.back()), 1)];
    result.points = used.cast<py::array_t<float>>();
    return result.toTuple();
}

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
        .def_property_readonly("counts", &RecordIndex::counts, "The number of points of each record.")
        .def("read", &RecordIndex::read, py::arg("number"),
             "A record, counted from 0, with its position; None for a 2-D cloud section.")
        .def("read_some", &readSome, py::arg("numbers"), py::arg("spare"),
             "The first ones of these records, one at least, about 512 KiB, in the list `spare`: its profiles that "
             "nobody else holds are written again.")
        .def(
            "arrays",
            [](const RecordIndex& self, const Numbers& numbers, const py::object& progress) {
                return self.arrays(spanOf(numbers), progress).toTuple();
            },
            py::arg("numbers"), py::arg("progress") = py::none(), "The points of records, their starts and positions.")
        .def(
            "positions",
            [](const RecordIndex& self, const Numbers& numbers) { return self.positions(spanOf(numbers)); },
            py::arg("numbers"), "The positions of records, NaN for sections.");
    module.def("_read_arrays", &readArrays, py::arg("path"), py::arg("progress") = py::none(),
               "The points of all records of a file, their starts and positions.");
    module.def(
        "_recording_name", &nameOf, py::arg("path"),
        doc("The name of a recording without .bin, and the serial number of its sensor.", {"recordingName"}).c_str());
}

} // namespace kxpython
