// kxmath watch: from recordings in folders to a result for each pass.
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/interruption.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/watch/failureFile.h"
#include "tools/kxmath/watch/groupOutcome.h"
#include "tools/kxmath/watch/watchLock.h"
#include "tools/kxmath/watch/watchOptions.h"
#include "tools/kxmath/watch/watchText.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <map>
#include <new>
#include <set>
#include <thread>

namespace kxtool {

namespace {

constexpr const char* kName = "watch";

class Watch {
public:
    explicit Watch(const WatchOptions& options) : options_(options) {}

    /// Looks at all groups once, and measures those that are complete.
    void lookAtAll() {
        while (!look()) {
        }
    }

    /// Throws a CommandError where groups have no result.
    ExitCode exitCode() const {
        const auto count = [&](GroupState state) { return counts_[static_cast<std::size_t>(state)]; };
        const int failed = count(GroupState::Failed);
        const int without = count(GroupState::NoResult);
        const QString folder = fromBytes(options_.folder);
        if (count(GroupState::NoMemory) > 0) {
            throw std::bad_alloc();
        }
        if (failed > 0 || isUnreadable_) {
            throw CommandError{BadInput, failed > 0
                                             ? QStringLiteral("%1 groups in '%2' could not be measured, the first: %3")
                                                   .arg(QString::number(failed), folder, failure_)
                                             : QStringLiteral("not all of '%1' could be read").arg(folder)};
        }
        if (without > 0 || count(GroupState::Measured) + count(GroupState::Done) == 0) {
            throw CommandError{NoResult,
                               without > 0 ? QStringLiteral("%1 groups in '%2' have no result").arg(without).arg(folder)
                                           : QStringLiteral("no group of recordings in '%1' has a result").arg(folder)};
        }
        return options_.failOn.exitCode(kName, Done, verdicts_);
    }

    QString summary() const { return countText(counts_); }

private:
    /// @return false when the settings changed before the end
    bool look() {
        const Station station(options_);
        const KxInspect::FoundRecordings found = KxInspect::findRecordings(options_.folder, options_.layout);
        stillness_.note(found);
        reportSkipped(found.skipped);
        counts_ = {};
        failure_.clear();
        std::set<std::string> there;
        for (const KxInspect::RecordingGroup& recordings : found.groups) {
            const WatchedGroup group = watchedGroup(recordings, station.settings(), options_.out);
            there.insert(group.result());
            const std::optional<GroupOutcome> outcome = outcomeOf(group, station);
            if (!outcome) {
                return false;
            }
            const bool isByThisRun = measured_.count(group.result()) > 0 && outcome->state == GroupState::Done;
            ++counts_[static_cast<std::size_t>(isByThisRun ? GroupState::Measured : outcome->state)];
            if (outcome->state == GroupState::Failed && failure_.isEmpty()) {
                failure_ = outcome->reason;
            }
            report(group, *outcome);
        }
        forgetAllBut(there);
        return true;
    }

    /// What becomes of a group now; nothing when the settings have changed.
    std::optional<GroupOutcome> outcomeOf(const WatchedGroup& group, const Station& station) {
        throwIfInterrupted();
        removeLeftovers(group);
        if (std::optional<GroupOutcome> before = outcomeBefore(group, station)) {
            return before;
        }
        const Completeness completeness = completenessOf(group, stillness_, options_.patience);
        if (!completeness.isReady) {
            return GroupOutcome{GroupState::Waiting, completeness.lack, 0, 0, {}};
        }
        const std::string tried = triedWith(group, station);
        if (const auto without = noMemory_.find(group.result());
            without != noMemory_.end() && without->second == tried) {
            return GroupOutcome{GroupState::NoMemory, {}, 0, 0, {}};
        }
        if (!station.isCurrent()) {
            return std::nullopt;
        }
        Progress progress;
        GroupOutcome outcome = measureGroup(group, completeness.lack, station, options_, progress.callback());
        if (outcome.state == GroupState::NoMemory) {
            noMemory_[group.result()] = tried;
        } else if (outcome.state == GroupState::Measured) {
            measured_.insert(group.result());
            addVerdicts(outcome.verdicts);
        }
        return outcome;
    }

    void addVerdicts(const std::vector<GivenVerdict>& given) {
        for (const GivenVerdict& verdict : given) {
            const auto known = std::find_if(verdicts_.begin(), verdicts_.end(),
                                            [&](const GivenVerdict& v) { return v.verdict == verdict.verdict; });
            if (known == verdicts_.end()) {
                verdicts_.push_back(verdict);
            } else {
                known->count += verdict.count;
            }
        }
    }

    /// Says what is new about a group. What was done before this run, without a doubt, is only counted, or has a line of
    /// JSON.
    void report(const WatchedGroup& group, const GroupOutcome& outcome) {
        const QString line = options_.isJson ? groupJson(group, outcome) : groupText(group, outcome);
        QString& before = said_[group.result()];
        const bool isDone = outcome.state == GroupState::Done && outcome.reason.isEmpty();
        if (line != before && !(isDone && (!before.isEmpty() || !options_.isJson))) {
            before = line;
            printOutput(line);
        }
    }

    void reportSkipped(const std::vector<KxInspect::SkippedPath>& skipped) {
        QString text;
        int misfits = 0;
        isUnreadable_ = false;
        std::set<QString> warnings;
        for (const KxInspect::SkippedPath& path : skipped) {
            const QString sentence =
                QStringLiteral("'%1' %2").arg(fromBytes(path.path), QString::fromStdString(path.reason));
            isUnreadable_ = isUnreadable_ || path.isUnreadable;
            misfits += path.isUnreadable ? 0 : 1;
            if (path.isUnreadable) {
                warnings.insert(sentence);
            } else if (misfits == 1) {
                text = sentence;
            }
        }
        if (misfits > 0) {
            warnings.insert(QStringLiteral("%1 paths in '%2' are of no group, the first: %3")
                                .arg(QString::number(misfits), fromBytes(options_.folder), text));
        }
        for (const QString& warning : warnings) {
            if (warned_.count(warning) == 0) {
                printLine(kName, QStringLiteral("warning: ") + warning);
            }
        }
        warned_ = std::move(warnings);
    }

    void forgetAllBut(const std::set<std::string>& there) {
        for (auto entry = said_.begin(); entry != said_.end();) {
            entry = there.count(entry->first) > 0 ? std::next(entry) : said_.erase(entry);
        }
    }

    const WatchOptions& options_;
    Stillness stillness_;
    std::array<int, kGroupStates> counts_{};
    bool isUnreadable_ = false;
    QString failure_; ///< why the first group that failed has no result
    std::set<std::string> measured_; ///< results of this run
    std::vector<GivenVerdict> verdicts_;
    std::map<std::string, std::string> noMemory_; ///< what groups were tried with for which memory was not enough
    std::map<std::string, QString> said_;
    std::set<QString> warned_; ///< at the last look
};

/// Ends early by throwing Interrupted.
void waitFor(double seconds) {
    using std::chrono::duration;
    constexpr duration<double> kStep(0.1);
    const auto end = std::chrono::steady_clock::now() + duration<double>(seconds);
    while (std::chrono::steady_clock::now() < end) {
        throwIfInterrupted();
        std::this_thread::sleep_for(kStep);
    }
    throwIfInterrupted();
}

int run(const WatchOptions& options) {
    const Interruption untilEnd;
    KxInspect::findRecordings(options.folder, options.layout); // before anything is made
    static_cast<void>(Station(options)); // likewise
    const WatchLock lock(options.out);
    Watch watch(options);
    watch.lookAtAll();
    while (options.isFollowing) {
        waitFor(options.poll);
        watch.lookAtAll();
    }
    if (!options.isJson) {
        printOutput(watch.summary() + QLatin1Char('\n'));
    }
    return watch.exitCode();
}

} // namespace

int runWatch(const QStringList& arguments) {
    return runCommand(kName, [&] {
        const std::optional<WatchOptions> options = parseWatchOptions(arguments);
        return options ? run(*options) : Done;
    });
}

} // namespace kxtool
