// Writes the manual pages and the completions of kxmath into a folder: manual FOLDER
#include "tools/manual/completions.h"
#include "tools/manual/manualPages.h"

#include <QtCore/QDir>
#include <QtCore/QFile>

#include <cstdio>

namespace {

bool write(const QString& name, const QByteArray& content) {
    QFile file(name);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("Usage: manual FOLDER\n", stderr);
        return 2;
    }
    const QDir folder(QFile::decodeName(argv[1]));
    const std::vector<kxmanual::CommandPages> definitions = kxmanual::allDefinitions();
    bool isWritten = write(folder.filePath("kxmath.1"), kxmanual::programPage(definitions)) &&
                     write(folder.filePath("kxmath.bash"), kxmanual::bashCompletion(definitions)) &&
                     write(folder.filePath("_kxmath"), kxmanual::zshCompletion(definitions)) &&
                     write(folder.filePath("kxmath.fish"), kxmanual::fishCompletion(definitions));
    for (const kxmanual::CommandPages& pages : definitions) {
        isWritten = isWritten && write(folder.filePath(QStringLiteral("kxmath-%1.1").arg(pages.command.name)),
                                       kxmanual::commandPage(pages));
    }
    if (!isWritten) {
        std::fprintf(stderr, "manual: cannot write into '%s'\n", argv[1]);
        return 1;
    }
    return 0;
}
