// Alarms that open and close.
#include "fleet/alarms/alarms.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using namespace kxfleet;

/// "opened-closed:readings" of each alarm.
std::string alarmsText(const std::string& readings, const AlarmRule& rule = {}) {
    std::vector<bool> isBad;
    for (const char reading : readings) {
        isBad.push_back(reading == 'x');
    }
    std::string text;
    for (const Alarm& alarm : alarmsOf(isBad, rule)) {
        text += (text.empty() ? "" : " ") + std::to_string(alarm.opened) + '-' +
                (alarm.closed ? std::to_string(*alarm.closed) : "") + ':';
        for (const std::size_t reading : alarm.readings) {
            text += std::to_string(reading) + ',';
        }
    }
    return text;
}

TEST(Alarms, OpenByBadReadingsAndCloseByGoodOnes) {
    const std::pair<const char*, const char*> cases[] = {{"", ""},
                                                         {"x", ""},
                                                         {"x..x..x", ""},
                                                         {"xx", "1-:0,1,"},
                                                         {"..x.x..", "4-:2,4,"},
                                                         {"..x.x...", "4-7:2,4,"},
                                                         {"xx..x...", "1-7:0,1,4,"},
                                                         {"xx...x....", "1-4:0,1,"},
                                                         {"xx...x.x...", "1-4:0,1, 7-10:5,7,"},
                                                         {"xxxxx", "1-:0,1,2,3,4,"}};
    for (const auto& [readings, expected] : cases) {
        EXPECT_EQ(alarmsText(readings), expected) << readings;
    }
    EXPECT_EQ(alarmsText("x.x.x", {3, 5, 1}), "4-:0,2,4,");
    EXPECT_EQ(alarmsText("x.x..x", {3, 5, 1}), "");
    EXPECT_EQ(alarmsText("x.x", {1, 1, 1}), "0-1:0, 2-:2,");
}

} // namespace
