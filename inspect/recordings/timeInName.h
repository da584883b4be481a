// Times in the names of files and folders.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace KxInspect::detail {

/// A time of ISO 8601 with a zone as PassLabels::time may hold it: "2026-11-21T08:15:00Z". Nothing for any other text.
/// @param name in the basic or the extended form, or with '-' for the colons of hours, minutes and seconds
std::optional<std::string> timeInName(std::string_view name);

} // namespace KxInspect::detail
