// Names of the kinds of files.
#include "inspect/formats/pointData.h"

#include <QtCore/QFileInfo>

#include <array>

namespace kxtool {

namespace {

struct Kind {
    Format format;
    const char* name;
    const char* endings; ///< separated and enclosed by blanks
};

constexpr std::array kKinds = {
    Kind{Format::Cloud, "cloud", " bin cloud "}, Kind{Format::Profiles, "profiles", " profiles set "},
    Kind{Format::Csv, "csv", " csv "},           Kind{Format::HeadlessXyz, "xyzf", " xyzf "},
    Kind{Format::Xyz, "xyz", " xyz txt asc "},   Kind{Format::Ply, "ply", " ply "},
    Kind{Format::Pcd, "pcd", " pcd "},
};

} // namespace

QString formatName(Format format) {
    return QLatin1String(kKinds[static_cast<size_t>(format)].name);
}

std::optional<Format> formatByName(const QString& name) {
    for (const Kind& kind : kKinds) {
        if (name == QLatin1String(kind.name)) {
            return kind.format;
        }
    }
    return {};
}

std::optional<Format> formatByFileName(const QString& fileName) {
    const QString ending = QLatin1Char(' ') + QFileInfo(fileName).suffix().toLower() + QLatin1Char(' ');
    for (const Kind& kind : kKinds) {
        if (ending.size() > 2 && QLatin1String(kind.endings).contains(ending)) {
            return kind.format;
        }
    }
    return {};
}

} // namespace kxtool
