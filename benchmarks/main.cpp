#include "heapMeter.h"

#include <benchmark/benchmark.h>

#include <malloc.h>

int main(int argc, char** argv) {
    if (kxbench::heapMeter == nullptr) {
        // Freed memory stays with the process, so that no competitor pays for page faults each time.
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
