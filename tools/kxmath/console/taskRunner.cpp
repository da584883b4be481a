// Independent parts of a command's work at once, in threads.
#include "tools/kxmath/console/taskRunner.h"

#include "tools/kxmath/console/outOfMemory.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <functional>
#include <sched.h>
#include <system_error>
#include <thread>
#include <vector>

namespace kxtool {

namespace {

constexpr int kMostJobs = 256;

int processors() {
    cpu_set_t allowed;
    CPU_ZERO(&allowed);
    return sched_getaffinity(0, sizeof allowed, &allowed) == 0 ? std::max(CPU_COUNT(&allowed), 1) : 1;
}

using Tasks = std::vector<std::function<void()>>;

/// Threads that are joined when this ends, however it ends.
class Threads {
public:
    Threads() = default;
    ~Threads() {
        for (std::thread& thread : threads_) {
            thread.join();
        }
    }
    Threads(const Threads&) = delete;
    Threads& operator=(const Threads&) = delete;

    /// Starts as many as the system gives.
    void start(std::size_t count, const std::function<void()>& work) {
        threads_.reserve(count);
        try {
            for (std::size_t i = 0; i < count; ++i) {
                threads_.emplace_back([&work] {
                    makeThreadData();
                    work();
                });
            }
        } catch (const std::system_error&) { // the others do it
        }
    }

private:
    std::vector<std::thread> threads_ = {};
};

void runAtOnce(const Tasks& tasks, std::size_t jobs) {
    std::atomic<std::size_t> next = 0;
    const std::function<void()> work = [&] {
        for (std::size_t i = next++; i < tasks.size(); i = next++) {
            tasks[i]();
        }
    };
    Threads threads;
    threads.start(std::min(jobs, tasks.size()) - 1, work);
    work();
}

} // namespace

void addJobsOption(Options& options) {
    options.addOption("jobs",
                      QStringLiteral("How many recordings or wheels are measured at once; the result is the same. "
                                     "Default: one for each processor."),
                      "N", QString());
}

int jobsOf(const Options& options) {
    return options.isSet("jobs") ? options.wholeNumber("jobs", 1, kMostJobs) : std::min(processors(), kMostJobs);
}

KxInspect::TaskRunner taskRunner(int jobs) {
    if (jobs < 2) {
        return {};
    }
    return [count = static_cast<std::size_t>(jobs)](const Tasks& tasks) {
        if (!tasks.empty()) {
            runAtOnce(tasks, count);
        }
    };
}

} // namespace kxtool
