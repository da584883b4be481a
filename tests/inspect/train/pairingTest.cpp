// Which wheels belong together, where sensors missed some.
#include "inspect/train/pairing.h"
#include "inspect/train/gapAlignment.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <sstream>

namespace {

using namespace KxInspect::detail;

// Places of axles along a train, mm: two cars with bogies, even distances, a single bogie.
const std::vector<double> kCars = {0, 2100, 12600, 14700, 19200, 21300, 31800, 33900};
const std::vector<double> kEven = {0, 2500, 5000, 7500, 10000};
const std::vector<double> kBogie = {0, 2100};

/// The axles that a side sees, with what a sensor is off.
std::vector<double> seen(const std::vector<double>& axles, const std::string& missed, double shift, double scale) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> off(-3.0, 3.0);
    std::vector<double> places;
    for (std::size_t i = 0; i < axles.size(); ++i) {
        if (missed.find(static_cast<char>('1' + i)) == std::string::npos) {
            places.push_back((axles[i] + shift + off(random)) * scale);
        }
    }
    return places;
}

/// Pairs of axles, "2/2 3/- 4/4?", with a question mark where they are doubtful.
std::string textOf(const Pairing& pairing, const std::vector<double>& axles, const std::string& missed1,
                   const std::string& missed2) {
    const auto numbers = [&](const std::string& missed) {
        std::string all;
        for (std::size_t i = 0; i < axles.size(); ++i) {
            const char number = static_cast<char>('1' + i);
            all += missed.find(number) == std::string::npos ? std::string(1, number) : std::string();
        }
        return all;
    };
    const std::string all[] = {numbers(missed1), numbers(missed2)};
    std::ostringstream text;
    bool isDoubtful = false;
    for (const PairedWheels& pair : pairing.pairs) {
        text << (text.tellp() > 0 ? " " : "") << (pair.wheels[0] ? all[0].at(*pair.wheels[0]) : '-') << '/'
             << (pair.wheels[1] ? all[1].at(*pair.wheels[1]) : '-') << (pair.isDoubtful ? "?" : "");
        isDoubtful = isDoubtful || pair.isDoubtful;
    }
    EXPECT_EQ(isDoubtful, !pairing.doubt.empty()) << pairing.doubt;
    return text.str();
}

TEST(Pairing, ByPlace) {
    const struct {
        const std::vector<double>& axles;
        const char* missed1;
        const char* missed2;
        double shift; ///< of the second recording
        const char* pairs;
    } cases[] = {
        {kCars, "", "", 0.0, "1/1 2/2 3/3 4/4 5/5 6/6 7/7 8/8"},
        {kCars, "3", "6", 0.0, "1/1 2/2 -/3 4/4 5/5 6/- 7/7 8/8"}, // as many on both sides
        {kCars, "1", "8", 350.0, "-/1 2/2 3/3 4/4 5/5 6/6 7/7 8/-"},
        {kCars, "12", "", -1e5, "-/1 -/2 3/3 4/4 5/5 6/6 7/7 8/8"}, // places that count from elsewhere
        {kEven, "1", "5", 0.0, "-/1 2/2 3/3 4/4 5/-"},
        {kEven, "1", "5", 350.0, "-/1 2/2? 3/3? 4/4? 5/-"}, // four fit at 2,850 mm, three at 350
        {kEven, "", "", 1e5, "1/1? 2/2? 3/3? 4/4? 5/5?"}, // which end is missing?
        {kBogie, "1", "", 0.0, "-/1 2/2"},
        {kBogie, "1", "2", 0.0, "2/1?"}, // nothing else is there to compare
    };
    for (const auto& c : cases) {
        EXPECT_EQ(textOf(pairByPlace(seen(c.axles, c.missed1, 0.0, 1.0), seen(c.axles, c.missed2, c.shift, 1.0)),
                         c.axles, c.missed1, c.missed2),
                  c.pairs);
    }
    EXPECT_TRUE(pairByPlace({}, {}).pairs.empty());
}

TEST(Pairing, ByGaps) {
    const struct {
        const std::vector<double>& axles;
        const char* missed1;
        const char* missed2;
        double late; ///< records by which the second recording begins earlier; 0: both run alongside
        const char* pairs;
    } cases[] = {
        {kCars, "", "", 0, "1/1 2/2 3/3 4/4 5/5 6/6 7/7 8/8"},
        {kCars, "3", "6", 400, "1/1 2/2 -/3 4/4 5/5 6/- 7/7 8/8"},
        {kCars, "1", "8", 400, "-/1 2/2? 3/3 4/4 5/5 6/6 7/7? 8/-"}, // 2 and 7 may be the other axles of their bogies
        {kEven, "1", "5", 0, "-/1 2/2 3/3 4/4 5/-"},
        {kEven, "1", "", 400, "2/1? 3/2? 4/3? 5/4? -/5"}, // the first one is missing, or the last
        {kEven, "1", "5", 400, "2/1? 3/2? 4/3? 5/4?"},
        {kBogie, "1", "", 0, "-/1 2/2"},
        {kBogie, "1", "2", 0, "2/1?"},
        {kBogie, "2", "2", 0, "1/1"},
        {kBogie, "2", "2", 400, "1/1?"},
    };
    for (const auto& c : cases) {
        const double perRecord = 1.0 / 7.5;
        const int records = 5000;
        const RecordedWheels first{seen(c.axles, c.missed1, 500.0, perRecord), 70.0, records};
        const RecordedWheels second{seen(c.axles, c.missed2, 500.0 + c.late / perRecord, perRecord), 71.0,
                                    records + static_cast<int>(c.late)};
        EXPECT_EQ(textOf(pairByGaps(first, second), c.axles, c.missed1, c.missed2), c.pairs)
            << c.missed1 << " and " << c.missed2 << ", late by " << c.late;
    }
    const RecordedWheels none{{}, 0.0, 0};
    EXPECT_TRUE(pairByGaps(none, none).pairs.empty());
    EXPECT_EQ(pairByGaps({{5.0}, 1.0, 9}, none).pairs.size(), 1u);
    std::vector<double> many(3000);
    std::generate(many.begin(), many.end(), [n = 0.0]() mutable { return n += 10.0; });
    EXPECT_TRUE(pairByGaps({many, 5.0, 30000}, {many, 5.0, 30000}).pairs.back().isDoubtful);
}

} // namespace
