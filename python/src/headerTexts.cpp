// Docstrings from the words of the headers.
#include "headerTexts.h"

#include <algorithm>
#include <stdexcept>

namespace kxpython {

namespace {

std::string_view textOf(std::string_view name) {
    const std::span<const HeaderText> texts = headerTexts();
    const auto found = std::ranges::lower_bound(texts, name, {}, &HeaderText::name);
    if (found == texts.end() || found->name != name) {
        throw std::logic_error("no header names " + std::string(name));
    }
    return found->text;
}

/// The lines of a text, indented.
std::string indented(std::string_view text) {
    std::string result = "    ";
    for (const char c : text) {
        result += c;
        if (c == '\n') {
            result += "    ";
        }
    }
    return result;
}

} // namespace

std::string doc(std::string_view own, const std::vector<std::string>& names) {
    std::string result(own);
    for (const std::string& name : names) {
        const std::string_view text = textOf(name);
        result += (result.empty() ? "Calls " : "\n\nCalls ") + name + "()";
        result += text.empty() ? "." : ":\n\n" + indented(text);
    }
    return result;
}

} // namespace kxpython
