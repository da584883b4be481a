// Treads with flats: what is said of the measures of their wheels.
#include "simulator/simulation.h"
#include "simulator/train.h"
#include "simulator/wornRim.h"
#include "support/tempFiles.h"

#include <KxInspect/Train.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace {

using namespace KxInspect;

bool isWarned(const PassResult& result, const std::string& wheel, const std::string& what) {
    return std::any_of(result.warnings.begin(), result.warnings.end(), [&](const std::string& warning) {
        return warning.find(wheel) != std::string::npos && warning.find(what) != std::string::npos;
    });
}

TEST(TreadRoundness, MeasuresOfFlatTreadsAreDoubtfulOrAbsent) {
    const testing_support::TempFiles files;
    kxsim::Parameters p;
    p.seed = 12;
    p.cars = p.bogies = 1;
    p.axles = 4;
    p.noise = 0.08;
    using Kind = kxsim::Defect::Kind;
    // Short; on one side of what is seen; longer than that; the right wheels are sound.
    p.defects = {{Kind::Flat, 1, 1, 25.0, 0.0}, {Kind::Flat, 2, 1, 60.0, 35.0}, {Kind::Flat, 3, 1, 70.0, 0.0}};
    kxsim::simulatePass(p, files.path(""), {});
    const PassResult result =
        measurePass({files.path("train_101.bin").toStdString(), files.path("train_102.bin").toStdString()},
                    readStationSettings(files.path("settings.ini").toStdString()));
    const kxsim::Train train = kxsim::makeTrain(p);
    ASSERT_EQ(result.wheels.size(), 8);
    for (const PassWheelMeasures& wheel : result.wheels) {
        SCOPED_TRACE(std::to_string(wheel.pair) + textOf(wheel.side));
        const bool isLeft = wheel.side == TrackSide::Left;
        const bool hasFlat = isLeft && wheel.pair < 4;
        const bool isAllFlat = isLeft && wheel.pair == 3;
        const std::string name =
            "the " + std::string(textOf(wheel.side)) + " wheel of pair " + std::to_string(wheel.pair);
        EXPECT_EQ(isWarned(result, name, "off round where it is seen"), hasFlat && !isAllFlat);
        EXPECT_EQ(isWarned(result, name, "has a flat tread all over what is seen of it"), isAllFlat);
        const PassValue& height = wheel[PassMeasure::FlangeHeight];
        const PassValue& diameter = wheel[PassMeasure::Diameter];
        if (isAllFlat) {
            EXPECT_FALSE(height.value || diameter.value);
            EXPECT_NE(height.reason.find("flat"), std::string::npos);
            continue;
        }
        const kxsim::Wheel& truth = train.pairs[static_cast<std::size_t>(wheel.pair - 1)].wheels[isLeft ? 0 : 1];
        const kxsim::RimTruth rim = kxsim::trueMeasures(kxsim::rimOf(truth.contour, truth.shape.diameter));
        ASSERT_TRUE(height.value && diameter.value);
        const auto isHeld = [](const PassValue& value,
                               double expected) { // within twice the interval: 1 in 20 is outside
            const float half = (value.interval.high - value.interval.low) / 2.0f;
            return std::abs(*value.value - static_cast<float>(expected)) <= 2.0f * half;
        };
        EXPECT_TRUE(isHeld(height, rim.height)) << *height.value;
        EXPECT_TRUE(isHeld(diameter, truth.shape.diameter)) << *diameter.value;
        EXPECT_EQ(height.interval.high - height.interval.low > 0.06f, hasFlat);
    }
}

} // namespace
