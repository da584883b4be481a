// Arbitrary bytes as each kind of file that the command line reads points from. The first byte chooses kind and columns.
#include "input.h"
#include "scratch.h"

#include <KxInspect/Error.h>
#include <KxInspect/FileContents.h>
#include <KxInspect/HeightMapFile.h>
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

void convert(const std::string& path, FileKind from, const KxInspect::TextOptions& options) {
    const KxInspect::PointSet points = KxInspect::readPoints(path, from, options);
    for (const FileKind to : kFileKinds) { // not all kinds hold all points
        tryCall([&] { KxInspect::writePoints(kxfuzz::scratchFile(QStringLiteral("copy")).toStdString(), to, points); });
    }
}

void convertMap(const std::string& path, FileKind from) {
    const std::optional<float> pitch = from == FileKind::Npy ? std::optional(0.5f) : std::nullopt;
    const KxInspect::HeightMap map = KxInspect::readHeightMap(path, from, pitch);
    for (const FileKind to : kFileKinds) {
        tryCall([&] { KxInspect::writeHeightMap(kxfuzz::scratchFile(QStringLiteral("copy")).toStdString(), to, map); });
    }
}

/// What 4 bits choose: the form that is found, or another one.
KxInspect::TextOptions textOptions(int choice) {
    KxInspect::TextOptions options;
    if (choice % 2 != 0) {
        options.columns = {choice / 2 % 4, choice / 8};
    }
    if (choice % 4 == 2) {
        options.separator = choice / 8 != 0 ? ';' : ' ';
        options.decimalSign = choice / 4 % 2 != 0 ? ',' : '.';
    }
    return options;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
    if (size < 1) {
        return 0;
    }
    const std::string path = kxfuzz::writeScratch("points", data + 1, size - 1).toStdString();
    const KxInspect::TextOptions options = textOptions(data[0] / 16);
    static_assert(std::size(kFileKinds) < 16, "the others are what is found by the content");
    if (data[0] % 16 < std::size(kFileKinds)) {
        tryCall([&] { convert(path, kFileKinds[data[0] % 16], options); });
        tryCall([&] { convertMap(path, kFileKinds[data[0] % 16]); });
        tryCall([&] { KxInspect::readRecord(path, data[0] / 16); });
    } else {
        tryCall([&] { KxInspect::readProfile(path, options); });
        tryCall([&] { KxInspect::readProfiles(path, options); });
        tryCall([&] { KxInspect::readFileContents(path, {}, options); });
    }
    return 0;
}
