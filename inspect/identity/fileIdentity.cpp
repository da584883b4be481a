// The identity of files that results were made from.
#include "inspect/identity/fileIdentity.h"

#include "inspect/base/paths.h"
#include "inspect/base/sha256.h"

namespace KxInspect::detail {

std::string bareName(const std::string& path) {
    return shown(path.substr(path.rfind('/') + 1)); // npos + 1 is 0
}

std::string withBareName(std::string text, const std::string& path) {
    const std::string from = '\'' + shown(path) + '\'';
    const std::string to = '\'' + bareName(path) + '\'';
    if (path.empty() || from == to) {
        return text;
    }
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

InputFile identityOf(const std::string& path, std::string_view content) {
    return {bareName(path), static_cast<std::int64_t>(content.size()), sha256Of(content)};
}

} // namespace KxInspect::detail
