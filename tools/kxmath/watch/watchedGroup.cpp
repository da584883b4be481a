// A group of recordings, where its result belongs, and whether it is complete.
#include "tools/kxmath/watch/watchedGroup.h"

#include "tools/kxmath/console/printable.h"

#include <KxInspect/Error.h>

#include <QtCore/QStringList>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>

#include <sys/stat.h>

namespace kxtool {

namespace {

using KxInspect::FoundRecording;

constexpr std::int64_t kSecond = 1'000'000'000; // ns

/// A time in the basic form, which every file system takes: "20261121T081500Z".
std::string basicForm(const std::string& time) {
    constexpr std::size_t kDate = 10; // a '-' behind it is the sign of the zone
    std::string name;
    for (std::size_t i = 0; i < time.size(); ++i) {
        if (time[i] != ':' && (time[i] != '-' || i >= kDate)) {
            name += time[i];
        }
    }
    return name;
}

/// "101+102"; of many sensors the first ones and how many there are.
std::string joined(const std::vector<int>& serials) {
    constexpr std::size_t kMost = 12; // a file name has room for these
    std::string text;
    for (std::size_t i = 0; i < serials.size() && i < kMost; ++i) {
        text += i > 0 ? "+" : "";
        text += std::to_string(serials[i]);
    }
    return serials.size() > kMost ? text + "+of" + std::to_string(serials.size()) : text;
}

QString fileName(const FoundRecording& recording) {
    return printable(fromBytes(recording.path.substr(recording.path.rfind('/') + 1)));
}

QString missingSensors(const WatchedGroup& group) {
    QStringList missing;
    for (const int serial : group.serials) {
        const auto isOf = [&](const FoundRecording& recording) { return recording.serial == serial; };
        if (std::none_of(group.recordings.begin(), group.recordings.end(), isOf)) {
            missing.append(QString::number(serial));
        }
    }
    return missing.isEmpty() ? QString()
                             : QStringLiteral("no recording of sensor %1").arg(missing.join(QStringLiteral(", ")));
}

/// What the end of a recording lacks. Measuring says what is wrong with one that cannot be read.
QString halfWritten(const FoundRecording& recording) {
    try {
        const KxInspect::RecordingEnd end = KxInspect::recordingEnd(recording.path);
        return end.isWhole()    ? QString()
               : end.bytes == 0 ? QStringLiteral("'%1' is empty").arg(fileName(recording))
                                : QStringLiteral("'%1' ends within a record, at byte %2")
                                      .arg(fileName(recording))
                                      .arg(static_cast<qint64>(end.bytes));
    } catch (const KxInspect::Error&) {
        return {};
    }
}

} // namespace

QString WatchedGroup::title() const {
    const QString when = QString::fromStdString(time);
    return station.empty() ? when : printable(fromBytes(station)) + QLatin1Char(' ') + when;
}

WatchedGroup watchedGroup(const KxInspect::RecordingGroup& group, const KxInspect::StationSettings& settings,
                          const std::string& out) {
    WatchedGroup watched;
    watched.station = group.station;
    watched.time = group.time;
    for (const KxInspect::SensorSettings& sensor : settings.sensors) {
        watched.serials.push_back(sensor.serial);
        std::copy_if(group.recordings.begin(), group.recordings.end(), std::back_inserter(watched.recordings),
                     [&](const FoundRecording& recording) { return recording.serial == sensor.serial; });
    }
    watched.folder = group.station.empty() ? out : out + '/' + group.station;
    watched.name = basicForm(group.time) + '_' + joined(watched.serials);
    return watched;
}

bool areUnchanged(const std::vector<FoundRecording>& recordings) {
    return std::all_of(recordings.begin(), recordings.end(), [](const FoundRecording& recording) {
        struct stat now {};
        if (lstat(recording.path.c_str(), &now) != 0) {
            if (errno == ENOENT) {
                return false;
            }
            throw KxInspect::Error(KxInspect::ErrorKind::Unreadable, {"recording", recording.path, {}},
                                   std::string("cannot be read: ") + std::strerror(errno));
        }
        return now.st_size == recording.bytes &&
               std::int64_t(now.st_ctim.tv_sec) * kSecond + now.st_ctim.tv_nsec == recording.changed;
    });
}

void Stillness::note(const KxInspect::FoundRecordings& found) {
    std::map<std::string, Seen> seen;
    const Clock::time_point now = Clock::now();
    for (const KxInspect::RecordingGroup& group : found.groups) {
        for (const FoundRecording& recording : group.recordings) {
            const Seen fresh{{recording.bytes, recording.changed}, now};
            const auto before = seen_.find(recording.path);
            const bool isSame = before != seen_.end() && before->second.state == fresh.state;
            seen.emplace(recording.path, isSame ? before->second : fresh);
        }
    }
    seen_ = std::move(seen);
}

bool Stillness::isStill(const FoundRecording& recording, double seconds) const {
    using std::chrono::duration;
    const std::int64_t now =
        std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::system_clock::now().time_since_epoch())
            .count();
    const double age = static_cast<double>(now - recording.changed) / static_cast<double>(kSecond);
    const auto seen = seen_.find(recording.path);
    return age >= seconds ||
           (seen != seen_.end() && duration<double>(Clock::now() - seen->second.since).count() >= seconds);
}

Completeness completenessOf(const WatchedGroup& group, const Stillness& stillness, const Patience& patience) {
    const auto changing = [&](double seconds) {
        return std::find_if_not(group.recordings.begin(), group.recordings.end(),
                                [&](const FoundRecording& recording) { return stillness.isStill(recording, seconds); });
    };
    const auto end = group.recordings.end();
    QString lack = missingSensors(group);
    if (const auto recording = changing(patience.settle); recording != end) {
        return {lack.isEmpty()
                    ? QStringLiteral("'%1' has not been still for %2 s").arg(fileName(*recording)).arg(patience.settle)
                    : lack,
                false};
    }
    for (auto recording = group.recordings.begin(); recording != end && lack.isEmpty(); ++recording) {
        lack = halfWritten(*recording);
    }
    const bool isGivenUp = !group.recordings.empty() && changing(patience.giveUp) == end;
    return {lack, lack.isEmpty() || isGivenUp};
}

} // namespace kxtool
