// Shared by the tests of scans.
#pragma once

#include "support/tempFiles.h"

#include <KxInspect/Error.h>
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <string>

namespace scan_test {

using namespace KxInspect;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// The error that a call throws.
inline Error errorOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const Error& error) {
        return error;
    }
    ADD_FAILURE() << "nothing was thrown";
    return {ErrorKind::NoResult, {}, {}};
}

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
        const Error error = errorOf(refusal.call);
        EXPECT_EQ(error.kind(), refusal.kind) << error.what();
        EXPECT_EQ(error.source().key, refusal.key);
    }
}

} // namespace scan_test
