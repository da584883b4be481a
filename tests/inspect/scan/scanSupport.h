// Shared by the tests of scans.
#pragma once

#include "inspect/inspectSupport.h"
#include "support/tempFiles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <string>

namespace scan_test {

using namespace KxInspect;
using namespace inspect_test;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// A refused call and the wrong argument.
struct Refusal {
    const char* desc;
    std::function<void()> call;
    ErrorKind kind;
    const char* key;
};

inline void expectRefusals(const std::vector<Refusal>& refusals) {
    for (const Refusal& refusal : refusals) {
        SCOPED_TRACE(refusal.desc);
        expectError(refusal.call, refusal.kind, refusal.key);
    }
}

} // namespace scan_test
