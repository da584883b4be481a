// The program kxmath.
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/outOfMemory.h"

#include <QtCore/QStringList>

#include <new>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {

/// Freed memory stays for what is read next. Given back after each record it would be mapped and cleared again for the next
/// one: a quarter of the processor time of a pass.
void keepFreedMemory() {
#ifdef __GLIBC__
    constexpr int kMiB = 1 << 20;
    mallopt(M_MMAP_THRESHOLD, 16 * kMiB); // larger blocks are given back at once
    mallopt(M_TRIM_THRESHOLD, 256 * kMiB);
#endif
}

} // namespace

int main(int argc, char** argv) {
    // Each command says itself what went wrong.
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    try {
        keepFreedMemory();
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
