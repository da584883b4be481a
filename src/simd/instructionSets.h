// Kernels that run on the widest vectors that the processor has.
#pragma once

#include <cstddef>

namespace KxMath::detail {

/// What a kernel may be compiled for. Neither fuses a multiplication with an addition: results have the same bits.
enum class InstructionSet {
    Baseline, ///< what the library is built for
    Avx2,
};

/// Passes the width of the vectors to a kernel.
template <std::size_t kBytes>
struct VectorBytes {};

/// The widest set that this processor has and that the library was built to use.
inline InstructionSet widestInstructionSet() {
#if defined(__x86_64__) && !defined(KXMATH_BASELINE_ONLY)
    if (__builtin_cpu_supports("avx2")) {
        return InstructionSet::Avx2;
    }
#endif
    return InstructionSet::Baseline;
}

#ifdef __x86_64__
/// All that the kernel calls is inlined here (flatten), and so compiled for these instructions in this function only.
template <typename Kernel>
[[gnu::target("avx2"), gnu::flatten]] void runOnAvx2(const Kernel& kernel) {
    kernel(VectorBytes<32>());
}
#endif

/// Calls `kernel(VectorBytes<kBytes>())` with the vector width of the instruction set. Functions that a kernel calls
/// with vectors as arguments must be always_inline: how a vector is passed depends on the instruction set.
template <typename Kernel>
void runOn(InstructionSet instructions, const Kernel& kernel) {
#ifdef __x86_64__
    if (instructions == InstructionSet::Avx2) {
        runOnAvx2(kernel);
        return;
    }
#endif
    kernel(VectorBytes<16>());
}

} // namespace KxMath::detail
