// Kernels that work on the widest vectors that the processor has.
#pragma once

#include <cstddef>

namespace KxMath::detail {

/// What a kernel may be compiled for. Neither fuses a multiplication with an addition: results are the same bits.
enum class InstructionSet {
    Baseline, ///< what the library is built for
    Avx2,
};

/// A tag that tells a kernel how wide its vectors are.
template <std::size_t kBytes>
struct VectorBytes {};

/// The widest that this processor has and that the library was built to use.
inline InstructionSet widestInstructionSet() {
#if defined(__x86_64__) && !defined(KXMATH_BASELINE_ONLY)
    if (__builtin_cpu_supports("avx2")) {
        return InstructionSet::Avx2;
    }
#endif
    return InstructionSet::Baseline;
}

#ifdef __x86_64__
/// All that the kernel calls becomes a part of this function, and is compiled for these instructions here only.
template <typename Kernel>
[[gnu::target("avx2"), gnu::flatten]] void runOnAvx2(const Kernel& kernel) {
    kernel(VectorBytes<32>());
}
#endif

/// Calls `kernel(VectorBytes<kBytes>())` with the width that the instructions have. Functions that a kernel calls with
/// vectors as arguments are to be marked always_inline: how wide vectors are passed depends on the instructions.
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
