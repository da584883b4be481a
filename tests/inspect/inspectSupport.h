// Shared by the tests of measuring: the errors that calls throw, changed texts, equal points.
#pragma once

#include <KxInspect/Error.h>
#include <KxInspect/PointFile.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace inspect_test {

/// The error that a call throws.
inline KxInspect::Error errorOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const KxInspect::Error& error) {
        return error;
    }
    ADD_FAILURE() << "nothing was thrown";
    return {KxInspect::ErrorKind::NoResult, {}, {}};
}

/// Expects an error about `key` with `reason` in its text.
inline void expectError(const std::function<void()>& call, KxInspect::ErrorKind kind, const std::string& key,
                        const std::string& reason = {}) {
    const KxInspect::Error error = errorOf(call);
    EXPECT_EQ(error.kind(), kind) << error.what();
    EXPECT_EQ(error.source().key, key) << error.what();
    EXPECT_NE(error.reason().find(reason), std::string::npos) << error.what();
}

/// Expects an error at this place of a text with `reason` in its text.
inline void expectErrorAt(const std::function<void()>& call, KxInspect::ErrorKind kind,
                          const std::optional<std::int64_t>& line, const std::optional<std::int64_t>& column,
                          const std::string& reason) {
    const KxInspect::Error error = errorOf(call);
    EXPECT_EQ(error.kind(), kind) << error.what();
    EXPECT_EQ(error.place().line, line) << error.what();
    EXPECT_EQ(error.place().column, column) << error.what();
    EXPECT_NE(error.reason().find(reason), std::string::npos) << error.what();
}

/// `text` with the first `from` replaced by `to`.
inline std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

/// Whether the points are equal, NaN being equal to NaN.
inline bool areSame(const std::vector<KxInspect::Point3>& a, const std::vector<KxInspect::Point3>& b) {
    const auto isSame = [](float x, float y) { return x == y || (std::isnan(x) && std::isnan(y)); };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [&](const auto& p, const auto& q) {
        return isSame(p.x, q.x) && isSame(p.y, q.y) && isSame(p.z, q.z);
    });
}

} // namespace inspect_test
