// Counts over many simulated passes what roundness says of wheels that are known:
//
//     roundnessCounts sound [PASSES [FIRST_SEED [OPTIONS]]]  sound wheels under conditions drawn from the whole range
//     roundnessCounts flats [PASSES [FIRST_SEED [OPTIONS]]]  flats of 25 to 60 mm that pass where the sensors see
//     roundnessCounts short [PASSES [FIRST_SEED [OPTIONS]]]  flats of 13 to 25 mm, likewise
//     roundnessCounts intervals [PASSES [FIRST_SEED [-v]]]  95 % intervals of the radius of a profile
//
// Wheels that are judged wrongly are named on stderr, with the options of kxmath simulate that make them.
#include "tools/tables/roundnessTrial.h"

#include "simulator/random.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>

namespace {

using KxInspect::PassWheel;

enum Stream : std::uint64_t { SoundStream = 201, FlatStream = 202, IntervalStream = 203 };

std::string option(const char* name, double value) {
    char text[64];
    static_cast<void>(std::snprintf(text, sizeof text, " --%s %.4g", name, value));
    return text;
}

/// Within the range, half of the time at one of its ends.
double drawn(kxsim::Random& random, double from, double to) {
    if (random.chance(0.5)) {
        return random.chance(0.5) ? from : to;
    }
    return random.uniform(from, to);
}

/// Sensors that stand and see as they like, trains that pass as they like.
std::string drawnConditions(kxsim::Random& random) {
    constexpr double kSlow = 6.0; // m/s; slower passes have many records, and half of the wheels
    const double speed = random.chance(0.1) ? 1.0 : std::exp(random.uniform(0.0, std::log(60.0)));
    return option("noise", drawn(random, 0.0, 0.3)) + option("stand-off", drawn(random, 100.0, 300.0)) +
           option("beta", drawn(random, 75.0, 105.0)) + option("speed", speed) +
           option("yaw", drawn(random, -5.0, 5.0)) + option("turn1", drawn(random, -2.0, 2.0)) +
           option("turn2", drawn(random, -2.0, 2.0)) + option("along2", drawn(random, -50.0, 50.0)) +
           option("bogies", 1.0) + option("axles", speed < kSlow ? 2.0 : 4.0);
}

void countSound(std::uint64_t passes, std::uint64_t first, const std::string& more) {
    constexpr std::size_t kReason = 40; // its first letters, before numbers
    Tally all;
    std::map<std::string, int> reasons;
    for (std::uint64_t seed = first; seed < first + passes; ++seed) {
        kxsim::Random random({seed, SoundStream});
        const std::string options = drawnConditions(random) + ' ' + more;
        const KxInspect::PassResult pass = measured(carWith(options, seed));
        Tally tally;
        tally.add(pass);
        for (const KxInspect::PassSide& side : pass.sides) {
            for (const PassWheel& wheel : side.wheels) {
                ++reasons[wheel.roundnessReason.substr(0, kReason)];
            }
        }
        if (tally.out + tally.defective > 0) {
            std::fprintf(stderr, "--seed %llu --cars 1%s: %d out of round, %d defective\n",
                         static_cast<unsigned long long>(seed), options.c_str(), tally.out, tally.defective);
        }
        all.add(tally);
    }
    std::printf("%d sound wheels: %d judged for roundness, %d out of round; %d treads judged, %d defective.\n",
                all.wheels, all.wheels - all.notCompared, all.out, all.wheels - all.treadsNotJudged, all.defective);
    for (const auto& [reason, count] : reasons) {
        if (!reason.empty()) {
            std::printf("%d not compared: %s...\n", count, reason.c_str());
        }
    }
}

/// Flats of some lengths.
struct Found {
    const char* name;
    double from, to; ///< lengths, mm
    int flats = 0;
    int found = 0;
};

const char* nameOf(kxsim::FlatShape shape) {
    return shape == kxsim::FlatShape::Even ? "even" : "plane";
}

/// How a wheel with a flat was judged, as a warning.
std::string judgementOf(const PassWheel* wheel) {
    if (wheel == nullptr) {
        return "no wheel";
    }
    return wheel->roundness ? "off by " + std::to_string(wheel->roundness->largest) + " mm, limit " +
                                  std::to_string(wheel->roundness->limit)
                            : wheel->roundnessReason;
}

/// A length of a flat.
using Lengths = double (*)(kxsim::Random&);

double longFlat(kxsim::Random& random) {
    return random.chance(0.2) ? 60.0 : random.uniform(25.0, 60.0);
}

double shortFlat(kxsim::Random& random) {
    return random.uniform(13.0, 25.0);
}

/// Flats in the part of the circumference that the sensors see by default, one on each side of a pass.
void countFlats(std::uint64_t passes, std::uint64_t first, const std::string& more, kxsim::FlatShape shape,
                Lengths lengths) {
    constexpr double kReach = 22.0; // mm of the circumference to both sides
    Found counts[] = {{"13 to 19 mm", 13.0, 19.0},
                      {"19 to 25 mm", 19.0, 25.0},
                      {"25 to 40 mm", 25.0, 40.0},
                      {"40 to 60 mm", 40.0, 60.0},
                      {"60 mm", 60.0, 61.0}};
    Tally sound;
    for (std::uint64_t seed = first; seed < first + passes; ++seed) {
        kxsim::Random random({seed, FlatStream});
        const double speed = std::exp(random.uniform(0.0, std::log(30.0)));
        const std::string options =
            option("yaw", random.uniform(0.0, 5.0)) + option("speed", speed) + " --bogies 1 --axles 3 " + more;
        kxsim::Parameters p = carWith(options, seed);
        p.flatShape = shape;
        for (const int sensor : {1, 2}) {
            const int pair = 1 + static_cast<int>(random.uniform() * 2.999);
            const double length = lengths(random);
            p.defects.push_back({kxsim::Defect::Kind::Flat, pair, sensor, length, random.uniform(-kReach, kReach)});
        }
        const KxInspect::PassResult pass = measured(p);
        sound.add(pass);
        for (const kxsim::Defect& flat : p.defects) {
            const PassWheel* const wheel = wheelOf(pass, flat.pair, flat.sensor);
            const bool isFound = wheel != nullptr && wheel->roundness && wheel->roundness->isOut;
            for (Found& count : counts) {
                if (flat.size >= count.from && flat.size < count.to) {
                    ++count.flats;
                    count.found += isFound ? 1 : 0;
                }
            }
            sound.wheels -= 1;
            sound.out -= isFound ? 1 : 0;
            if (!isFound) {
                std::fprintf(stderr, "--seed %llu --cars 1%s --flat-shape %s --flat %d:%d:%.4g:%.4g: %s\n",
                             static_cast<unsigned long long>(seed), options.c_str(), nameOf(shape), flat.pair,
                             flat.sensor, flat.size, flat.phase, judgementOf(wheel).c_str());
            }
        }
    }
    for (const Found& count : counts) {
        if (count.flats == 0) {
            continue;
        }
        std::printf("%d of %d %s flats of %s found.\n", count.found, count.flats, nameOf(shape), count.name);
    }
    std::printf("%d of %d sound wheels beside them out of round.\n", sound.out, sound.wheels);
}

/// The profiles of a wheel share its axle, and the wheels of a side the pose of their sensor: one profile of a side counts.
void countIntervals(std::uint64_t passes, std::uint64_t first, bool isVerbose) {
    const std::string kSmall = " --bogies 1 --axles 3 --points 640"; // wheels alone, for the sake of time
    int values = 0;
    int held = 0;
    double squares = 0.0;
    for (std::uint64_t seed = first; seed < first + passes; ++seed) {
        kxsim::Random random({seed, IntervalStream});
        const std::string options =
            option("noise", random.uniform(0.02, 0.2)) + option("stand-off", random.uniform(120.0, 250.0)) +
            option("beta", random.uniform(80.0, 100.0)) + option("speed", random.uniform(6.0, 30.0)) +
            option("yaw", random.uniform(-4.0, 4.0)) + option("yaw-spread", 1.0);
        kxsim::Parameters p = carWith(options + kSmall, seed);
        p.hasRails = p.hasBackground = p.hasObjects = false;
        const KxInspect::PassResult pass = measured(p);
        for (const KxInspect::PassSide& side : pass.sides) {
            if (side.wheels.empty()) {
                continue;
            }
            const PassWheel& wheel = side.wheels[static_cast<std::size_t>(random.uniform() * 0.999 *
                                                                          static_cast<double>(side.wheels.size()))];
            if (!wheel.roundness) {
                continue;
            }
            const std::vector<KxInspect::RadiusDeviation>& radii = wheel.roundness->radii;
            const KxInspect::RadiusDeviation& radius =
                radii[static_cast<std::size_t>(random.uniform() * 0.999 * static_cast<double>(radii.size()))];
            const double half = static_cast<double>(radius.interval.high - radius.interval.low) / 2.0;
            const double off = static_cast<double>(radius.deviation) * 1.96 / half;
            ++values;
            held += std::abs(off) <= 1.96 ? 1 : 0;
            squares += off * off;
            if (isVerbose) {
                std::fprintf(stderr, "%.3f %.0f %s\n", off, static_cast<double>(radius.place), options.c_str());
            }
        }
    }
    std::printf("%d of %d intervals hold the truth, %.1f %%; the values are off %.2f of their standard error (rms).\n",
                held, values, 100.0 * held / std::max(values, 1), std::sqrt(squares / std::max(values, 1)));
}

} // namespace

int main(int argc, char** argv) {
    const std::string what = argc > 1 ? argv[1] : "";
    const auto number = [&](int place, std::uint64_t otherwise) {
        return argc > place ? std::strtoull(argv[place], nullptr, 10) : otherwise;
    };
    const std::string more = argc > 4 ? argv[4] : "";
    if (what == "sound") {
        countSound(number(2, 1000), number(3, 1), more);
    } else if (what == "flats" || what == "short") {
        for (const kxsim::FlatShape shape : {kxsim::FlatShape::Even, kxsim::FlatShape::Plane}) {
            countFlats(number(2, 100), number(3, 1), more, shape, what == "flats" ? longFlat : shortFlat);
        }
    } else if (what == "intervals") {
        countIntervals(number(2, 1000), number(3, 1), argc > 4);
    } else {
        std::fprintf(stderr, "roundnessCounts sound|flats|short|intervals [COUNT [FIRST_SEED]]\n");
        return 2;
    }
    return 0;
}
