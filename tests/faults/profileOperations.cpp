#include "states.h"

namespace faults {

namespace {

template <typename Act>
Operation on(const char* name, Act act) {
    return operation<ProfileState>(name, act);
}

} // namespace

std::vector<Operation> profileOperations() {
    using S = ProfileState;
    return {
        on("ProfileCopy", [](S& s) { KxProfile(s.in).shift(1, 2, 0); }),
        on("ProfileAssign", [](S& s) { s.out = s.mixed; }),
        on("ProfileAppend", [](S& s) { s.in += s.mixed; }),
        on("ProfileFromBuffer", [](S& s) { s.in.copyFromXYPointsBuffer(s.values.data(), 60); }),
        on("ProfileShift", [](S& s) { s.in.shift(1.5f, -2.5f, 0); }),
        on("ProfileResize", [](S& s) { s.in.resize(1.5f, -2.5f, 0); }),
        on("ProfileSort", [](S& s) { s.mixed.sort(KxSortDescending, KxSortAscending); }),
        on("ProfileTrim", [](S& s) { s.in.trim(2, -1, 25, 3); }),
        on("ProfileToPolar", [](S& s) { s.in.toPolar(); }),
        on("ProfileToEvklid", [](S& s) { s.in.toEvklid(); }),
        on("ProfileRotate", [](S& s) { s.in.rotateFixed(12.5f, s.centre); }),
        on("ProfileRemoveDuplicates", [](S& s) { s.number = s.mixed.removeDuplicates(); }),
        on("ProfileRemoveIndeces", [](S& s) { s.number = s.in.removeIndeces(s.positions); }),
        on("ProfileSmoothInPlace", [](S& s) { s.in.kihFilter20(0.5f); }),
        on("ProfileSmooth", [](S& s) { s.in.kihFilter20(s.out, 0.5f); }),
        on("ProfileWindowFilter", [](S& s) { s.in.wndFilter(7); }),
        on("ProfileMedian", [](S& s) { s.mixed.medFilt(s.out, 5, 0); }),
        on("ProfileMedianInPlace", [](S& s) { s.mixed.medFilt(s.mixed, 5, 0); }),
        on("ProfileDifferenceFilter", [](S& s) { s.in.diffFilt(s.out, 9); }),
        on("ProfileSplashFilter", [](S& s) { s.in.splashFilter(s.in, 2.0f, 1.0f); }),
        on("ProfileSplashFilterPolar", [](S& s) { s.in.splashFilterPolar(s.mixed, 20.0f, 0.5f, 1.0f); }),
        on("ProfileWindowFilterPolar", [](S& s) { s.in.wndFilterPolar(s.in, 0.5f, 8, 3); }),
        on("ProfileRemoveNoise", [](S& s) { s.in.removeNoise(4, 1, 1.0f, 0); }),
        on("ProfileRemoveLevels",
           [](S& s) {
               s.in.removeHighLevel({0.01f, 5});
               s.mixed.removeLowLevel({0.01f, -1});
           }),
        on("ProfileRemoveLineParts", [](S& s) { s.in.removeLineParts(20, 0.99f, 2.0f, 3); }),
        on("ProfileFitPolynomial", [](S& s) { return s.in.polynomFit(5); }),
        on("ProfileDerivative", [](S& s) { s.out.points = s.in.derivative().points; }),
        on("ProfileZeros", [](S& s) { s.number = s.in.findZeros(s.values.data()); }),
        on("ProfileIntegral", [](S& s) { s.values[0] = s.mixed.integral(2, 70, false); }),
        on("ProfileInterpolate", [](S& s) { s.number = s.in.interpolate(0.05f, NAN, NAN, Akima); }),
        on("ProfileInterpolateTo",
           [](S& s) {
               KxInterpolant spline(s.mixed, Akima);
               s.number = spline.generatePointCloud(s.cloud, 0.1f, 1, 9);
           }),
        on("ProfileCutPoints", [](S& s) { s.number = s.mixed.detectCutPoints(s.out, s.indices, 6, 1.0f); }),
        on("ProfileWeldAndCircle",
           [](S& s) {
               KxCircle circle;
               s.number = s.in.detectWeld(s.line, &s.values[0]) + 2 * s.in.detectCircle(circle);
               s.values[1] = circle.radius;
           }),
        on("ProfileRectangle", [](S& s) { s.in.calcRect(s.cloud, &s.values[0], 5.0f); }),
        on("ProfileLineSegment", [](S& s) { s.number = s.in.calcLineSegment(5, 1.0f, 3, s.out, NAN, NAN, NAN, NAN); }),
        on("ProfileDistance", [](S& s) { s.in.calcDistance(s.mixed, s.out, 6, 0, true); }),
        on("ProfileAddLineSegments", [](S& s) { s.in.addLineSegments(s.out, 7, 0); }),
        on("ProfileAddLineSegmentsInPlace", [](S& s) { s.in.addLineSegments(s.in, 7, 0); }),
        on("ProfileAddLineSegmentsByLength", [](S& s) { s.number = s.mixed.addLineSegmentsWithMMWindow(s.out, 1.5f); }),
        on("ProfileAddParallelLine", [](S& s) { s.in.addParallelLine(s.out, 9, 0, 0.5f); }),
        on("ProfileTopView", [](S& s) { s.number = s.out.makeCloudTopView(s.space, 1.0f); }),
        on("ProfileJoint", [](S& s) { s.number = s.in.detectJoint(s.cloud); }),
    };
}

} // namespace faults
