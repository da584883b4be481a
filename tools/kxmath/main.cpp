// The program kxmath.
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/outOfMemory.h"

#include <QtCore/QCoreApplication>

#include <new>

int main(int argc, char** argv) {
    kxtool::installMemoryGuard();
    qputenv("QT_NO_GLIB", "1"); // no event loop is needed, and GLib ends programs by a signal when memory runs out
    try {
        QStringList arguments; // as bytes: Qt would lose what is not UTF-8
        for (int i = 0; i < argc; ++i) {
            arguments.append(kxtool::fromBytes(argv[i]));
        }
        const QCoreApplication application(argc, argv);
        return kxtool::runMain(arguments);
    } catch (const std::bad_alloc&) {
        return kxtool::failMemory();
    }
}
