// What makes two results the same pass.
#pragma once

#include <KxInspect/PassResult.h>

#include <optional>
#include <string>

namespace kxfleet {

/// The SHA-256 of the hashes of the recordings, of what was measured with (mode, settings, defects, list of vehicles, limits,
/// contour) and of the version, as 64 hexadecimal digits. Labels are no part of it. Absent for a result that holds no
/// hash of a recording.
std::optional<std::string> passKey(const KxInspect::PassResult& pass);

/// Milliseconds since 1970-01-01 00:00 UTC; absent for a text that is no time with a zone.
std::optional<std::int64_t> utcMilliseconds(const std::string& time);

} // namespace kxfleet
