// Arbitrary bytes as profile records and sets of profiles.
#include "input.h"
#include "scratch.h"

#include <KxMath/KxProfileZ.h>

using namespace KxMath;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
    const QString path = kxfuzz::writeScratch("set", data, size);
    QFile file(path);
    kxfuzz::require(file.open(QIODevice::ReadOnly));
    KxProfileZ profile;
    for (qint64 start = 0;; start = file.pos()) {
        if (profile.readFromFile(file) < 0) {
            kxfuzz::require(file.pos() == start);
            break;
        }
        kxfuzz::require(file.pos() == start + 7 + 8 * qint64(profile.size()));
    }
    kxfuzz::require(profile.points.capacity() * qsizetype(sizeof(KxPointXY)) <= 2 * file.size() + 4096);
    KxProfileZSet set;
    set.readFromFile(path);
    set.calcRange();
    const QString copy = kxfuzz::scratchFile(QStringLiteral("copy"));
    kxfuzz::require(set.writeToFile(copy));
    KxProfileZSet again;
    kxfuzz::require(again.readFromFile(copy) == set.size());
    again.readFromFile(path, 0.5f, 0.25f);
    again.calcRange();
    return 0;
}
