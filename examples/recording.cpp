// Walks over the profiles of a recording: recording FILE.
#include <KxInspect/KxInspect.h>
#include <algorithm>
#include <cstdio>
#include <limits>

int main(int argc, char** argv) {
    try {
        KxInspect::RecordingReader reader(argc > 1 ? argv[1] : "train_101.bin");
        KxInspect::Record record;
        size_t points = 0;
        float nearest = std::numeric_limits<float>::infinity(); // to the sensor, mm
        while (reader.next(record)) {
            points += record.profile.points.size();
            for (const KxInspect::Point& point : record.profile.points) {
                nearest = std::min(nearest, point.y); // NaN: stays
            }
        }
        std::printf("%d profiles, %zu points, nearest %.1f mm\n", record.number, points, double(nearest));
    } catch (const KxInspect::Error& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
