#include "inspect/base/tasks.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

using namespace KxInspect;
using detail::runTasks;

namespace {

/// A thread for each task, the last task first.
void runAtOnce(const std::vector<std::function<void()>>& tasks) {
    std::vector<std::thread> threads;
    for (std::size_t i = tasks.size(); i-- > 0;) {
        threads.emplace_back(tasks[i]);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

const TaskRunner kRunners[] = {{}, runAtOnce};

std::string messageOf(const TaskRunner& runner, const Progress& progress,
                      const std::function<void(std::size_t, const Progress&)>& task) {
    try {
        runTasks(runner, progress, 4, task);
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return "none";
}

TEST(Tasks, RunOnceEachWithOrWithoutARunner) {
    for (const TaskRunner& runner : kRunners) {
        std::vector<int> runs(5, 0);
        int reports = 0;
        runTasks(
            runner, [&](const std::string&, double) { ++reports; }, runs.size(),
            [&](std::size_t i, const Progress& progress) {
                ++runs[i];
                progress("measuring", 0.5);
            });
        EXPECT_EQ(runs, std::vector<int>(5, 1));
        EXPECT_EQ(reports, 5);
        runTasks(runner, {}, 0, [](std::size_t, const Progress&) { FAIL(); });
    }
}

TEST(Tasks, TheFirstFailureInTheirOrderLeavesTheCall) {
    for (const TaskRunner& runner : kRunners) {
        EXPECT_EQ(messageOf(runner, {},
                            [](std::size_t i, const Progress& progress) {
                                EXPECT_FALSE(progress);
                                if (i == 1 || i == 3) {
                                    throw std::runtime_error("task " + std::to_string(i));
                                }
                            }),
                  "task 1");
    }
}

TEST(Tasks, AProgressThatThrowsEndsAllOfThem) {
    for (const TaskRunner& runner : kRunners) {
        int reports = 0;
        std::atomic<int> ended = 0;
        const Progress stop = [&](const std::string&, double) {
            if (++reports == 3) {
                throw std::runtime_error("stopped");
            }
        };
        EXPECT_EQ(messageOf(runner, stop,
                            [&](std::size_t, const Progress& progress) {
                                for (int step = 0; step < 100; ++step) {
                                    progress("step", 0.01 * step);
                                }
                                ++ended;
                            }),
                  "stopped");
        EXPECT_EQ(reports, 3); // none of another task behind it
        EXPECT_EQ(ended, 0);
    }
}

} // namespace
