// The patches that were found, as cloud files.
#include <KxInspect/Grid.h>
#include <KxInspect/PointFile.h>

#include "inspect/base/error.h"
#include "inspect/base/paths.h"

#include <QtCore/QDir>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace KxInspect {

void checkPatchFolder(const std::string& folder) {
    const QStringList taken = QDir(detail::QtPath(folder).text()).entryList(QStringList(QStringLiteral("seed-*.bin")));
    if (!taken.isEmpty()) {
        detail::fail(ErrorKind::Unwritable, {"the folder", folder, {}},
                     QStringLiteral("already holds seeds: '%1'").arg(taken.constFirst()));
    }
}

void writePatchFiles(const std::string& folder, GridResult& result) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (error) {
        detail::fail(ErrorKind::Unwritable, {"the folder", folder, {}},
                     QStringLiteral("cannot be created: ") + QString::fromStdString(error.message()));
    }
    const auto pathOf = [&](const std::string& name) { return (std::filesystem::path(folder) / name).string(); };
    const std::vector<Patch>& patches = result.found.patches;
    const int digits = std::max(3, static_cast<int>(QString::number(patches.size()).size()));
    std::vector<std::string> files;
    try {
        for (const Patch& patch : patches) {
            const QString name = QStringLiteral("seed-%1.bin").arg(files.size() + 1, digits, 10, QLatin1Char('0'));
            files.push_back(name.toStdString());
            PointSet points;
            points.points = patch.points;
            points.hasZ = true;
            writePoints(pathOf(files.back()), FileKind::Cloud, points);
        }
    } catch (const Error&) {
        for (const std::string& name : files) {
            std::filesystem::remove(pathOf(name), error);
        }
        throw;
    }
    result.folder = detail::shown(folder);
    result.files = files;
}

} // namespace KxInspect
