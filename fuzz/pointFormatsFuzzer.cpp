// Any bytes as each kind of file that the command line reads points from. The first byte chooses columns and kind.
#include "input.h"
#include "scratch.h"

#include "inspect/formats/pointFile.h"
#include "inspect/formats/profileFiles.h"

using kxtool::Format;

namespace {

constexpr Format kFormats[] = {Format::Cloud, Format::Profiles, Format::Csv, Format::HeadlessXyz,
                               Format::Xyz,   Format::Ply,      Format::Pcd};

void convert(const QString& path, Format from) {
    const kxtool::PointData points = kxtool::readPointFile(path, from);
    for (const Format to : kFormats) {
        try {
            kxtool::writePointFile(kxfuzz::scratchFile(QStringLiteral("copy")), to, points);
        } catch (const kxtool::FormatError&) {
            // not all kinds hold all points
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
    if (size < 1) {
        return 0;
    }
    const QString path = kxfuzz::writeScratch("points", data + 1, size - 1);
    try {
        if (data[0] % 8 < std::size(kFormats)) {
            convert(path, kFormats[data[0] % 8]);
        } else {
            KxMath::KxProfile profile;
            kxtool::readProfileFile(path, data[0] / 8 % 4, data[0] / 32, profile);
            std::vector<QList<KxMath::KxPointXY>> profiles;
            kxtool::readProfilesOfFile(path, data[0] / 8 % 4, data[0] / 32, profiles);
        }
    } catch (const kxtool::FormatError&) {
        // what the user is told
    }
    return 0;
}
