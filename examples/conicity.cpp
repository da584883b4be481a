// The equivalent conicity of a wheel-set, with owners for the profiles that the calculation hands out.
#include <KxMath/KxMath.h>

#include <cstdio>
#include <memory>
#include <vector>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "Usage: %s WHEEL.csv RAIL.csv (x outwards, y down, mm)\n", argv[0]);
        return 2;
    }
    KxMath::KxProfile wheel;
    KxMath::KxProfile rail;
    wheel.readFromCSVFile(QString::fromLocal8Bit(argv[1]), 0, 1);
    rail.readFromCSVFile(QString::fromLocal8Bit(argv[2]), 0, 1);

    // Room for a contact per displacement: a wheel 200 mm wide has 2000 points after resampling.
    std::vector<KxMath::KxProfile*> contacts1(2000);
    std::vector<KxMath::KxProfile*> contacts2(2000);
    KxMath::KxProfile* placed[4] = {};
    int count1 = 0;
    int count2 = 0;
    KxMath::KxProfile conicity, deltaR, slope1, slope2;
    const int points =
        KxMath::EquivalentConicity(wheel, wheel, rail, rail, 460.0f, 460.0f, 1435.0f, 1360.0f, 100, conicity, deltaR,
                                   slope1, slope2, placed, contacts1.data(), count1, contacts2.data(), count2, 0.001f);
    // What was handed out gets its owners before anything else can go wrong.
    const std::vector<std::unique_ptr<KxMath::KxProfile>> ownPlaced(std::begin(placed), std::end(placed));
    const std::vector<std::unique_ptr<KxMath::KxProfile>> own1(contacts1.begin(), contacts1.begin() + count1);
    const std::vector<std::unique_ptr<KxMath::KxProfile>> own2(contacts2.begin(), contacts2.begin() + count2);
    if (points < 1) {
        std::fprintf(stderr, "no conicity can be calculated from these profiles\n");
        return 1;
    }
    std::printf("conicity at 3 mm: %.3f\n", double(conicity.calcY(3.0f, 1.0f, nullptr)));
    return 0;
}
