// The program kxmath.
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/outOfMemory.h"

#include <QtCore/QStringList>

#include <new>

int main(int argc, char** argv) {
    // Each command says itself what went wrong.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    try {
        kxtool::installMemoryGuard();
        // Without a QCoreApplication, which no command needs and which crashes when there is no memory for it.
        QStringList arguments; // as bytes: Qt would lose what is not UTF-8
        for (int i = 0; i < argc; ++i) {
            arguments.append(kxtool::fromBytes(argv[i]));
        }
        return kxtool::runMain(arguments);
    } catch (const std::bad_alloc&) {
        return kxtool::failMemory();
    }
}
