// Cross-sections from files and from memory.
#include "inspect/sections/sectionReader.h"

#include "inspect/base/error.h"

#include <KxInspect/PointFile.h>
#include <KxInspect/ProfileFile.h>

#include <optional>

namespace KxInspect::detail {

Profile readSection(const CrossSection& section, const std::string& role, std::string& reading) {
    if (!section.profile) {
        try {
            std::optional<TextForm> form;
            Profile profile = readProfile(section.file, section.text, &form);
            reading = form ? readingNote(*form) : std::string();
            return profile;
        } catch (const Error& error) {
            throw Error(error.kind(), {role, section.file, error.source().key}, error.reason(), error.place());
        }
    }
    if (section.profile->points.empty()) {
        fail(ErrorKind::Unsuitable, {role, section.file, {}}, QStringLiteral("holds no points"));
    }
    return *section.profile;
}

} // namespace KxInspect::detail
