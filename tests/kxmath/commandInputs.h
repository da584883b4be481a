// Small inputs for all commands in one folder.
#pragma once

#include "kxmath/toolRun.h"
#include "shapes/crossSections.h"
#include "shapes/patchScan.h"
#include "simulator/wheelContour.h"

#include <cmath>

namespace tool_test {

class CommandInputs : public ToolTest {
protected:
    CommandInputs() : ToolTest("") {
        KxProfile wheel, cone, rail;
        wheel.points =
            pointsFor(2601, [](int i) { return at(i * 0.05, kxsim::s1002Height(i * 0.05 - kxsim::kTapeCircle)); });
        kxtool::appendConicalWheel(cone, 0.1f);
        kxtool::appendRoundRail(rail, 80.0f);
        wheel.writeToCSVFile(path("wheel.csv"));
        cone.writeToCSVFile(path("cone.csv"));
        rail.writeToCSVFile(path("rail.csv"));
        KxPointCloud<KxPointXY> flat;
        KxPointCloud<KxPointXYZ> spatial;
        flat.points = pointsFor(300, [](int i) { return at(0.5 * i, 0.25); });
        spatial.points = pointsFor(300, [](int i) { return at(0.5 * i, 0.25, std::floor(i / 100.0)); });
        flat.writeToFile(path("flat.bin"));
        spatial.writeToFile(path("spatial.bin"));
        KxProfileZSet set;
        const kxtool::Patch patch{10, 49, 10, 49, 12.0f};
        kxtool::appendPatchScan(set, {60, 61, 0.5f, -40.0f, -80.0f, 0.03f, 7}, {&patch, 1});
        set.writeToFile(path("scan.bin"));
        simulate("shots", {"--calibration", "2"});
        simulate("pass", {"--cars", "1", "--rate", "500"});
    }

    /// A line for the shell: what goes before, the program, and the arguments of it.
    static QString lineFor(const QString& arguments, const QString& before = {}) {
        return QString(before + "\"$KXMATH\" " + arguments)
            .replace("CONICITY", "--wheel1 cone.csv --wheel2 cone.csv --rail1 rail.csv --rail2 rail.csv --gauge 1442 "
                                 "--back-to-back 1360 --gauge-depth 0")
            .replace("TRAIN", "pass/train_101.bin pass/train_102.bin --settings pass/settings.ini --out passes");
    }
};

} // namespace tool_test
