// Cross-sections from files and from memory.
#include "inspect/sections/sectionReader.h"

#include "inspect/base/error.h"

#include <KxInspect/PointFile.h>
#include <KxInspect/ProfileFile.h>

namespace KxInspect::detail {

Profile readSection(const CrossSection& section, const std::string& role) {
    if (!section.profile) {
        try {
            return readProfile(section.file, section.text);
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
