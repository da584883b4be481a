// Measuring a group into its result, once.
#include "tools/kxmath/watch/groupOutcome.h"

#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/train/passFolder.h"
#include "tools/kxmath/watch/failureFile.h"

#include <KxInspect/Error.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <new>
#include <sstream>
#include <system_error>

#include <sys/stat.h>

namespace kxtool {

namespace {

using KxInspect::FoundRecording;
using KxInspect::PassResult;
namespace fs = std::filesystem;

constexpr const char* kResult = "/result.json";

bool isThere(const std::string& path) {
    std::error_code none;
    return fs::exists(fs::symlink_status(path, none));
}

/// Whether a name is that of an unfinished folder or file for `name`, which may have a number behind it.
bool isLeftoverOf(const std::string& name, const std::string& found) {
    const std::string begin = "incomplete-" + name;
    if (found.compare(0, begin.size(), begin) != 0) {
        return false;
    }
    const std::string rest = found.substr(begin.size());
    return rest.empty() || (rest.size() > 1 && rest.front() == '-' &&
                            std::all_of(rest.begin() + 1, rest.end(), [](char c) { return c >= '0' && c <= '9'; }));
}

std::string textOf(const std::string& path) {
    const std::ifstream file(path, std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
}

/// What a result says of the recording of a sensor; null when it had none.
const KxInspect::PassSide* sideOf(const PassResult& pass, int serial) {
    for (const auto* const sides : {&pass.sides, &pass.further}) {
        for (const KxInspect::PassSide& side : *sides) {
            if (side.serial == serial && !side.file.empty()) {
                return &side;
            }
        }
    }
    return nullptr;
}

/// What became of a group whose recordings are perhaps no longer those of its result. Only sizes are compared: hashing an
/// archive at each look would take hours.
GroupOutcome comparedWithResult(const WatchedGroup& group, const PassResult& pass) {
    GroupOutcome outcome{GroupState::Done, {}, 0, 0, {}};
    for (const FoundRecording& recording : group.recordings) {
        const KxInspect::PassSide* const side = sideOf(pass, recording.serial);
        if (side != nullptr && side->bytes == recording.bytes) {
            continue;
        }
        const bool wasUsed = side != nullptr && side->missing.empty();
        const QString what = wasUsed ? QStringLiteral("'%1' has another size than when it was measured")
                             : side == nullptr
                                 ? QStringLiteral("'%1' came after the pass was measured without it")
                                 : QStringLiteral("'%1' has changed since the pass was measured without it");
        outcome.reason =
            what.arg(printable(fromBytes(recording.path))) +
            QStringLiteral("; remove '%1' to measure the group again").arg(printable(fromBytes(group.result())));
        if (wasUsed) {
            outcome.state = GroupState::Failed;
            break;
        }
    }
    return outcome;
}

/// What became of a group that has a result.
GroupOutcome outcomeOfResult(const WatchedGroup& group) {
    constexpr std::int64_t kSecond = 1'000'000'000; // ns
    GroupOutcome outcome{GroupState::Done, {}, 0, 0, {}};
    struct stat result {};
    if (stat((group.result() + kResult).c_str(), &result) != 0) {
        return {GroupState::Failed,
                QStringLiteral("'%1' has no result.json").arg(printable(fromBytes(group.result()))),
                0,
                0,
                {}};
    }
    const std::int64_t made = std::int64_t(result.st_mtim.tv_sec) * kSecond + result.st_mtim.tv_nsec;
    if (std::all_of(group.recordings.begin(), group.recordings.end(),
                    [&](const FoundRecording& recording) { return recording.changed < made; })) {
        return outcome;
    }
    try {
        return comparedWithResult(group, KxInspect::passFromJson(textOf(group.result() + kResult)));
    } catch (const KxInspect::Error& error) {
        return {GroupState::Failed, QString::fromUtf8(error.what()), 0, 0, {}};
    }
}

void requireOneEach(const WatchedGroup& group) {
    for (std::size_t i = 1; i < group.recordings.size(); ++i) { // those of one sensor stand together
        const FoundRecording& first = group.recordings[i - 1];
        const FoundRecording& second = group.recordings[i];
        if (first.serial == second.serial) {
            throw CommandError{BadInput, QStringLiteral("'%1' and '%2' are of the same sensor and time")
                                             .arg(printable(fromBytes(first.path)), printable(fromBytes(second.path)))};
        }
    }
}

PassFiles filesOf(const WatchedGroup& group, const WatchOptions& options) {
    PassFiles files = options.files;
    for (const FoundRecording& recording : group.recordings) {
        files.recordings.push_back(recording.path);
    }
    return files;
}

GroupOutcome changedMeanwhile() {
    return {GroupState::Waiting, QStringLiteral("a recording or the settings have just changed"), 0, 0, {}};
}

/// Whether there are more recordings of the group than it was found with. One that comes after this look is newer than
/// the result, which is written, and is found by that.
bool haveMoreCome(const WatchedGroup& group, const Station& station, const WatchOptions& options) {
    const KxInspect::FoundRecordings found = KxInspect::findRecordings(options.folder, options.layout);
    return std::any_of(found.groups.begin(), found.groups.end(), [&](const KxInspect::RecordingGroup& recordings) {
        const WatchedGroup now = watchedGroup(recordings, station.settings(), options.out);
        return now.result() == group.result() && now.recordings.size() > group.recordings.size();
    });
}

/// What a measured group lacks, as a sentence; mostly nothing.
QString whatIsMissing(const PassResult& pass, const QString& lack, const WatchOptions& options) {
    QString text = lack.isEmpty() ? QString() : lack + QStringLiteral("; measured without it");
    if (!pass.hasResult()) {
        text += (text.isEmpty() ? QString() : QStringLiteral(": ")) + whyNoResult(pass, options);
    }
    return text;
}

GroupOutcome measureOnce(const WatchedGroup& group, const QString& lack, const Station& station,
                         const WatchOptions& options, const KxInspect::Progress& progress) {
    requireOneEach(group);
    if (!areUnchanged(group.recordings)) {
        return changedMeanwhile();
    }
    WorkFolder folder(fromBytes(group.folder), fromBytes(group.name));
    KxInspect::PassOptions measuring = station.options();
    measuring.labels.time = group.time;
    if (!group.station.empty()) {
        measuring.labels.station = group.station;
    }
    const PassResult pass = measureInto(folder, filesOf(group, options), station.settings(), measuring, progress);
    if (!areUnchanged(group.recordings) || !station.isCurrent() ||
        (!lack.isEmpty() && haveMoreCome(group, station, options))) {
        return changedMeanwhile();
    }
    if (pass.distances() == 0 && !pass.hasResult()) {
        throw CommandError{NoResult, whyNoResult(pass, options)};
    }
    std::error_code ignored; // what stays is not looked at beside a result
    fs::remove(group.failure(), ignored);
    if (!folder.finishUnlessTaken()) {
        return {GroupState::Done, {}, 0, 0, {}};
    }
    return {GroupState::Measured, whatIsMissing(pass, lack, options), static_cast<int>(pass.pairs.size()),
            pass.distances(), verdicts(pass)};
}

GroupOutcome failed(const WatchedGroup& group, const Station& station, const GroupFailure& failure) {
    if (!areUnchanged(group.recordings) || !station.isCurrent()) {
        return changedMeanwhile();
    }
    writeFailure(group, triedWith(group, station), failure);
    return {failure.isNoResult ? GroupState::NoResult : GroupState::Failed, failure.reason, 0, 0, {}};
}

} // namespace

void removeLeftovers(const WatchedGroup& group) {
    std::error_code none;
    if (!fs::is_directory(group.folder, none)) {
        return;
    }
    for (const std::string& found : namesIn(group.folder)) {
        if (isLeftoverOf(group.name, found) || isLeftoverOf(group.name + ".failed.txt", found)) {
            removeAll(group.folder + '/' + found);
        }
    }
}

std::optional<GroupOutcome> outcomeBefore(const WatchedGroup& group, const Station& station) {
    if (isThere(group.result())) {
        return outcomeOfResult(group);
    }
    if (const std::optional<GroupFailure> failure = readFailure(group, triedWith(group, station))) {
        return GroupOutcome{failure->isNoResult ? GroupState::NoResult : GroupState::Failed, failure->reason, 0, 0, {}};
    }
    return std::nullopt;
}

GroupOutcome measureGroup(const WatchedGroup& group, const QString& lack, const Station& station,
                          const WatchOptions& options, const KxInspect::Progress& progress) {
    const auto reason = [&](const QString& text) {
        return lack.isEmpty() ? text : QStringLiteral("%1, and without it: %2").arg(lack, text);
    };
    try {
        return measureOnce(group, lack, station, options, progress);
    } catch (const CommandError& error) {
        if (error.code == OutputFailed) {
            throw;
        }
        return failed(group, station, {error.code == NoResult, reason(error.message)});
    } catch (const KxInspect::Error& error) {
        if (error.kind() == KxInspect::ErrorKind::Unwritable) {
            throw;
        }
        return failed(group, station,
                      {error.kind() == KxInspect::ErrorKind::NoResult, reason(QString::fromUtf8(error.what()))});
    } catch (const std::bad_alloc&) {
        return {GroupState::NoMemory, {}, 0, 0, {}}; // a larger group than the next one, perhaps
    }
}

} // namespace kxtool
