// Prints which part of the errors of wheels measured with gauges comes from the noise of the points, from dirt, from setting
// the gauge onto the wheel, and from the gauge itself, as a table in Markdown.
#include "tools/study/studies.h"

#include <cstdio>

int main() {
    const auto report = [](const std::string& what) { std::fprintf(stderr, "%s\n", what.c_str()); };
    const auto noise = kxstudy::studyWheel(report, {false, false, false});
    const auto dirt = kxstudy::studyWheel(report, {true, false, false});
    const auto placing = kxstudy::studyWheel(report, {false, true, false});
    const auto gauge = kxstudy::studyWheel(report, {false, false, true});
    const auto all = kxstudy::studyWheel(report, {});
    std::printf("| value | unit | noise of the points | dirt | placing | gauge | all |\n"
                "| --- | --- | ---: | ---: | ---: | ---: | ---: |\n");
    for (std::size_t i = 0; i < all.size(); ++i) {
        const double ofNoise = kxstudy::rootMeanSquare(noise[i]);
        std::printf("| %s | %s | %.4f | %.4f | %.4f | %.4f | %.4f |\n", all[i].name.c_str(), all[i].unit.c_str(),
                    ofNoise, kxstudy::added(kxstudy::rootMeanSquare(dirt[i]), ofNoise),
                    kxstudy::added(kxstudy::rootMeanSquare(placing[i]), ofNoise),
                    kxstudy::added(kxstudy::rootMeanSquare(gauge[i]), ofNoise), kxstudy::rootMeanSquare(all[i]));
    }
    return 0;
}
