// The exception of this library.
#include <KxInspect/Error.h>

#include "inspect/base/paths.h"

#include <utility>

namespace KxInspect {

namespace {

std::string sentence(const ErrorSource& source, const std::string& reason) {
    std::string text;
    std::string name = detail::shown(source.file);
    if (!name.empty()) {
        name = '\'' + name + '\'';
    }
    for (const std::string& part : {source.role, name, reason}) {
        text += text.empty() || part.empty() ? part : " " + part;
    }
    return text;
}

} // namespace

Error::Error(ErrorKind kind, ErrorSource source, std::string reason, ErrorPlace place)
    : std::runtime_error(sentence(source, reason)), kind_(kind), source_(std::move(source)), reason_(std::move(reason)),
      place_(place) {}

Error::Error(const Error&) = default;
Error& Error::operator=(const Error&) = default;
Error::~Error() = default;

} // namespace KxInspect
