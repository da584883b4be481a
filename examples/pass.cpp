// Measures the pass of a train: pass REC1 REC2 SETTINGS.
#include <KxInspect/KxInspect.h>
#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 4) {
        return 2;
    }
    try {
        const KxInspect::StationSettings settings = KxInspect::readStationSettings(argv[3]);
        const KxInspect::PassResult pass = KxInspect::measurePass({argv[1], argv[2]}, settings);
        for (const KxInspect::WheelPair& pair : pass.pairs) {
            if (pair.inTolerance) {
                std::printf("%.3f mm: %s\n", double(pair.distance), *pair.inTolerance ? "ok" : "out");
            } else {
                std::printf("no distance: %s\n", pair.reason.c_str());
            }
        }
    } catch (const KxInspect::Error& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
