// How the groups of a station are measured: the settings and files of the options, as they were read at one time.
#include "tools/kxmath/watch/station.h"

#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/printable.h"

#include <KxMath/KxMathVersion.h>

#include <cerrno>
#include <cstring>
#include <optional>

#include <sys/stat.h>

namespace kxtool {

namespace {

std::string lineOf(const char* what, const std::optional<KxInspect::InputFile>& file) {
    return file ? std::string(what) + ' ' + file->sha256 + '\n' : std::string();
}

} // namespace

Station::Station(const WatchOptions& options)
    : names_(options.files), files_(filesNow()),
      settings_(KxInspect::readStationSettings(toBytes(options.files.settings))), options_(passOptions(options)) {
    if (settings_.sensors.size() < 2) {
        throw CommandError{BadInput, QStringLiteral("settings '%1' name %2 sensors; a pass needs two")
                                         .arg(options.files.settings)
                                         .arg(settings_.sensors.size())};
    }
}

Station::State Station::filesNow() const {
    constexpr std::int64_t kSecond = 1'000'000'000; // ns
    State state;
    const QStringList names = names_.all();
    for (const QString& name : names) {
        struct stat now {};
        const bool isThere = stat(toBytes(name).c_str(), &now) == 0;
        if (!isThere && errno != ENOENT) {
            throw CommandError{BadInput, QStringLiteral("'%1' cannot be read: %2")
                                             .arg(printable(name), QString::fromLocal8Bit(std::strerror(errno)))};
        }
        state.emplace_back(isThere ? now.st_size : -1,
                           std::int64_t(now.st_ctim.tv_sec) * kSecond + now.st_ctim.tv_nsec);
    }
    return state;
}

std::string Station::identity() const {
    std::string text = lineOf("settings", settings_.source);
    text += lineOf("defects", options_.defects ? options_.defects->source : std::nullopt);
    text += lineOf("consist", options_.consist ? options_.consist->source : std::nullopt);
    text += lineOf("limits", options_.limits ? options_.limits->source : std::nullopt);
    return text + "mode " + std::to_string(options_.mode) + "\nversion " + KxMath_GetVersionString() + '\n';
}

} // namespace kxtool
