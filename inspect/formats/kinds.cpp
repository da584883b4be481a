// The names of the kinds of point files.
#include <KxInspect/PointFile.h>

#include "inspect/base/paths.h"

#include <QtCore/QFileInfo>

#include <array>

namespace KxInspect {

namespace {

struct Kind {
    FileKind kind;
    const char* name;
    const char* endings; ///< separated and enclosed by blanks
};

constexpr std::array kKinds = {
    Kind{FileKind::Cloud, "cloud", " bin cloud "}, Kind{FileKind::Profiles, "profiles", " profiles set "},
    Kind{FileKind::Csv, "csv", " csv "},           Kind{FileKind::Xyzf, "xyzf", " xyzf "},
    Kind{FileKind::Xyz, "xyz", " xyz txt asc "},   Kind{FileKind::Ply, "ply", " ply "},
    Kind{FileKind::Pcd, "pcd", " pcd "},           Kind{FileKind::Gauge, "gauge", " whl ban prw prr gauge "},
    Kind{FileKind::Table, "table", " table "},     Kind{FileKind::Npy, "npy", " npy "},
    Kind{FileKind::Vtp, "vtp", " vtp "},           Kind{FileKind::Stl, "stl", " stl "},
    Kind{FileKind::Vti, "vti", " vti "},           Kind{FileKind::Gsf, "gsf", " gsf "},
    Kind{FileKind::Sdf, "sdf", " sdf "},
};

} // namespace

std::string kindName(FileKind kind) {
    return kKinds.at(static_cast<std::size_t>(kind)).name;
}

std::optional<FileKind> kindByName(const std::string& name) {
    for (const Kind& kind : kKinds) {
        if (name == kind.name) {
            return kind.kind;
        }
    }
    return {};
}

std::optional<FileKind> kindByFileName(const std::string& fileName) {
    const QString ending = QLatin1Char(' ') + QFileInfo(detail::toQt(fileName)).suffix().toLower() + QLatin1Char(' ');
    for (const Kind& kind : kKinds) {
        if (ending.size() > 2 && QLatin1String(kind.endings).contains(ending)) {
            return kind.kind;
        }
    }
    return {};
}

} // namespace KxInspect
