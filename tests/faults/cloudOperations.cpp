#include "states.h"

namespace faults {

namespace {

template <typename Act>
Operation on(const char* name, Act act) {
    return operation<CloudState>(name, act);
}

} // namespace

std::vector<Operation> cloudOperations() {
    using S = CloudState;
    return {
        on("CloudAssign", [](S& s) { s.out = s.in; }),
        on("CloudAppendToItself", [](S& s) { s.in += s.in; }),
        on("CloudShift", [](S& s) { s.in.shift(1.5f, 0, -2.5f); }),
        on("CloudRotate", [](S& s) { s.in.rotate(5, 10, 15); }),
        on("CloudSort", [](S& s) { s.in.sort(KxSortAscending, KxSortDescending); }),
        on("CloudSortByXAndZ", [](S& s) { s.in.sort(KxSortDescending, KxSortAscending); }),
        on("CloudSortColours", [](S& s) { s.colours.sort(KxSortAscending, KxSortAscending); }),
        on("CloudSortInPlane", [](S& s) { s.plane.sort(KxSortAscending, KxSortNone); }),
        on("CloudIndex", [](S& s) { s.in.buildZIndex(); }),
        on("CloudRangeIndices", [](S& s) { s.number = s.in.getRangeIndeces(s.indices, 2, 20, NAN, NAN, NAN, NAN); }),
        on("CloudBallIndices", [](S& s) { s.number = s.in.getRangeIndeces(s.indices, KxPointXYZ(9, 1, 1), 14); }),
        on("CloudRemoveIndices", [](S& s) { s.number = s.in.removeIndeces(s.indices); }),
        on("CloudTrim", [](S& s) { s.in.trim(2, 20, -2, 4, NAN, NAN); }),
        on("CloudExtract", [](S& s) { s.in.extract(s.out, 2, 20, -2, 4, NAN, NAN, true); }),
        on("CloudSection", [](S& s) { s.number = s.in.calcSection(s.out, 2, 0.6f); }),
        on("CloudRemoveByLevel", [](S& s) { s.number = s.in.removePointsByYLevel(1, true); }),
        on("CloudCubicFilter", [](S& s) { s.number = s.in.cubicFilter(2, 4); }),
        on("CloudCubicFilter2", [](S& s) { s.number = s.in.cubicFilter2(2, 1, 4, false); }),
        on("CloudSphericalFilter", [](S& s) { s.number = s.in.sphericalFilter2(2, 1, 4); }),
        on("CloudClearEdgeEffect", [](S& s) { s.in.clearEdgeEffect(0.5f); }),
        on("CloudInsulatingTape", [](S& s) { s.number = s.in.extractInsulatingTape(s.out, 1, 0.1f, 4); }),
        on("CloudHistogram", [](S& s) { s.number = s.histogram.calcFromPointCloud(s.in, 0.5f); }),
    };
}

} // namespace faults
