// The profile set that is kept of a pass.
#include "inspect/train/keptProfiles.h"

#include "inspect/base/paths.h"
#include "inspect/identity/fileIdentity.h"

#include <KxInspect/AtomicFile.h>
#include <KxInspect/KxMathTypes.h>

#include <QtCore/QFile>

namespace KxInspect {

const char* textOf(PassKeep keep) {
    return keep == PassKeep::None ? "none" : keep == PassKeep::Chosen ? "chosen" : "all";
}

namespace detail {

namespace {

/// Writes profile records, one after the other.
class SetWriter {
public:
    explicit SetWriter(const std::string& path)
        : whole_({"profile set", path, {}}), where_(whole_.path()), file_(where_.text()) {
        if (!file_.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
            whole_.fail(file_.errorString().toStdString());
        }
    }

    void write(const PointList& points, float place) {
        KxMath::KxProfileZ record(place);
        record.points = points;
        if (!record.writeToFile(file_)) {
            whole_.fail(file_.errorString().toStdString());
        }
    }

    /// Puts the file in place. @return its identity
    InputFile finish(const std::string& path) {
        const qint64 size = file_.pos();
        if (!file_.flush()) {
            whole_.fail(file_.errorString().toStdString());
        }
        file_.close();
        InputFile identity = identifyFile(whole_.path());
        identity.name = bareName(path);
        whole_.commit(static_cast<std::uint64_t>(size));
        return identity;
    }

private:
    AtomicFile whole_;
    QtPath where_;
    QFile file_;
};

PointList toPointList(const std::vector<Point>& points) {
    PointList list;
    list.reserve(static_cast<qsizetype>(points.size()));
    for (const Point& point : points) {
        list.append(KxMath::KxPointXY(point.x, point.y));
    }
    return list;
}

} // namespace

KeptProfiles writeKeptProfiles(const std::string& path, const std::vector<MeasuredSide>& sides,
                               const PassResult& result) {
    SetWriter set(path);
    KeptProfiles kept;
    for (std::size_t pair = 0; pair < result.pairs.size(); ++pair) {
        for (std::size_t side = 0; side < sides.size(); ++side) {
            const std::optional<std::size_t>& wheel = result.pairs[pair].wheels[side];
            const int number = wheel ? sides[side].chosen[*wheel].number : 0;
            if (number > 0) {
                const FoundWheel& found = sides[side].found.wheels()[*wheel];
                const auto profile = static_cast<std::size_t>(number) - 1;
                set.write(found.profiles[profile], found.places[profile]);
                kept.records.push_back({false, static_cast<int>(pair) + 1, result.sides[side].file,
                                        static_cast<int>(*wheel) + 1, number, TrackSide::Left});
            }
        }
    }
    for (const PassWheelMeasures& wheel : result.wheels) {
        if (!wheel.section.empty()) {
            set.write(toPointList(wheel.section), wheel.place);
            kept.records.push_back({true, wheel.pair, {}, 0, 0, wheel.side});
        }
    }
    kept.file = set.finish(path);
    return kept;
}

} // namespace detail

} // namespace KxInspect
