// Results that are written by index into a profile that is too short for them.
#include "profileSupport.h"

#include <functional>

using namespace testing_support;

namespace {

struct Operation {
    const char* desc;
    std::function<void(KxProfile& in, KxProfile& out, int window)> call; ///< writes nothing for a window of 99
};

const std::vector<Operation> kOperations = {
    {"kihFilter20", [](auto& in, auto& out, int) { in.kihFilter20(out, 0.5f); }},
    {"medFilt", [](auto& in, auto& out, int w) { in.medFilt(out, w, 0); }},
    {"diffFilt", [](auto& in, auto& out, int w) { in.diffFilt(out, w); }},
    {"addLineSegments", [](auto& in, auto& out, int w) { in.addLineSegments(out, w, 0); }},
    {"addLineSegmentsWithMMWindow",
     [](auto& in, auto& out, int w) { in.addLineSegmentsWithMMWindow(out, static_cast<float>(w)); }},
    {"addParallelLine", [](auto& in, auto& out, int w) { in.addParallelLine(out, w, 0, 0.25f); }},
    {"calcDistance",
     [](auto& in, auto& out, int w) {
         KxProfile other = profileOf(in.points.mid(0, 24));
         std::reverse(other.points.begin(), other.points.end());
         in.calcDistance(other, out, w, 0, true);
     }},
};

Points wave(int count) {
    Points points;
    for (int i = 0; i < count; ++i) {
        points.append(at(i * 0.9, 3.0 * std::sin(i * 0.7)));
    }
    return points;
}

TEST(Completion, WhatIsMissingComesFromTheProfile) {
    for (const Operation& operation : kOperations) {
        SCOPED_TRACE(operation.desc);
        const Points points = wave(31);
        for (const qsizetype length : {0, 3}) {
            Points target = wave(50).mid(11, length); // points of its own
            KxProfile in = profileOf(points), out = profileOf(target), whole = profileOf(target + points.mid(length));
            operation.call(in, out, 5);
            operation.call(in, whole, 5);
            expectPoints(out, whole.points);
            EXPECT_GE(out.size(), 24) << length;
            expectPoints(in, points);
        }
    }
}

TEST(Completion, NoPointIsAddedWhereNoneIsWritten) {
    for (const Operation& operation : kOperations) {
        SCOPED_TRACE(operation.desc);
        for (const Points& target : {Points{}, wave(1)}) {
            KxProfile few, in = profileOf(wave(19)), out = profileOf(target);
            operation.call(few, out, 5);
            operation.call(few, out, 99);
            if (operation.desc != std::string("calcDistance")) { // it writes for every window
                operation.call(in, out, 99);
            }
            expectPoints(out, target);
        }
    }
}

} // namespace
