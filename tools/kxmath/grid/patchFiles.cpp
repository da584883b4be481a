// The patches that were found, as cloud files.
#include "tools/kxmath/grid/patchFiles.h"

#include "tools/kxmath/console/commandError.h"

#include <QtCore/QDir>
#include <QtCore/QFile>

#include <algorithm>

namespace kxtool {

void checkPatchFolder(const QString& folder) {
    const QDir dir(folder);
    const QStringList taken = dir.entryList({QStringLiteral("seed-*.bin")});
    if (!taken.isEmpty()) {
        throw CommandError{OutputFailed,
                           QStringLiteral("the folder '%1' already holds seeds: '%2'").arg(folder, taken.constFirst())};
    }
}

void writePatches(const QString& folder, ScanGrid& grid) {
    const QDir dir(folder);
    if (!QDir().mkpath(folder)) {
        throw CommandError{OutputFailed, QStringLiteral("cannot make the folder '%1'").arg(folder)};
    }
    const int digits = std::max(3, static_cast<int>(QString::number(grid.seeds.size()).size()));
    for (size_t i = 0; i < grid.seeds.size(); ++i) {
        Seed& seed = grid.seeds[i];
        seed.file = QStringLiteral("seed-%1.bin").arg(i + 1, digits, 10, QLatin1Char('0'));
        if (!seed.cloud.writeToFile(dir.filePath(seed.file))) {
            const QString name = seed.file;
            for (size_t k = 0; k <= i; ++k) {
                QFile::remove(dir.filePath(grid.seeds[k].file));
            }
            throw CommandError{OutputFailed, QStringLiteral("cannot write '%1'").arg(dir.filePath(name))};
        }
    }
}

} // namespace kxtool
