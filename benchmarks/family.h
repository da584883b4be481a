// Registers the competitors of an operation: each works on fresh objects, whose preparation is not timed.
#pragma once

#include "heapMeter.h"

#include <benchmark/benchmark.h>

#include <ctime>
#include <deque>
#include <limits>
#include <string>

namespace kxbench {

/// The processor time of this process in seconds. Nothing measured here waits or uses a second thread, so this equals the
/// wall time on an idle machine; on a busy one it is less disturbed.
inline double processorSeconds() {
    timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// A result that all competitors of an operation must share, within the relative `tolerance`. Empty for limits, which do
/// only a part of the job.
struct Digest {
    double value = std::numeric_limits<double>::quiet_NaN();
    double tolerance = 0.0; ///< relative
};

/// No digest.
template <typename Object>
Digest nothing(Object&) {
    return {};
}

/// Measures the heap use of one object: prepared, peak during the work, and after it.
template <typename Object, typename Prepare, typename Work>
void countBytes(benchmark::State& state, Prepare prepare, Work work) {
    for (auto _ : state) {
        {
            Object first; // creates everything that is made only once
            prepare(first);
            work(first);
        }
        const std::size_t empty = heapMeter->live;
        Object object;
        prepare(object);
        const std::size_t before = heapMeter->live;
        heapMeter->most = before;
        work(object);
        state.counters["most"] = static_cast<double>(heapMeter->most - empty);
        state.counters["before"] = static_cast<double>(before - empty);
        state.counters["after"] = static_cast<double>(heapMeter->live - empty);
        state.SetIterationTime(1.0); // enough
    }
}

/// One competitor: "kx", "peer_NAME" (does the same job), "like_NAME" (does a similar job by another rule, whose result
/// cannot be compared) or "limit_NAME" (a lower bound: a part of the job that cannot be avoided).
/// @param batch number of objects that one iteration prepares and works on, because reading the clock takes a third of a
///        microsecond; times must be divided by the counter of this name
/// @param prepare fills a new `Object`
/// @param work is timed
/// @param digest is called once, after the work
template <typename Object, typename Prepare, typename Work, typename Result>
void add(const std::string& operation, int size, const char* who, int batch, Prepare prepare, Work work,
         Result digest) {
    const std::string name = operation + "/" + std::to_string(size) + "/" + who;
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        if (heapMeter != nullptr) {
            countBytes<Object>(state, prepare, work);
            return;
        }
        Digest result;
        bool isFirst = true;
        for (auto _ : state) {
            std::deque<Object> objects(static_cast<std::size_t>(batch));
            for (Object& object : objects) {
                prepare(object);
            }
            const double start = processorSeconds();
            for (Object& object : objects) {
                work(object);
            }
            benchmark::ClobberMemory();
            state.SetIterationTime(processorSeconds() - start);
            if (isFirst) {
                result = digest(objects.back());
                isFirst = false;
            }
        }
        state.counters["batch"] = batch;
        if (result.value == result.value) {
            state.counters["digest"] = result.value;
            state.counters["tolerance"] = result.tolerance;
        }
    })->UseManualTime();
}

} // namespace kxbench
