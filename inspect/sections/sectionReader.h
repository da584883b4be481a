// Cross-sections from files and from memory.
#pragma once

#include <KxInspect/CrossSection.h>

namespace KxInspect::detail {

/// The points of a section from its file or memory, neither oriented nor prepared. Throws an Error when
/// the file cannot be read, or when there are no points.
/// @param role what the section is to the caller, for errors; may be empty
/// @param reading gets the readingNote() of a text
Profile readSection(const CrossSection& section, const std::string& role, std::string& reading);

} // namespace KxInspect::detail
