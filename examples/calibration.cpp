// The pose of a sensor from files with profiles of the calibration object. Shown in docs/calibration.md.
#include <KxInspect/KxInspect.h>

#include <iostream>

/// Prints the pose of a sensor with placement code 2. Returns false when the profiles give none.
bool printPose(const std::vector<std::string>& files) {
    KxInspect::CalibrationTask task;
    task.placement = 2;
    task.side = KxInspect::SensorSide::LargerY; // of the crests; a profile does not show it
    task.obliqueCrest = KxInspect::ObliqueCrest::Above; // as seen; confirms the placement
    task.object = KxInspect::calibrationObjectFacing(*task.side); // or its measures: pitch, slope, obliqueness, crestY
    std::vector<KxInspect::NamedProfile> profiles;
    profiles.reserve(files.size());
    for (const std::string& file : files) {
        profiles.push_back({file, KxInspect::readProfile(file)});
    }
    const KxInspect::CalibrationResult result = KxInspect::measurePoses(profiles, task);
    for (const KxInspect::ProfilePose& profile : result.profiles) {
        std::cout << profile.name << ": " << (profile.hasPose() ? "has a pose" : profile.fault) << '\n';
    }
    if (!result.hasPose()) {
        std::cout << "no pose " << result.average.fault << '\n';
        return false;
    }
    for (const KxInspect::PoseField& field : KxInspect::kPoseFields) {
        std::cout << field.name << " = " << result.average.pose.*field.value << " +- "
                  << result.average.uncertainty.*field.value << '\n';
    }
    return true;
}

int main(int argc, char** argv) {
    try {
        return printPose({argv + 1, argv + argc}) ? 0 : 1;
    } catch (const KxInspect::Error& error) {
        std::cerr << error.what() << '\n';
        return 2;
    }
}
