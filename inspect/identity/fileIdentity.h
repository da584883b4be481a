// The identity of files that results were made from.
#pragma once

#include <KxInspect/PassIdentity.h>

#include <optional>
#include <string>
#include <string_view>

namespace KxInspect::detail {

/// The name of a file without its folder, as texts show it.
std::string bareName(const std::string& path);

/// `text` with each mention of the path in quotes replaced by that of its bare name: results hold no folders.
std::string withBareName(std::string text, const std::string& path);

/// The identity of a file from its content.
InputFile identityOf(const std::string& path, std::string_view content);

} // namespace KxInspect::detail
