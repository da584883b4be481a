// Arbitrary bytes as each kind of file that the command line reads points from. The first byte chooses columns and kind.
#include "input.h"
#include "scratch.h"

#include <KxInspect/Error.h>
#include <KxInspect/FileContents.h>
#include <KxInspect/PointFile.h>
#include <KxInspect/ProfileFile.h>

using KxInspect::FileKind;
using KxInspect::kFileKinds;

namespace {

/// Calls a function that may throw an Error.
template <typename Call>
void tryCall(Call call) {
    try {
        call();
    } catch (const KxInspect::Error&) {
    }
}

void convert(const std::string& path, FileKind from) {
    const KxInspect::PointSet points = KxInspect::readPoints(path, from);
    for (const FileKind to : kFileKinds) { // not all kinds hold all points
        tryCall([&] { KxInspect::writePoints(kxfuzz::scratchFile(QStringLiteral("copy")).toStdString(), to, points); });
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
    if (size < 1) {
        return 0;
    }
    const std::string path = kxfuzz::writeScratch("points", data + 1, size - 1).toStdString();
    if (data[0] % 8 < std::size(kFileKinds)) {
        tryCall([&] { convert(path, kFileKinds[data[0] % 8]); });
    } else {
        const KxInspect::Columns columns{data[0] / 8 % 4, data[0] / 32};
        tryCall([&] { KxInspect::readProfile(path, columns); });
        tryCall([&] { KxInspect::readProfiles(path, columns); });
        tryCall([&] { KxInspect::readFileContents(path); });
    }
    return 0;
}
