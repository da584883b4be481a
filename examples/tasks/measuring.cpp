// Tasks of measuring with KxInspect. These need no header of KxMath.
#include <KxInspect/KxInspect.h>

#include "tasks.h"

#include <algorithm>
#include <fstream>
#include <string>

namespace {

// M1. Measure the pass of a train: distances and verdicts.
std::vector<std::string> passVerdicts(const std::string& left, const std::string& right, const std::string& settings) {
    KxInspect::PassOptions options;
    options.nominal = 1052.0f; // mm; without it the base distance of the settings
    options.tolerance = 2.5f;
    std::vector<std::string> verdicts;
    for (const auto& pair : measurePass({left, right}, KxInspect::readStationSettings(settings), options).pairs) {
        verdicts.push_back(pair.inTolerance ? *pair.inTolerance ? "ok" : "out" : pair.reason);
    }
    return verdicts;
}

// M2. Fill in the settings of a station without a file.
KxInspect::StationSettings station() {
    KxInspect::StationSettings settings;
    settings.baseDistance = 1000.0f; // mm
    for (const int number : {1, 2}) {
        KxInspect::SensorSettings sensor;
        sensor.number = number;
        sensor.serial = 10 + number; // as in the names of the recordings: north_11.bin
        sensor.level = KxInspect::Line{0.0f, 200.0f}; // points below it are wheel
        sensor.reference = KxInspect::Line{0.0f, 100.0f}; // where a wheel stands at the base distance
        sensor.detection.minPoints = 20;
        settings.sensors.push_back(sensor);
    }
    return settings;
}

// M3. Keep the result of a pass as JSON and read it again.
KxInspect::PassResult keptAndRead(const KxInspect::PassResult& pass) {
    const std::string json = toJson(pass, KxInspect::Pictures::Included); // so that its page can be drawn from it
    return KxInspect::passFromJson(json);
}

// M4. Count the points of a recording, and say where it is damaged.
std::string describe(const std::string& recording) {
    std::size_t points = 0;
    try {
        KxInspect::RecordingReader reader(recording);
        for (KxInspect::Record record; reader.next(record);) {
            points += record.profile.points.size();
        }
    } catch (const KxInspect::Error& error) {
        const std::string record = std::to_string(error.place().record.value_or(0)); // place() is empty without a place
        return error.kind() == KxInspect::ErrorKind::Damaged ? "damaged in record " + record : error.what();
    }
    return std::to_string(points) + " points";
}

// M5. Measure a wheel profile and judge it by limits.
KxInspect::WheelResult judgedWheel(const KxInspect::Profile& profile) {
    KxInspect::CrossSection wheel;
    wheel.profile = profile; // or wheel.file; x outwards from the flange back, y down, else set wheel.orientation
    KxInspect::WheelOptions options;
    options.limits.heightAt70.max = 30.0f; // mm
    return measureWheel(wheel, options);
}

// M6. The equivalent conicity at 3 mm of one wheel profile on one rail profile, on both sides.
std::optional<float> conicityAt3(const KxInspect::Profile& wheel, const KxInspect::Profile& rail) {
    KxInspect::ConicityInput input;
    for (const auto part : {KxInspect::Wheel1, KxInspect::Rail1, KxInspect::Wheel2, KxInspect::Rail2}) {
        input.sections[part].profile = isWheel(part) ? wheel : rail;
    }
    input.gauge = 1435.0f;
    input.backToBack = 1360.0f;
    return measureConicity(input).shownConicity; // absent with a reason in the result
}

// M7. Turn a scan into a height map and find its flat patches.
KxInspect::GridResult patchesOf(const std::string& scan) {
    KxInspect::GridOptions options;
    options.map.pitch = 0.5f; // mm, of rows and columns
    options.distance = 0.5f; // mm, of the profiles: those in the file are not used
    return KxInspect::measureGrid(scan, options);
}

// M8. Convert points between kinds of files.
void convert(const std::string& from, const std::string& to) {
    const KxInspect::PointSet points = KxInspect::readPoints(from, KxInspect::kindByFileName(from).value());
    KxInspect::writePoints(to, KxInspect::kindByFileName(to).value(), points);
}

// M9. Put the pose of a sensor into the text of a settings file.
std::string withPoseOf(const std::vector<KxInspect::NamedProfile>& shots, const std::string& settings) {
    KxInspect::CalibrationTask task;
    task.placement = 2;
    task.side = KxInspect::SensorSide::LargerY; // of the crests
    task.object = KxInspect::calibrationObjectFacing(*task.side);
    const KxInspect::CalibrationResult result = measurePoses(shots, task);
    return result.hasPose() ? KxInspect::withPose(settings, {1, result.average.pose, task.placement}) : settings;
}

KxInspect::Profile sampledProfile(int count, float step, float (*y)(float)) {
    KxInspect::Profile profile;
    for (int i = 0; i < count; ++i) {
        const float x = static_cast<float>(i) * step;
        profile.points.push_back({x, y(x)});
    }
    return profile;
}

void tryPass() {
    using Texts = std::vector<std::string>;
    expect(passVerdicts("north_11.bin", "south_12.bin", "station.ini") == Texts{"ok", "out"}, "M1");
    const KxInspect::PassResult pass = measurePass({"north_11.bin", "south_12.bin"}, station());
    expect(pass.distances() == 2 && isNear(pass.pairs[1].distance, 1055, 0.01), "M2");
    const KxInspect::PassResult read = keptAndRead(pass);
    expect(read.pairs.size() == 2 && read.pairs[0].distance == pass.pairs[0].distance, "M3");
    expect(describe("north_11.bin").ends_with(" points"), "M4: whole");
    std::ofstream("north_11.bin", std::ios::app) << "no record";
    expect(describe("north_11.bin") == "damaged in record 31", "M4: damaged");
}

void tryShapes() {
    const auto wheel = [](float x) { // a flange of 28 mm, a cone
        const float flange = x < 20 ? 28 - (20 - x) * (20 - x) * 0.04f : 28 - (x - 20) * 1.6f;
        return std::max(flange, (70 - x) * 0.1f);
    };
    const auto rail = [](float x) { return 80 - std::sqrt(80 * 80 - (x - 32) * (x - 32)); };
    const KxInspect::Profile section = sampledProfile(2700, 0.05f, wheel);
    const KxInspect::WheelResult judged = judgedWheel(section);
    expect(judged.verdict == KxInspect::WheelVerdict::Within && isNear(*judged.measures.heightAt70, 28, 0.2), "M5");
    expect(isNear(conicityAt3(section, sampledProfile(1281, 0.05f, rail)).value_or(0), 0.1, 0.005), "M6");
}

void tryFilesOfPoints() {
    KxInspect::PointSet scan;
    for (int row = 0; row < 40; ++row) {
        scan.profileStarts.push_back(scan.points.size());
        for (int i = 0; i < 60; ++i) {
            scan.points.push_back({static_cast<float>(i) * 0.5f, row < 20 ? 5.0f : 9.0f, static_cast<float>(row)});
        }
    }
    scan.hasZ = true;
    writePoints("steps.profiles", KxInspect::FileKind::Profiles, scan);
    const KxInspect::GridResult grid = patchesOf("steps.profiles");
    expect(grid.map.rows == 40 && grid.found.patches.size() == 2 && isNear(grid.found.patches[0].mean, 9, 0.01), "M7");
    convert("steps.profiles", "steps.ply");
    expect(readPoints("steps.ply", KxInspect::FileKind::Ply).points.size() == scan.points.size(), "M8");
    expect(withPoseOf({{"nothing", {}}}, "[SENSOR1]\n") == "[SENSOR1]\n", "M9: no pose leaves the settings");
}

} // namespace

void tryMeasuring() {
    tryPass();
    tryShapes();
    tryFilesOfPoints();
}
