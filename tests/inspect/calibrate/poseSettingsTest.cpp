// A pose in the text of a settings file.
#include "inspect/inspectSupport.h"

#include <KxInspect/Calibration.h>

#include <gtest/gtest.h>

using namespace KxInspect;

namespace {

constexpr double kUnknown = std::numeric_limits<double>::quiet_NaN();
const SensorPose kPose{1.5, kUnknown, -3.25, 0.125, 45.5, 27.0};
const std::string kKeys = "z=-3.25\nalpha=0.125\nbeta=45.5\ngamma=27\nposition=3\n";

} // namespace

TEST(WithPose, PutsKeysIntoTheirSection) {
    const struct {
        const char* desc;
        std::string before, after;
    } cases[] = {
        {"no file", "", "[SENSOR2]\nx=1.5\n" + kKeys},
        {"another section", "a=1\n", "a=1\n\n[SENSOR2]\nx=1.5\n" + kKeys},
        {"replaced, y stays", "[SENSOR2]\ny=7\nx=9\n[B]\nx=2\n", "[SENSOR2]\ny=7\nx=1.5\n" + kKeys + "[B]\nx=2\n"},
        {"twice, the last counts", "[SENSOR2]\nx = 9\n; x\nx=8", "[SENSOR2]\nx=1.5\n; x\n" + kKeys},
        {"other sensor", "[SENSOR22]\nx=9\n", "[SENSOR22]\nx=9\n\n[SENSOR2]\nx=1.5\n" + kKeys},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.desc);
        EXPECT_EQ(withPose(c.before, {2, kPose, 3}), c.after);
        EXPECT_EQ(withPose(c.after, {2, kPose, 3}), c.after) << "again";
    }
    EXPECT_EQ(withPose("[SENSOR2]\r\nx=9\r\n", {2, {1.5}, 3}), "[SENSOR2]\r\nx=1.5\r\nposition=3\r\n");
    // What an uncertainty said of another pose does not stay; that of a value that is not changed does.
    EXPECT_EQ(withPose("[SENSOR2]\nxUncertainty=0.5\nyUncertainty=0.75\nzUncertainty=1\n",
                       {2, {1.5, kUnknown, 3.0}, 3, {kUnknown, kUnknown, 0.25}}),
              "[SENSOR2]\n;xUncertainty=\nyUncertainty=0.75\nzUncertainty=0.25\nx=1.5\nz=3\nposition=3\n");
}

TEST(WithPose, RefusesTextsInWhichOtherKeysWouldChange) {
    for (const char* const text : {"[SENSOR2]\nx=\\\n1\n", "[SENSOR2]\n[%53ENSOR2]\nx=1\n", "\xff\xfe"}) {
        const Error error = inspect_test::errorOf([&] { withPose(text, {2, kPose, 3}, "s.ini"); });
        EXPECT_EQ(error.kind(), ErrorKind::Unsuitable) << text;
        EXPECT_EQ(std::string(error.what()).find("settings 's.ini' "), 0u) << error.what();
    }
    EXPECT_THROW(withPose("", {0, kPose, 3}), Error);
    EXPECT_THROW(withPose("", {50, kPose, 3}), Error);
    EXPECT_NO_THROW(withPose("", {49, kPose, 3}));
}
