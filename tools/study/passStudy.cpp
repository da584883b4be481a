// The measures of wheels from passes, by stations that see less or more of them, and what makes their errors. Prints two tables
// in Markdown; scripts/study puts them into docs/accuracy.md.
//
// The train of the study passes three stations four times each, before six sensors; each pass is measured by two, by four and
// by all of them. The sensors of a station have been calibrated once: their poses are off by a draw of what their uncertainty
// says.
#include "tools/study/studies.h"

#include <KxInspect/Error.h>

#include <cstdio>

namespace {

/// The root of the mean square of the errors, and what a cause adds to the noise of the points: as `wheelCauses`.
void printCauses(const std::vector<kxstudy::StudiedValue>& all, const kxstudy::Report& report) {
    const auto noise = kxstudy::studyPasses(report, {false, false});
    const auto dirt = kxstudy::studyPasses(report, {true, false});
    const auto poses = kxstudy::studyPasses(report, {false, true});
    std::printf("\n| value | unit | noise of the points | dirt | poses | all |\n"
                "| --- | --- | ---: | ---: | ---: | ---: |\n");
    for (std::size_t i = 0; i < all.size(); ++i) {
        const double ofNoise = kxstudy::rootMeanSquare(noise[i]);
        if (kxstudy::analyse(all[i]).readings > 0) {
            std::printf("| %s | %s | %.4f | %.4f | %.4f | %.4f |\n", all[i].name.c_str(), all[i].unit.c_str(), ofNoise,
                        kxstudy::added(kxstudy::rootMeanSquare(dirt[i]), ofNoise),
                        kxstudy::added(kxstudy::rootMeanSquare(poses[i]), ofNoise), kxstudy::rootMeanSquare(all[i]));
        }
    }
}

} // namespace

int main() {
    const auto report = [](const std::string& what) { std::fprintf(stderr, "%s\n", what.c_str()); };
    try {
        const std::vector<kxstudy::StudiedValue> all = kxstudy::studyPasses(report);
        std::fputs(kxstudy::accuracyTable(all).c_str(), stdout);
        printCauses(all, report);
    } catch (const KxInspect::Error& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
