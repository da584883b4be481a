#include "heapMeter.h"

#include <benchmark/benchmark.h>

#include <malloc.h>

int main(int argc, char** argv) {
    if (kxbench::heapMeter == nullptr) {
        // Memory that was freed stays with the process: no competitor pays for the first touch of its pages each time.
        mallopt(M_MMAP_THRESHOLD, 1 << 30);
        mallopt(M_TRIM_THRESHOLD, 1 << 30);
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
#ifdef __x86_64__
    benchmark::AddCustomContext("vectors", __builtin_cpu_supports("avx2") ? "AVX2" : "SSE2");
#endif
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
