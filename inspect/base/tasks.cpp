// Independent parts of a work, one after the other or at once.
#include "inspect/base/tasks.h"

#include <exception>
#include <mutex>
#include <utility>
#include <vector>

namespace KxInspect::detail {

namespace {

/// Thrown by the progress of a task after that of another one has thrown.
struct Ended {};

/// Passes the progress of several threads on, one report at a time.
class SharedProgress {
public:
    explicit SharedProgress(const Progress& progress) : progress_(progress) {}

    Progress forTask() {
        if (!progress_) {
            return {};
        }
        return [this](const std::string& step, double part) {
            const std::lock_guard<std::mutex> lock(mutex_);
            if (hasThrown_) {
                throw Ended();
            }
            hasThrown_ = true; // unless it returns
            progress_(step, part);
            hasThrown_ = false;
        };
    }

private:
    const Progress& progress_;
    std::mutex mutex_ = {};
    bool hasThrown_ = false;
};

} // namespace

void runTasks(const TaskRunner& runner, const Progress& progress, std::size_t count,
              const std::function<void(std::size_t, const Progress&)>& task) {
    if (!runner) {
        for (std::size_t i = 0; i < count; ++i) {
            task(i, progress);
        }
        return;
    }
    SharedProgress shared(progress);
    const Progress ofTasks = shared.forTask();
    std::vector<std::exception_ptr> failures(count);
    std::vector<std::function<void()>> tasks;
    tasks.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        tasks.emplace_back([&, i] {
            try {
                task(i, ofTasks);
            } catch (const Ended&) { // whose cause is the failure of another task
            } catch (...) {
                failures[i] = std::current_exception();
            }
        });
    }
    runner(tasks);
    for (const std::exception_ptr& failure : failures) {
        if (failure) {
            std::rethrow_exception(failure);
        }
    }
}

} // namespace KxInspect::detail
