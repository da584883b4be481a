// Registers the competitors of an operation: each works on fresh objects, whose preparation is not timed.
#pragma once

#include "heapMeter.h"

#include <benchmark/benchmark.h>

#include <ctime>
#include <deque>
#include <limits>
#include <string>

namespace kxbench {

/// The processor time of this process in seconds. Nothing that is measured here waits or uses a second thread, so that
/// this is the time on a quiet machine, and a busy one disturbs it less than the clock on the wall.
inline double processorSeconds() {
    timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// What the competitors of an operation must give alike, within `tolerance` of its value. Nothing where they differ by
/// their nature: in limits, which do only a part of the job.
struct Digest {
    double value = std::numeric_limits<double>::quiet_NaN();
    double tolerance = 0.0; ///< relative
};

/// No digest.
template <typename Object>
Digest nothing(Object&) {
    return {};
}

/// Measures what one object takes on the heap: prepared, at most during the work and after it.
template <typename Object, typename Prepare, typename Work>
void countBytes(benchmark::State& state, Prepare prepare, Work work) {
    for (auto _ : state) {
        {
            Object first; // whatever is made only once is there afterwards
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

/// One competitor: "kx", "peer_NAME" (does the same job), "like_NAME" (does a like job by another rule, so that there
/// is nothing to compare) or "limit_NAME" (what the job cannot do without).
/// @param batch so many objects are prepared and worked on in one iteration, since the clock itself takes a third of a
///        microsecond; the counter of this name tells what times are to be divided by
/// @param prepare fills a new `Object`
/// @param work is timed
/// @param digest is asked once, after the work
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
