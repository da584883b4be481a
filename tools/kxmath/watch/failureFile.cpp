// The small file that says why a group could not be measured.
#include "tools/kxmath/watch/failureFile.h"

#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/outputFile.h"
#include "tools/kxmath/console/printable.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>

namespace kxtool {

namespace {

constexpr const char* kFailed = "failed: ";
constexpr const char* kNoResult = "no result: ";
constexpr const char* kHint =
    "It is tried again when this file is removed, or when something of the following changes.\n";

std::string begin(const GroupFailure& failure) {
    return failure.isNoResult ? kNoResult : kFailed;
}

std::string contentOf(const GroupFailure& failure, const std::string& triedWith) {
    return begin(failure) + printable(failure.reason).toStdString() + '\n' + kHint + triedWith;
}

} // namespace

std::string triedWith(const WatchedGroup& group, const Station& station) {
    std::string text;
    for (const KxInspect::FoundRecording& recording : group.recordings) {
        text += "recording " +
                printable(fromBytes(recording.path.substr(recording.path.rfind('/') + 1))).toStdString() + ' ' +
                std::to_string(recording.bytes) + " bytes, changed " + std::to_string(recording.changed) + '\n';
    }
    return text + station.identity();
}

std::optional<GroupFailure> readFailure(const WatchedGroup& group, const std::string& triedWith) {
    std::ifstream file(group.failure(), std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    const std::string text = content.str();
    const std::size_t lineEnd = text.find('\n');
    GroupFailure failure;
    failure.isNoResult = text.rfind(kNoResult, 0) == 0;
    const std::size_t reasonBegin = begin(failure).size();
    if (!file || lineEnd == std::string::npos || lineEnd < reasonBegin) {
        return std::nullopt;
    }
    failure.reason = fromBytes(text.substr(reasonBegin, lineEnd - reasonBegin));
    return text == contentOf(failure, triedWith) ? std::optional(failure) : std::nullopt;
}

void writeFailure(const WatchedGroup& group, const std::string& triedWith, const GroupFailure& failure) {
    std::error_code error;
    std::filesystem::create_directories(group.folder, error);
    if (error) {
        throw CommandError{OutputFailed, QStringLiteral("cannot write in folder '%1': %2")
                                             .arg(fromBytes(group.folder), QString::fromStdString(error.message()))};
    }
    const OutputFile file(QStringLiteral("reason"), fromBytes(group.failure()));
    file.write(QString::fromStdString(contentOf(failure, triedWith)));
}

} // namespace kxtool
