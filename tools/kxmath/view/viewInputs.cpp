// What files hold, for pages that show it.
#include "tools/kxmath/view/viewInputs.h"

#include "inspect/base/paths.h"
#include "report/view/deviation.h"
#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/printable.h"

#include <KxInspect/FileContents.h>
#include <KxInspect/HeightMapFile.h>
#include <KxInspect/ProfileFile.h>
#include <KxInspect/Scan.h>

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <algorithm>
#include <cmath>

namespace kxtool {

namespace {

using KxInspect::FileContents;
using KxInspect::FileKind;
using KxInspect::PartKind;
using KxInspect::Profile;

enum class Kind { Profile, Set, Map, Cloud, Result };

QString shortName(const QString& file) {
    return printable(QFileInfo(file).fileName());
}

/// Whether the first sign of a file is that of a JSON object.
bool isResult(const QString& file) {
    constexpr qint64 kRead = 64;
    const KxInspect::detail::QtPath path(toBytes(file));
    QFile bytes(path.text());
    return QFileInfo(path.text()).isFile() && bytes.open(QIODevice::ReadOnly) &&
           bytes.read(kRead).trimmed().startsWith('{');
}

std::string textOf(const QString& file) {
    constexpr qint64 kMost = qint64(1) << 30;
    const KxInspect::detail::QtPath path(toBytes(file));
    QFile bytes(path.text());
    if (!bytes.open(QIODevice::ReadOnly) || bytes.size() > kMost) {
        throw CommandError{
            BadInput, QStringLiteral("'%1' cannot be read: %2")
                          .arg(file, bytes.isOpen() ? QStringLiteral("it is larger than 1 GiB") : bytes.errorString())};
    }
    return bytes.readAll().toStdString();
}

bool isSpatial(const FileContents& contents, const KxInspect::TextOptions& text) {
    constexpr std::size_t kSpatial = 3;
    const FileKind kind = contents.kind.value();
    const bool isText = kind == FileKind::Csv || kind == FileKind::Xyz;
    const int columns = contents.text ? contents.text->columns : 0;
    if (isText && !text.columns.empty()) {
        return text.columns.size() == kSpatial;
    }
    return isText ? columns > 2 : kind != FileKind::Gauge;
}

/// Whether a file holds a height map as such; an array of numbers is one when its pitch is given.
bool isMap(FileKind kind, const ViewArguments& arguments) {
    return holdsHeightMap(kind) && (kind != FileKind::Npy || arguments.step);
}

Kind kindOf(const QString& file, const ViewArguments& arguments, const KxInspect::Progress& progress) {
    const KxInspect::TextOptions& text = arguments.text;
    if (isResult(file)) {
        return Kind::Result;
    }
    if (const auto kind = KxInspect::kindOfFile(toBytes(file)); kind == FileKind::Npy && arguments.step) {
        return Kind::Map; // as points it may have none
    }
    const FileContents contents = KxInspect::readFileContents(toBytes(file), progress, text);
    if (contents.damage) {
        throw KxInspect::Error(*contents.damage);
    }
    if (contents.points == 0) {
        throw CommandError{NoResult, QStringLiteral("'%1' has no points").arg(file)};
    }
    if (contents.kind) {
        if (isMap(*contents.kind, arguments)) {
            return Kind::Map;
        }
        return isSpatial(contents, text) ? Kind::Cloud : Kind::Profile;
    }
    std::int64_t profiles = 0;
    bool hasSpace = false;
    for (const KxInspect::PartCount& part : contents.parts) {
        const bool isFlat = part.kind == PartKind::CloudSection2D || part.kind == PartKind::ProfileRecord;
        profiles += isFlat ? part.count : 0;
        hasSpace |= !isFlat;
    }
    return hasSpace ? Kind::Cloud : profiles > 1 ? Kind::Set : Kind::Profile;
}

/// The profile of a file, or the record that is asked for.
kxreport::NamedProfile readNamed(const QString& file, const ViewArguments& arguments, QStringList& notes) {
    std::optional<KxInspect::TextForm> form;
    const std::vector<Profile> profiles = KxInspect::readProfiles(toBytes(file), arguments.text, &form);
    const auto number = static_cast<std::size_t>(arguments.record.value_or(1));
    if (number > profiles.size()) {
        throw CommandError{WrongUse, QStringLiteral("--record %1: '%2' has %3 records")
                                         .arg(QString::number(number), file, QString::number(profiles.size()))};
    }
    if (const std::string note = form ? readingNote(*form) : std::string(); !note.empty()) {
        notes.append(QStringLiteral("'%1' %2").arg(shortName(file), QString::fromStdString(note)));
    }
    const QString record = arguments.record ? QStringLiteral(", record %1").arg(number) : QString();
    return {shortName(file) + record, profiles[number - 1]};
}

kxreport::ProfilesView readProfilesView(const ViewArguments& arguments) {
    kxreport::ProfilesView view;
    for (const QString& file : arguments.files) {
        view.profiles.push_back(readNamed(file, arguments, view.notes));
    }
    if (!arguments.reference.isEmpty()) {
        view.reference = readNamed(arguments.reference, arguments, view.notes);
    }
    return view;
}

/// The median distance in x of neighbouring points with two digits, mm; wider for scans that are wide for it.
float columnDistance(const std::vector<Profile>& profiles) {
    constexpr std::size_t kSampled = 200;
    constexpr double kMostColumns = 4096.0;
    const std::size_t stride = std::max<std::size_t>(1, profiles.size() / kSampled);
    std::vector<float> distances;
    KxInspect::Range range;
    for (std::size_t i = 0; i < profiles.size(); ++i) {
        const auto& points = profiles[i].points;
        for (std::size_t k = 0; k < points.size(); ++k) {
            range.include(points[k].x);
            const float distance = k > 0 ? std::abs(points[k].x - points[k - 1].x) : 0.0f;
            if (i % stride == 0 && distance > 0.0f) {
                distances.push_back(distance);
            }
        }
    }
    if (distances.empty()) {
        return std::numeric_limits<float>::quiet_NaN();
    }
    const auto middle = distances.begin() + static_cast<std::ptrdiff_t>(distances.size() / 2);
    std::nth_element(distances.begin(), middle, distances.end());
    const double width = static_cast<double>(range.max) - static_cast<double>(range.min);
    const double wanted = std::max(static_cast<double>(*middle), width / kMostColumns);
    return QString::number(wanted, 'g', 2).toFloat();
}

/// The height map of a scan with the pitch that was asked for.
KxInspect::HeightMap scanMap(const QString& file, const ViewArguments& arguments, const KxInspect::Progress& progress) {
    KxInspect::HeightMapOptions options;
    options.pitch = *arguments.step;
    return KxInspect::makeHeightMap(
        KxInspect::readScan(toBytes(file), {0.0f, arguments.distance.value_or(options.pitch)}, progress), options,
        progress);
}

KxInspect::HeightMap mapOf(const QString& file, Kind kind, const ViewArguments& arguments,
                           const KxInspect::Progress& progress) {
    if (kind == Kind::Set) {
        return scanMap(file, arguments, progress);
    }
    const std::string path = toBytes(file);
    const FileKind fileKind = KxInspect::kindOfFile(path).value();
    return KxInspect::readHeightMap(path, fileKind, fileKind == FileKind::Npy ? arguments.step : std::nullopt);
}

/// Whether the height map of a file needs --step.
bool needsStep(const QString& file, Kind kind) {
    return kind == Kind::Set || KxInspect::kindOfFile(toBytes(file)) == FileKind::Npy;
}

void checkStep(const ViewArguments& arguments, Kind kind, Kind referenceKind) {
    const QString& file = arguments.files.constFirst();
    const bool isUsed =
        needsStep(file, kind) || (!arguments.reference.isEmpty() && needsStep(arguments.reference, referenceKind));
    if (arguments.step && !isUsed) {
        throw CommandError{WrongUse, QStringLiteral("--step is for scans and npy, '%1' holds its own").arg(file)};
    }
}

/// A height map alone, or its deviations from another one.
kxreport::SetView readMapView(const ViewArguments& arguments, const KxInspect::Progress& progress) {
    const QString& file = arguments.files.constFirst();
    kxreport::SetView view{shortName(file), {}, {}, {}, true, {}};
    const Kind kind = kindOf(file, arguments, progress);
    const bool isCompared = !arguments.reference.isEmpty();
    const Kind referenceKind = isCompared ? kindOf(arguments.reference, arguments, progress) : kind;
    checkStep(arguments, kind, referenceKind);
    view.map = mapOf(file, kind, arguments, progress);
    if (isCompared) {
        view.map = kxreport::mapDeviation(*view.map, mapOf(arguments.reference, referenceKind, arguments, progress));
        view.reference = shortName(arguments.reference);
        const auto& heights = view.map->heights;
        if (std::none_of(heights.begin(), heights.end(), [](float h) { return std::isfinite(h); })) {
            throw CommandError{
                NoResult,
                QStringLiteral("'%1' and '%2' have no common cell with heights").arg(file, arguments.reference)};
        }
    }
    return view;
}

void addMap(const ViewArguments& arguments, KxInspect::Scan& scan, kxreport::SetView& view,
            const KxInspect::Progress& progress) {
    const float pitch = arguments.step.value_or(columnDistance(scan.profiles));
    if (!(pitch > 0.0f)) { // NaN: true
        view.whyNoMap = QStringLiteral("There is no height map: no profile has two points.");
        return;
    }
    scan = KxInspect::readScan(toBytes(arguments.files.constFirst()), {0.0f, arguments.distance.value_or(pitch)},
                               progress);
    KxInspect::HeightMapOptions options;
    options.pitch = pitch;
    try {
        view.map = KxInspect::makeHeightMap(scan, options, progress);
    } catch (const KxInspect::Error& error) {
        if (arguments.step) {
            throw;
        }
        view.whyNoMap = QStringLiteral("There is no height map: ") + QString::fromUtf8(error.what());
    }
}

kxreport::SetView readSetView(const ViewArguments& arguments, const KxInspect::Progress& progress) {
    const QString& file = arguments.files.constFirst();
    kxreport::SetView view{shortName(file), {}, {}, {}, arguments.step.has_value(), {}};
    KxInspect::Scan scan = KxInspect::readScan(toBytes(file), {}, progress);
    addMap(arguments, scan, view, progress);
    view.profiles = KxInspect::readProfiles(toBytes(file));
    return view;
}

bool holdsMap(Kind kind, const ViewArguments& arguments) {
    return kind == Kind::Map || (kind == Kind::Set && arguments.step && !arguments.record);
}

void checkTogether(const ViewArguments& arguments, const QString& file, Kind kind) {
    const bool isCompared = !arguments.reference.isEmpty() && holdsMap(kind, arguments);
    const bool isOne = arguments.files.size() == 1 && (arguments.reference.isEmpty() || isCompared);
    const bool isProfile = kind == Kind::Profile || (kind == Kind::Set && arguments.record);
    if (!isProfile && !isOne) {
        throw CommandError{
            WrongUse,
            QStringLiteral(
                "'%1' is no single profile: several files are shown together, and --compare "
                "compares them, where each holds one, or --record chooses it; scans are compared as height maps with "
                "--step")
                .arg(file)};
    }
    if (arguments.record && kind != Kind::Set && kind != Kind::Profile) {
        throw CommandError{WrongUse, QStringLiteral("--record is for scans and recordings, '%1' is none").arg(file)};
    }
    if (arguments.step && kind != Kind::Map && (kind != Kind::Set || arguments.record)) {
        throw CommandError{WrongUse, QStringLiteral("--step is for height maps of scans, '%1' makes none").arg(file)};
    }
}

} // namespace

Shown readShown(const ViewArguments& arguments, const KxInspect::Progress& progress) {
    QStringList all = arguments.files;
    if (!arguments.reference.isEmpty()) {
        all.append(arguments.reference);
    }
    Kind kind = Kind::Profile;
    int maps = 0;
    for (const QString& file : std::as_const(all)) {
        kind = kindOf(file, arguments, progress);
        checkTogether(arguments, file, kind);
        maps += holdsMap(kind, arguments) ? 1 : 0;
    }
    const QString& file = arguments.files.constFirst();
    const bool isCompared = !arguments.reference.isEmpty();
    if (maps == 1 && isCompared) {
        throw CommandError{WrongUse, QStringLiteral("a height map and a profile are not compared")};
    }
    if (maps > 0 && (kind == Kind::Map || isCompared)) {
        return readMapView(arguments, progress);
    }
    if (kind == Kind::Result) {
        return textOf(file);
    }
    if (kind == Kind::Cloud) {
        const std::string path = toBytes(file);
        return kxreport::CloudView{
            shortName(file),
            KxInspect::readPoints(path, KxInspect::kindOfFile(path).value_or(FileKind::Cloud), arguments.text)};
    }
    if (kind == Kind::Set && !arguments.record) {
        return readSetView(arguments, progress);
    }
    return readProfilesView(arguments);
}

} // namespace kxtool
