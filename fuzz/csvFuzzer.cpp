// Arbitrary bytes as the CSV text of a profile. The first two bytes choose the columns.
#include "input.h"
#include "scratch.h"

#include <KxMath/KxProfile.h>

using namespace KxMath;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
    kxfuzz::Input in(data, size);
    const int xColumn = in.byte() % 8 - 1;
    const int yColumn = in.byte() % 8 - 1;
    const size_t chosen = std::min<size_t>(size, 2);
    const QString path = kxfuzz::writeScratch("csv", data + chosen, size - chosen);
    KxProfile profile;
    const int count = profile.readFromCSVFile(path, xColumn, yColumn);
    kxfuzz::require(count == profile.size());
    const QString copy = kxfuzz::scratchFile(QStringLiteral("copy"));
    kxfuzz::require(profile.writeToCSVFile(copy));
    KxProfile again;
    kxfuzz::require(again.readFromCSVFile(copy, 0, 1) == count);
    return 0;
}
