// Which axle of a pass belongs to which vehicle: by the gaps alone, and by a list.
#include "inspect/consist/randomFleet.h"
#include "inspect/inspectSupport.h"
#include "support/tempFiles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

namespace {

using namespace KxInspect;
using namespace inspect_test;

/// How the axles of trains were numbered.
struct Counts {
    int right = 0;
    int wrong = 0;
    int doubtful = 0; ///< whatever they are, their vehicle carries a doubt
    int absent = 0;

    int all() const { return right + wrong + doubtful + absent; }
};

std::ostream& operator<<(std::ostream& out, const Counts& c) {
    return out << c.right << " right, " << c.wrong << " wrong, " << c.doubtful << " doubtful, " << c.absent
               << " absent";
}

void count(const Fleet& fleet, const PassTrain& train, const std::vector<AxleNumber>& numbers, Counts& counts) {
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const AxleNumber& number = numbers[i];
        if (!number.vehicle) {
            EXPECT_FALSE(number.reason.empty());
            ++counts.absent;
        } else if (!train.vehicles[std::size_t(*number.vehicle) - 1].doubt.empty()) {
            ++counts.doubtful;
        } else {
            const bool isRight = *number.vehicle == fleet.axles[i].vehicle && number.axle == fleet.axles[i].axle;
            ++(isRight ? counts.right : counts.wrong);
        }
    }
}

TEST(Consist, CountsVehiclesOfManyKindsByTheirGaps) {
    std::mt19937 random(15);
    for (const bool isMissed : {false, true}) { // an axle of the train, by both sensors
        Counts counts;
        for (int trial = 0; trial < 3000; ++trial) {
            Fleet fleet(4 + int(random() % 9), 1 + int(random() % 6), random);
            if (isMissed) {
                fleet.leaveOut(random() % fleet.places.size());
            }
            std::vector<AxleNumber> numbers;
            const PassTrain train = numberAxles(fleet.measured(8.0, 1.0 + 0.0001 * int(random() % 200), random),
                                                nullptr, ConsistOrder::Found, numbers);
            count(fleet, train, numbers, counts);
        }
        EXPECT_EQ(counts.wrong, 0) << counts;
        EXPECT_GE(counts.right, (isMissed ? 0.7 : 0.99) * counts.all()) << counts;
    }
}

/// The root of the sum of the squares of distances from their mean.
double rootOfSquares(const std::vector<double>& places) {
    const double mean = std::accumulate(places.begin(), places.end(), 0.0) / double(places.size());
    return std::sqrt(std::transform_reduce(places.begin(), places.end(), 0.0, std::plus(),
                                           [&](double place) { return (place - mean) * (place - mean); }));
}

TEST(Consist, FindsAxlesOfAListWithMissedOnesAndTurnedTrains) {
    constexpr double kNoise = 15.0; // mm
    std::mt19937 random(4);
    Counts counts;
    int open = 0;
    for (int trial = 0; trial < 200; ++trial) {
        Fleet fleet(4 + int(random() % 9), 2 + int(random() % 6), random);
        const bool isTurned = random() % 2 == 0;
        if (isTurned) {
            fleet.turn();
        }
        for (std::size_t i = fleet.places.size(); i-- > 0;) {
            if (random() % 25 == 0) {
                fleet.leaveOut(i);
            }
        }
        const double scale = 0.97 + 0.0001 * int(random() % 600);
        std::vector<AxleNumber> numbers;
        const PassTrain train =
            numberAxles(fleet.measured(kNoise, scale, random), &fleet.consist, ConsistOrder::Found, numbers);
        if (train.order == VehicleOrder::Passing) {
            ++open;
            EXPECT_FALSE(train.mismatches.empty());
            continue;
        }
        EXPECT_EQ(train.order == VehicleOrder::Turned, isTurned);
        EXPECT_NEAR(*train.scale, scale, 10.0 * kNoise / rootOfSquares(fleet.places)) << "10 sigma of a line";
        count(fleet, train, numbers, counts);
    }
    EXPECT_EQ(counts.wrong, 0) << counts;
    EXPECT_GE(counts.right, 0.98 * counts.all()) << counts;
    EXPECT_LE(open, 8) << "trains of one kind of vehicle";
}

/// A locomotive, a wagon and a coach.
Consist shortTrain() {
    return {"",
            {{"E1", "L 7", "loco", {2650, 7250, 2650}, 5900},
             {"W", "", "", {9000}, 5200},
             {"B", "C 9", "", {2500, 16500, 2500}, 0}},
            {}};
}

struct Numbered {
    PassTrain train;
    std::vector<AxleNumber> numbers;

    Numbered(const std::vector<double>& places, const Consist& consist, ConsistOrder order = ConsistOrder::Found) {
        train = numberAxles(places, &consist, order, numbers);
    }
    /// "1/1/1 1/1/2 2/-/1 ...": vehicle, bogie, axle
    std::string text() const {
        const auto digit = [](const std::optional<int>& n) { return n ? std::to_string(*n) : "-"; };
        std::string result;
        for (const AxleNumber& n : numbers) {
            result += (result.empty() ? "" : " ") + digit(n.vehicle) + "/" + digit(n.bogie) + "/" + digit(n.axle);
        }
        return result;
    }
};

std::vector<double> placesOf(const std::vector<double>& gaps) {
    std::vector<double> places = {250.0};
    for (const double gap : gaps) {
        places.push_back(places.back() + gap);
    }
    return places;
}

TEST(Consist, NamesWhatDoesNotFit) {
    const Numbered whole(placesOf({2650, 7250, 2650, 5900, 9000, 5200, 2500, 16500, 2500}), shortTrain());
    EXPECT_EQ(whole.text(), "1/1/1 1/1/2 1/2/3 1/2/4 2/-/1 2/-/2 3/1/1 3/1/2 3/2/3 3/2/4");
    EXPECT_TRUE(whole.train.mismatches.empty());
    EXPECT_EQ(whole.train.vehicles[0].mark, "E1");

    // Turned, without the second axle of the coach, which comes first.
    const Numbered turned(placesOf({2500, 19000, 5200, 9000, 5900, 2650, 7250, 2650}), shortTrain());
    EXPECT_EQ(turned.text(), "3/2/4 3/2/3 3/1/1 2/-/2 2/-/1 1/2/4 1/2/3 1/1/2 1/1/1");
    EXPECT_EQ(turned.train.order, VehicleOrder::Turned);
    ASSERT_EQ(turned.train.mismatches.size(), 1u);
    EXPECT_EQ(turned.train.mismatches[0], "vehicle 3 (B C 9): axle 2 was not seen");
    EXPECT_EQ(turned.train.vehicles[2].seen, 3);

    // A wagon of 8 m in place of 9 m.
    const Numbered other(placesOf({2650, 7250, 2650, 5900, 8000, 5200, 2500, 16500, 2500}), shortTrain());
    EXPECT_EQ(other.text(), whole.text());
    ASSERT_EQ(other.train.mismatches.size(), 1u);
    EXPECT_EQ(other.train.mismatches[0], "axle 1 of vehicle 2 (W) and axle 2 of vehicle 2 (W) are 8000 mm apart, the "
                                         "list says 9000 mm");
    EXPECT_FALSE(other.train.vehicles[1].doubt.empty());

    // Another train: counted as it passed.
    const Numbered strange(placesOf({2100, 10500, 2100, 3600, 2100, 10500, 2100}), shortTrain());
    EXPECT_EQ(strange.text(), "1/1/1 1/1/2 1/2/3 1/2/4 2/1/1 2/1/2 2/2/3 2/2/4");
    EXPECT_NE(strange.train.mismatches.at(0).find("not those of the list"), std::string::npos);
    EXPECT_FALSE(strange.train.vehicles[0].mark);
}

TEST(Consist, SaysThatASymmetricTrainFitsBothWays) {
    const std::vector<double> car = {2500, 16500, 2500};
    const Consist two{"", {{"B", "1", "", car, 4900}, {"B", "2", "", car, 0}}, {}};
    const std::vector<double> places = placesOf({2500, 16500, 2500, 4900, 2500, 16500, 2500});
    const Numbered open(places, two);
    EXPECT_EQ(open.train.order, VehicleOrder::Passing);
    EXPECT_NE(open.train.mismatches.at(0).find("either end"), std::string::npos);
    EXPECT_FALSE(open.train.vehicles[0].vehicleNumber);
    const Numbered turned(places, two, ConsistOrder::Turned);
    EXPECT_EQ(turned.text(), "2/2/4 2/2/3 2/1/2 2/1/1 1/2/4 1/2/3 1/1/2 1/1/1");
    EXPECT_TRUE(turned.train.mismatches.empty());

    // Axles at even distances, one of which was not seen: any may be the one.
    const Consist even{"", {{"X", "", "", {5000, 5000, 5000, 5000, 5000}, 0}}, {}};
    const Numbered missed(placesOf({5000, 5000, 5000, 5000}), even, ConsistOrder::Listed);
    EXPECT_EQ(missed.text(), "-/-/- -/-/- -/-/- -/-/- -/-/-");
    EXPECT_EQ(missed.numbers[2].reason, "other axles of the list fit as well");
}

TEST(Consist, ReadsListsAndRefusesWhatBreaksTheirForm) {
    const testing_support::TempFiles files;
    const auto read = [&](const std::string& text) {
        return readConsist(files.write("c.csv", QByteArray::fromStdString(text)).toStdString());
    };
    const std::string header = "mark,number,class,axle distances,to next\n";
    const Consist consist = read("# from Hof\r\n" + header + "\"E1, long\",7,loco,2650 7250  2650,5900\n\nW,,,9000,\n");
    ASSERT_EQ(consist.vehicles.size(), 2u);
    EXPECT_EQ(consist.vehicles[0].mark, "E1, long");
    EXPECT_EQ(consist.vehicles[0].spacings, (std::vector<double>{2650, 7250, 2650}));
    EXPECT_EQ(consist.vehicles[0].toNext, 5900);
    EXPECT_EQ(consist.source->name, "c.csv");
    const std::tuple<std::string, ErrorKind, std::optional<std::int64_t>, const char*> faults[] = {
        {"", ErrorKind::Unsuitable, {}, "lists no vehicle"},
        {header, ErrorKind::Unsuitable, {}, "lists no vehicle"},
        {"mark;number\n", ErrorKind::Damaged, 1, "in place of 'mark,number"},
        {header + "a,1,,2500\n", ErrorKind::Damaged, 2, "4 fields"},
        {header + "\"a,1,,2500,\n", ErrorKind::Damaged, 2, "quote"},
        {header + "a,1,,2500 x,\n", ErrorKind::Damaged, 2, "'x' in place of a distance"},
        {header + "a,1,,2.5,\n", ErrorKind::Unsuitable, 2,
         "2.5 mm, which is outside 500 to 40000 mm: is it in metres?"},
        {header + "a,1,,2500,\nb,2,,2500,\n", ErrorKind::Damaged, 3, "without a distance to the next"},
        {header + "a,1,,2500,4000\nb,1,,2500,\n", ErrorKind::Unsuitable, 3, "number '1' twice"},
    };
    for (const auto& [text, kind, line, reason] : faults) {
        expectErrorAt([&, text = text] { read(text); }, kind, line, {}, reason);
    }
    expectError([&] { readConsist(files.path("gone.csv").toStdString()); }, ErrorKind::NotFound, "");
}

} // namespace
