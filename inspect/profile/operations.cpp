// The operations of a chain: their descriptions and what they call.
#include "inspect/profile/operations.h"

#include "inspect/profile/checkedCalls.h"

#include <algorithm>
#include <limits>

namespace KxInspect::detail {

namespace {

using KxMath::KxProfile;
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr double kFarthest = 1e6; // mm
constexpr double kMostPoints = 65535; // of a profile in the files of sensors

// Descriptions of arguments

OperationArgument place(const char* name, const char* unit = "mm") {
    return {name, unit, false, -kFarthest, kFarthest, false, false, {}};
}

/// A bound that may be missing.
OperationArgument bound(const char* name, bool isOptional = false) {
    OperationArgument argument = place(name);
    argument.mayBeMissing = true;
    if (isOptional) {
        argument.byDefault = kNone;
    }
    return argument;
}

OperationArgument size(const char* name, const char* unit = "mm", bool mayBe0 = false) {
    return {name, unit, false, 0.0, kFarthest, !mayBe0, false, {}};
}

OperationArgument angle(const char* name) {
    constexpr double kTurn = 360.0;
    return {name, "degrees", false, -kTurn, kTurn, false, false, {}};
}

OperationArgument count(const char* name, const char* unit, double min, double max = kMostPoints) {
    return {name, unit, true, min, max, false, false, {}};
}

OperationArgument window(double min = 1) {
    return count("window", "points", min);
}

std::vector<Operation> ofPlaces() {
    return {
        {{"shift", "Moves the points by dx and dy.", {place("dx"), place("dy")}},
         [](ChainState& s, const Arguments& a) {
             return done(s, [&](KxProfile& p) { p.shift(real(a, 0), real(a, 1), 0.0f); });
         }},
        {{"resize", "Scales x and y about the origin; -1 mirrors.", {place("sx", ""), place("sy", "")}}, scale},
        {{"sort",
          "Orders the points by x: 1 rising, 2 falling; no point moves across one without x.",
          {{"order", "", true, 1, 2, false, false, 1}}},
         [](ChainState& s, const Arguments& a) {
             const auto order = static_cast<KxMath::KxSortOrder>(whole(a, 0));
             return done(s, [&](KxProfile& p) { p.sort(order, KxMath::KxSortNone); });
         }},
        {{"trim",
          "Keeps the points inside a box, bounds included; missing coordinates stay.",
          {bound("minX"), bound("minY"), bound("maxX"), bound("maxY")}},
         [](ChainState& s, const Arguments& a) {
             return done(s, [&](KxProfile& p) { p.trim(real(a, 0), real(a, 1), real(a, 2), real(a, 3)); });
         }},
        {{"trimLower", "Removes the points with y below the level.", {place("level")}},
         [](ChainState& s, const Arguments& a) { return done(s, [&](KxProfile& p) { p.trimLower(real(a, 0)); }); }},
        {{"trimUpper", "Removes the points with y above the level.", {place("level")}},
         [](ChainState& s, const Arguments& a) { return done(s, [&](KxProfile& p) { p.trimUpper(real(a, 0)); }); }},
        {{"trimY", "Keeps the points with y from minY to maxY; a missing y stays.", {bound("minY"), bound("maxY")}},
         [](ChainState& s, const Arguments& a) {
             return done(s, [&](KxProfile& p) { p.trimY(real(a, 0), real(a, 1)); });
         }},
        {{"trimX", "Keeps the points with x from minX to maxX; a missing x stays.", {bound("minX"), bound("maxX")}},
         [](ChainState& s, const Arguments& a) {
             return done(s, [&](KxProfile& p) { p.trimX(real(a, 0), real(a, 1)); });
         }},
        {{"toPolar", "Turns x and y into radius and angle (degrees, 0 to 360) about the origin.", {}},
         [](ChainState& s, const Arguments&) { return changeForm(s, Form::Cartesian, Form::Polar); }},
        {{"toEvklid", "Turns radius and angle back into x and y.", {}},
         [](ChainState& s, const Arguments&) { return changeForm(s, Form::Polar, Form::Cartesian); }},
        {{"rotatePolar", "Adds to the angles of a profile in polar form.", {angle("angle")}},
         [](ChainState& s, const Arguments& a) { return turn(s, Form::Polar, &KxProfile::rotatePolar, real(a, 0)); }},
        {{"rotateEvklid", "Rotates about the origin, from x towards y.", {angle("angle")}},
         [](ChainState& s, const Arguments& a) {
             return turn(s, Form::Cartesian, &KxProfile::rotateEvklid, real(a, 0));
         }},
        {{"rotateFixed", "Rotates about the point x, y, from x towards y.", {angle("angle"), place("x"), place("y")}},
         turnAbout},
        {{"removeDuplicates", "Removes points whose x an earlier point has, whatever their y.", {}},
         [](ChainState& s, const Arguments&) { return done(s, [](KxProfile& p) { p.removeDuplicates(); }); }},
    };
}

OperationArgument maxStepOfFilter() {
    OperationArgument argument = size("maxStep");
    argument.mayBeMissing = true;
    argument.byDefault = kNone;
    return argument;
}

std::vector<Operation> ofFilters() {
    constexpr qsizetype kTaps = 20;
    constexpr qsizetype kSpike = 6;
    return {
        {{"kihFilter20",
          "Smooths y over 20 points; the curve lags by 10 points, the first 20 stay, and so does a point more than "
          "maxStep in x behind the one before it.",
          {maxStepOfFilter()}},
         [](ChainState& s, const Arguments& a) {
             return withPoints(s, kTaps, [&](KxProfile& p) { p.kihFilter20(real(a, 0)); });
         }},
        {{"wndFilter", "Moving mean of y, written back before the next window; the window counts points.", {window()}},
         [](ChainState& s, const Arguments& a) {
             return withPoints(s, whole(a, 0) + 1, [&](KxProfile& p) { p.wndFilter(whole(a, 0)); });
         }},
        {{"medFilt",
          "Takes y of the middle of each window ordered by x: with rising x a shift by half a window, no median of y; "
          "the last window of points stays.",
          {window()}},
         [](ChainState& s, const Arguments& a) {
             return withPoints(s, whole(a, 0) + 1, [&](KxProfile& p) { p.medFilt(p, whole(a, 0), 0); });
         }},
        {{"diffFilt",
          "Turns y into the slope between both halves of an even window of points; the last window of points but one "
          "keeps its y.",
          {window(2)}},
         [](ChainState& s, const Arguments& a) { return slopes(s, whole(a, 0)); }},
        {{"splashFilter",
          "Removes spikes: from a second difference of y above the threshold to the next one within maxWidth; the two "
          "points before a spike go with it.",
          {size("threshold", "mm", true), size("maxWidth")}},
         [](ChainState& s, const Arguments& a) {
             return withPoints(s, kSpike, [&](KxProfile& p) { p.splashFilter(p, real(a, 0), real(a, 1)); });
         }},
        {{"splashFilterPolar",
          "splashFilter on the radius about a circle through the points; orders them by angle; maxWidth is an arc at "
          "the radius.",
          {size("radius"), size("threshold", "mm", true), size("maxWidth")}},
         [](ChainState& s, const Arguments& a) {
             return aboutCircle(s, kSpike,
                                [&](KxProfile& p) { p.splashFilterPolar(p, real(a, 0), real(a, 1), real(a, 2)); });
         }},
        {{"wndFilterPolar",
          "Means of the radius about a circle through the points, over windows of points that go around; radii further "
          "than maxDeviation from the mean are replaced.",
          {size("maxDeviation"), window(), count("offset", "points", 0)}},
         [](ChainState& s, const Arguments& a) {
             return aboutCircle(s, std::max(whole(a, 1), whole(a, 2)),
                                [&](KxProfile& p) { p.wndFilterPolar(p, real(a, 0), whole(a, 1), whole(a, 2)); });
         }},
        {{"removeNoise",
          "Removes windows of points in which more than maxJumps neighbours differ in y by more than the threshold; "
          "the last window always goes.",
          {window(), count("maxJumps", "jumps", 0), size("threshold", "mm", true)}},
         [](ChainState& s, const Arguments& a) {
             return withPoints(s, whole(a, 0),
                               [&](KxProfile& p) { p.removeNoise(whole(a, 0), whole(a, 1), real(a, 2), 0.0f); });
         }},
        {{"removeHighLevel",
          "Keeps the points below the line y = slope x + intercept; missing points go.",
          {place("slope", ""), place("intercept")}},
         [](ChainState& s, const Arguments& a) { return removedParts(s, real(a, 0), real(a, 1), true); }},
        {{"removeLowLevel",
          "Keeps the points above the line y = slope x + intercept; missing points go.",
          {place("slope", ""), place("intercept")}},
         [](ChainState& s, const Arguments& a) { return removedParts(s, real(a, 0), real(a, 1), false); }},
        {{"removeLineParts",
          "Sorts by x, cuts at gaps above maxGap into at most maxParts, and keeps the parts of more than minPoints "
          "with "
          "a correlation of x and y below maxCorrelation; the last point goes.",
          {count("maxParts", "parts", 2),
           {"maxCorrelation", "", false, 0.0, 1.0, true, false, {}},
           size("maxGap"),
           count("minPoints", "points", 0)}},
         [](ChainState& s, const Arguments& a) {
             return withPoints(
                 s, 2, [&](KxProfile& p) { p.removeLineParts(whole(a, 0), real(a, 1), real(a, 2), whole(a, 3)); });
         }},
    };
}

std::vector<Operation> ofCurves() {
    constexpr double kMostPolynomial = 50;
    return {
        {{"polynomFit",
          "Replaces y by the least-squares polynomial through all points.",
          {count("degree", "", 0, kMostPolynomial)}},
         [](ChainState& s, const Arguments& a) { return smoothOnPolynomial(s, whole(a, 0)); }},
        {{"derivative", "Slopes between neighbours: x becomes the slope, y the x of the earlier neighbour.", {}},
         [](ChainState& s, const Arguments&) { return derive(s); }},
        {{"interpolate",
          "Resamples on an Akima spline at each step between from and to; sorts by x, of equal x the first stays.",
          {size("step"), bound("from", true), bound("to", true)}},
         resample},
        {{"calcLineSegment",
          "Keeps the level run of points around x: neighbours differ by at most maxStep in y, up to maxMisses points "
          "in "
          "a row may not; fails beyond the bounds of y at x and of the length.",
          {place("x"), size("maxStep", "mm", true), count("maxMisses", "points", 0), bound("minY", true),
           bound("maxY", true), bound("minLength", true), bound("maxLength", true)}},
         levelRun},
        {{"addLineSegments",
          "Replaces each block of window points by its chord; the rest behind the last block stays.",
          {window(2)}},
         [](ChainState& s, const Arguments& a) {
             return withPoints(s, whole(a, 0), [&](KxProfile& p) { p.addLineSegments(p, whole(a, 0), 0); });
         }},
        {{"addLineSegmentsWithMMWindow", "The same with blocks that are windowMM wide in x.", {size("windowMM")}},
         [](ChainState& s, const Arguments& a) {
             const int written = s.profile.addLineSegmentsWithMMWindow(s.profile, real(a, 0));
             return written > 0 ? QString() : QStringLiteral("finds no points to join");
         }},
        {{"addParallelLine",
          "Replaces each block of window points by a line of that slope through its middle point; the rest behind the "
          "last block stays.",
          {window(2), place("slope", "")}},
         [](ChainState& s, const Arguments& a) {
             return withPoints(s, whole(a, 0), [&](KxProfile& p) { p.addParallelLine(p, whole(a, 0), 0, real(a, 1)); });
         }},
    };
}

} // namespace

std::vector<Operation> allOperations() {
    std::vector<Operation> all = ofPlaces();
    for (const std::vector<Operation>& more : {ofFilters(), ofCurves()}) {
        all.insert(all.end(), more.begin(), more.end());
    }
    return all;
}

} // namespace KxInspect::detail
