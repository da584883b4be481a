// Registers jobs that each work on a fresh object, whose preparation is not timed.
#pragma once

#include "stopwatch.h"

#include <deque>
#include <string>
#include <utility>

namespace kxbench {

/// Registers "JOB/SIZE/WHO". `prepare` fills a new `Object`, `work` is timed; of short jobs `batch` are timed at once,
/// since the clock itself takes a third of a microsecond. A time is that of one job.
template <typename Object, typename Prepare, typename Work>
void add(const std::string& name, int batch, Prepare prepare, Work work) {
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        for (auto _ : state) {
            std::deque<Object> objects(static_cast<std::size_t>(batch));
            for (Object& object : objects) {
                prepare(object);
            }
            const double start = processorSeconds();
            for (Object& object : objects) {
                work(object);
            }
            state.SetIterationTime((processorSeconds() - start) / batch);
        }
    })->UseManualTime();
}

} // namespace kxbench
