// Prints how many wheels with flats kxmath train finds out of round, over the length of the flats and their distance
// from the place that rolls over the sensors, and how many sound wheels it accuses under other conditions.
#include "tools/tables/roundnessTrial.h"

#include <cstdio>
#include <string>

namespace {

constexpr double kRadius = 430.0; // mm, of a new wheel

int foundFlats(double length, double phase, kxsim::FlatShape shape) {
    kxsim::Parameters p = carWith("--yaw 2", 1);
    p.flatShape = shape;
    for (const int pair : {1, 3}) {
        for (const int sensor : {1, 2}) {
            p.defects.push_back({kxsim::Defect::Kind::Flat, pair, sensor, length, phase});
        }
    }
    Tally tally;
    tally.add(measured(p));
    return tally.out;
}

void printFlats() {
    constexpr double kPhases[] = {0, 10, 20};
    std::printf("| flat, mm | depth, mm |");
    for (const double phase : kPhases) {
        std::printf(" %g mm |", phase);
    }
    std::printf("\n| --- | --- | --- | --- | --- |\n");
    for (const double length : {15.0, 25.0, 40.0, 60.0}) {
        std::printf("| %g | %.2f |", length, length * length / (8.0 * kRadius));
        for (const double phase : kPhases) {
            std::printf(" %d / %d |", foundFlats(length, phase, kxsim::FlatShape::Even),
                        foundFlats(length, phase, kxsim::FlatShape::Plane));
        }
        std::printf("\n");
        std::fflush(stdout);
    }
}

void printSound() {
    constexpr std::uint64_t kSeeds = 1;
    std::printf(
        "\n| sound wheels | out of round | defective | not compared | treads not judged | off, mm | limit, mm |\n"
        "| --- | --- | --- | --- | --- | --- | --- |\n");
    for (const char* const options :
         {"", "--noise 0", "--noise 0.1", "--noise 0.2", "--noise 0.3", "--stand-off 100", "--stand-off 200",
          "--stand-off 300", "--beta 75", "--beta 88", "--beta 105", "--turn1 2 --turn2 2", "--half-angle 18",
          "--yaw 5", "--yaw -5 --noise 0.1", "--speed 3", "--speed 30", "--speed 60",
          "--speed 60 --noise 0.3 --stand-off 300 --beta 75"}) {
        Tally tally;
        for (std::uint64_t seed = 1; seed <= kSeeds; ++seed) {
            tally.add(measured(carWith(options, seed)));
        }
        std::printf("| %d%s%s | %d | %d | %d | %d | %.3f | %.3f |\n", tally.wheels, *options == '\0' ? "" : ", ",
                    options, tally.out, tally.defective, tally.notCompared, tally.treadsNotJudged,
                    static_cast<double>(tally.farthest), static_cast<double>(tally.limit));
    }
}

} // namespace

int main() {
    printFlats();
    printSound();
    return 0;
}
