// The equivalent conicity of a wheel-set, with owners for the profiles that the calculation hands out.
#include <KxMath/KxMath.h>

#include <cmath>
#include <cstdio>
#include <memory>
#include <vector>

using Profiles = std::vector<std::unique_ptr<KxMath::KxProfile>>;

/// @return the conicity at an amplitude of 3 mm for two like wheels on two like rails, NaN when there is none
float conicityAt3mm(KxMath::KxProfile& wheel, KxMath::KxProfile& rail) {
    // A contact is at most every 0.1 mm, and profiles wider than 1 m are refused.
    constexpr int kMaxContacts = 10002;
    constexpr float kRadius = 460.0f;
    constexpr float kBetweenRails = 1442.0f; // the ends of the rail profiles
    constexpr float kBackToBack = 1360.0f;
    std::vector<KxMath::KxProfile*> contacts1(kMaxContacts), contacts2(kMaxContacts);
    KxMath::KxProfile* placed[4] = {};
    int count1 = 0, count2 = 0;
    KxMath::KxProfile conicity, deltaR, slope1, slope2;
    const int points = KxMath::EquivalentConicity(wheel, wheel, rail, rail, kRadius, kRadius, kBetweenRails,
                                                  kBackToBack, 100, conicity, deltaR, slope1, slope2, placed,
                                                  contacts1.data(), count1, contacts2.data(), count2, 0.001f);
    // What was handed out gets its owners before anything else can go wrong.
    const Profiles ownPlaced(std::begin(placed), std::end(placed));
    const Profiles own1(contacts1.begin(), contacts1.begin() + count1);
    const Profiles own2(contacts2.begin(), contacts2.begin() + count2);
    return points > 0 ? conicity.calcY(3.0f, 1.0f, nullptr) : NAN;
}

bool read(const char* name, KxMath::KxProfile& profile) {
    if (profile.readFromCSVFile(QString::fromLocal8Bit(name), 0, 1) > 0) {
        return true;
    }
    std::fprintf(stderr, "%s: no points\n", name);
    return false;
}

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "Usage: %s WHEEL.csv RAIL.csv (x outwards, y down, mm)\n", argv[0]);
        return 2;
    }
    KxMath::KxProfile wheel, rail;
    if (!read(argv[1], wheel) || !read(argv[2], rail)) {
        return 3;
    }
    const float conicity = conicityAt3mm(wheel, rail);
    if (std::isnan(conicity)) {
        std::fprintf(stderr, "no conicity can be calculated from these profiles\n");
        return 1;
    }
    std::printf("conicity at 3 mm: %.3f\n", double(conicity));
    return 0;
}
