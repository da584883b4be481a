// Features of profiles: steps, corners, welds, joints, level stretches.
#include "bindings.h"
#include "foundTuples.h"
#include "lists.h"

#include <KxMath/KxMetro.h>

namespace kxpython {

using KxMath::KxLine;
using KxMath::KxPointXY;
using KxMath::KxProfile;

namespace {

int positionOr(int position, const char* reason) {
    if (position < 0) {
        refuseResult(reason);
    }
    return position;
}

ApexesTuple apexesOf(const Profile& self, float step) {
    QList<KxLine> lines;
    KxProfile apexes;
    auto object = libraryObject(self);
    unlocked(self.points.size(), [&] { METRO_detectApexes(object, apexes, lines, step); });
    static PyObject* const type = namedTupleType("Apexes");
    return ApexesTuple(namedTuple(type, profileOf(apexes), std::vector<KxLine>(lines.begin(), lines.end())));
}

Profile lineSegment(const Profile& self, float x, float step, int misses, Bounds y, Bounds length) {
    KxProfile out;
    const bool isFound = found(
        self, [&](auto& p) { return p.calcLineSegment(x, step, misses, out, y.min, y.max, length.min, length.max); });
    if (!isFound) {
        refuseResult("no level stretch there within these bounds");
    }
    return profileOf(out);
}

void bindSearches(py::class_<Profile>& type) {
    type.def(
        "find_x",
        [](const Profile& self, float x, bool fromRight) {
            return positionOr(found(self, [=](auto& p) { return p.findNearestToX(x, fromRight); }), "no point there");
        },
        py::arg("x"), py::arg("from_right") = false,
        doc("The position of the first point at or beyond x. kx.NoResult where there is none.",
            {"KxProfile::findNearestToX"})
            .c_str());
    type.def(
        "index_of_x",
        [](const Profile& self, float x) {
            return positionOr(found(self, [=](auto& p) { return p.getIndexX(x); }), "no point has this x");
        },
        py::arg("x"), doc("kx.NoResult where there is none.", {"KxPointCloudXY::getIndexX"}).c_str());
    type.def(
        "index_of_y",
        [](const Profile& self, float y) {
            return positionOr(found(self, [=](auto& p) { return p.getIndexY(y); }), "no point has this y");
        },
        py::arg("y"), doc("kx.NoResult where there is none.", {"KxPointCloudXY::getIndexY"}).c_str());
    type.def("line_segment", &lineSegment, py::arg("x"), py::arg("max_step"), py::arg("max_misses"),
             py::arg("y") = py::none(), py::arg("length") = py::none(),
             doc("The level stretch around x; bounds are (low, high). kx.NoResult where there is none.",
                 {"KxProfile::calcLineSegment"})
                 .c_str());
}

void bindSteps(py::class_<Profile>& type) {
    type.def(
        "cut_point",
        [](const Profile& self, int window, float threshold) {
            return positionOr(found(self, [=](auto& p) { return p.calcCutPoint(window, threshold); }),
                              "no step of the level");
        },
        py::arg("window"), py::arg("threshold"),
        doc("The position of the first step. kx.NoResult where there is none.", {"KxProfile::calcCutPoint"}).c_str());
    type.def(
        "cut_points",
        [](const Profile& self, int window, float threshold) {
            KxProfile cuts;
            QList<int> sums; // off by one from the second on, so that they are not returned
            found(self, [&](auto& p) { return p.detectCutPoints(cuts, sums, window, threshold); });
            return profileOf(cuts);
        },
        py::arg("window"), py::arg("threshold"),
        doc("The points of all steps.", {"KxProfile::detectCutPoints"}).c_str());
    type.def("apexes", &apexesOf, py::arg("max_dy"),
             doc("The corners between straight parts as `points`, and the lines of these parts as `lines`: NaN where "
                 "neighbours "
                 "are parallel or a part is too short.",
                 {"METRO_detectApexes"})
                 .c_str());
    type.def(
        "weld",
        [](const Profile& self) {
            KxLine line;
            float x = kNaN;
            if (!found(self, [&](auto& p) { return p.detectWeld(line, &x); })) {
                refuseResult("fewer than 5 points belong to the top of a weld");
            }
            return pointOf(KxPointXY(x, line.b));
        },
        doc("The top of a weld: the middle of its x and the lowest y of it. kx.NoResult where there is none.",
            {"KxProfile::detectWeld"})
            .c_str());
    type.def(
        "joint",
        [](const Profile& self) {
            KxMath::KxPointCloud<KxPointXY> edges;
            if (!found(self, [&](auto& p) { return p.detectJoint(edges); })) {
                refuseResult("no joint between two plates");
            }
            static PyObject* const type = namedTupleType("Joint");
            return JointTuple(namedTuple(type, pointOf(edges.points[0]), pointOf(edges.points[1])));
        },
        doc("The edges of two plates at their joint, as `left` and `right`. kx.NoResult where there is none.",
            {"KxProfile::detectJoint"})
            .c_str());
}

void bindWheelQuestions(py::class_<Profile>& type) {
    type.def(
        "is_wheel",
        [](const Profile& self, KxLine level, int points, std::optional<KxLine> low) {
            return found(self, [&](auto& p) {
                return low ? METRO_isWheel(p, level, *low, points) : METRO_isWheel(p, level, points);
            });
        },
        py::arg("level"), py::arg("min_points"), py::arg("low") = py::none(),
        doc("Whether more than `min_points` points are below a line, and above the line `low` where it is given.",
            {"METRO_isWheel"})
            .c_str());
    type.def(
        "is_sound_tread",
        [](const Profile& self, float deviation, int points) {
            return found(self, [=](auto& p) { return METRO_detectWheelDefect(p, 20, deviation, points); });
        },
        py::arg("max_deviation"), py::arg("points_higher"),
        doc("Shift the middle of the tread to x = 0 before: a degree of 20 needs that.", {"METRO_detectWheelDefect"})
            .c_str());
}

} // namespace

void bindProfileFeatures(py::class_<Profile>& type) {
    bindSearches(type);
    bindSteps(type);
    bindWheelQuestions(type);
}

} // namespace kxpython
