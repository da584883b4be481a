// What the headers of the libraries say about their functions: written into docstrings, so that the two cannot differ.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kxpython {

struct HeaderText {
    std::string_view name; ///< "KxProfile::removeNoise"
    std::string_view text; ///< of its comment, without the slashes
};

/// All functions of the interface, by name. The table is made from the headers when the module is built.
std::span<const HeaderText> headerTexts();

/// A docstring: what is said of the Python function, then what the headers say of the library functions that it calls.
/// Throws std::logic_error for a name that no header has.
std::string doc(std::string_view own, const std::vector<std::string>& names = {});

} // namespace kxpython
