// Makes a height map of a scan whose profiles are 0.5 mm apart, and prints its size and its patches.
#include <KxInspect/KxInspect.h>

#include <cstdio>

int main(int argc, char** argv) {
    try {
        const KxInspect::ScanPlacement placement{0.0f, 0.5f}; // z of the first profile, distance of the profiles
        const KxInspect::Scan scan = KxInspect::readScan(argc > 1 ? argv[1] : "scan.bin", placement);
        const KxInspect::HeightMap map = KxInspect::makeHeightMap(scan, {0.5f}); // the pitch
        std::printf("%d rows, %d columns from x = %.1f mm\n", map.rows, map.columns, double(map.originX));
        for (const KxInspect::Patch& patch : KxInspect::findPatches(map).patches) {
            std::printf("%.1f mm2 at the height %.1f mm\n", double(patch.area), double(patch.mean));
        }
        return 0;
    } catch (const KxInspect::Error& error) {
        std::fprintf(stderr, "%s\n", error.what()); // with the byte of a damaged scan
        return 1;
    }
}
