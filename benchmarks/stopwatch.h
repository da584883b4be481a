// Times the work of one iteration and leaves out its preparation: for benchmarks with UseManualTime().
#pragma once

#include <benchmark/benchmark.h>

#include <ctime>

namespace kxbench {

/// The processor time of this process in seconds. Nothing that is measured here waits or uses a second thread, so that
/// this is the time on a quiet machine, and a busy one disturbs it less than the clock on the wall.
inline double processorSeconds() {
    timespec time;
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

template <typename Work>
void timeIteration(benchmark::State& state, Work work) {
    const double start = processorSeconds();
    work();
    state.SetIterationTime(processorSeconds() - start);
}

} // namespace kxbench
