// The patches that were found, as cloud files.
#include <KxInspect/Grid.h>
#include <KxInspect/PointFile.h>

#include "inspect/base/error.h"
#include "inspect/base/paths.h"

#include <QtCore/QDir>

#include <algorithm>

namespace KxInspect {

void checkPatchFolder(const std::string& folder) {
    const QStringList taken = QDir(detail::toQt(folder)).entryList({QStringLiteral("seed-*.bin")});
    if (!taken.isEmpty()) {
        detail::fail(ErrorKind::Unwritable, {"the folder", folder, {}},
                     QStringLiteral("already holds seeds: '%1'").arg(taken.constFirst()));
    }
}

void writePatchFiles(const std::string& folder, GridResult& result) {
    const QString folderName = detail::toQt(folder);
    if (!QDir().mkpath(folderName)) {
        detail::fail(ErrorKind::Unwritable, {"the folder", folder, {}}, QStringLiteral("cannot be created"));
    }
    const QDir dir(folderName);
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
            writePoints(dir.filePath(name).toStdString(), FileKind::Cloud, points);
        }
    } catch (const Error&) {
        for (const std::string& name : files) {
            QFile::remove(dir.filePath(detail::toQt(name)));
        }
        throw;
    }
    result.folder = folder;
    result.files = files;
}

} // namespace KxInspect
