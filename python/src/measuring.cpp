// Measuring from files and profiles to results, which Python reads as JSON: the same text as the commands write.
#include "bindings.h"
#include "errors.h"
#include "headerTexts.h"
#include "progress.h"
#include "results.h"

#include <KxInspect/Calibration.h>
#include <KxInspect/Conicity.h>
#include <KxInspect/KxMathTypes.h>
#include <KxInspect/Train.h>
#include <KxInspect/Wheel.h>

#include "report/calibrate/calibrationReport.h"
#include "report/conicity/conicityReport.h"
#include "report/train/passReport.h"
#include "report/wheel/wheelReport.h"

#include <KxMath/KxMathVersion.h>

#include <pybind11/stl.h>

namespace kxpython {

namespace {

using KxInspect::CalibrationResult;
using KxInspect::ConicityResult;
using KxInspect::PassResult;
using KxInspect::WheelResults;

using Text = std::optional<std::string>;
using Number = std::optional<float>;

/// A file, or a profile in memory.
KxInspect::CrossSection sectionOf(const py::object& source) {
    KxInspect::CrossSection section;
    if (py::isinstance<Profile>(source)) {
        section.profile = KxInspect::fromKxProfile(libraryObject(source.cast<const Profile&>()));
    } else {
        section.file = source.cast<Path>().bytes;
    }
    return section;
}

std::vector<std::string> bytesOf(const std::vector<Path>& paths) {
    std::vector<std::string> names;
    names.reserve(paths.size());
    for (const Path& path : paths) {
        names.push_back(path.bytes);
    }
    return names;
}

PassResult measurePass(const std::vector<Path>& recordings, const Path& settings, const std::optional<Path>& defects,
                       int mode, Number nominal, float tolerance, const std::vector<int>& shown,
                       const std::optional<Path>& limits, const KxInspect::PassLabels& labels,
                       const std::optional<Path>& consist, const Text& order, const py::object& progress) {
    const KxInspect::Progress report = progressOf(progress);
    const py::gil_scoped_release release;
    KxInspect::PassOptions options;
    options.mode = mode;
    options.nominal = nominal;
    options.tolerance = tolerance;
    options.shownPairs = shown;
    options.areFindingsShown = !shown.empty();
    options.labels = labels;
    if (consist) {
        options.consist = KxInspect::readConsist(consist->bytes);
    }
    if (order) {
        options.consistOrder = *order == "turned" ? KxInspect::ConsistOrder::Turned : KxInspect::ConsistOrder::Listed;
    }
    if (defects) {
        options.defects = KxInspect::readDefectSettings(defects->bytes);
    }
    if (limits) {
        options.limits = KxInspect::readLimits(limits->bytes);
    }
    const KxInspect::StationSettings station = KxInspect::readStationSettings(settings.bytes);
    return KxInspect::measurePass(recordings.size() == 1 ? KxInspect::recordingsIn(recordings[0].bytes, station)
                                                         : bytesOf(recordings),
                                  station, options, report);
}

void bindPass(py::module_& module) {
    bindResult<PassResult>(module, "_PassResult", &KxInspect::passFromJson, &kxreport::passReport);
    module.def(
        "_measure_pass",
        [](const std::vector<Path>& recordings, const Path& settings, const std::optional<Path>& defects, int mode,
           Number nominal, float tolerance, const std::vector<int>& shown, const std::optional<Path>& limits,
           const Text& station, const Text& line, const Text& track, const Text& direction, const Text& time,
           Number speed, const std::optional<Path>& consist, const Text& order, const py::object& progress) {
            return measurePass(recordings, settings, defects, mode, nominal, tolerance, shown, limits,
                               {station, line, track, direction, time, speed}, consist, order, progress);
        },
        py::arg("recordings"), py::arg("settings"), py::arg("defects"), py::arg("mode"), py::arg("nominal"),
        py::arg("tolerance"), py::arg("shown_pairs"), py::arg("limits"), py::arg("station"), py::arg("line"),
        py::arg("track"), py::arg("direction"), py::arg("time"), py::arg("speed"), py::arg("consist"),
        py::arg("consist_order"), py::arg("progress"),
        doc("Measures a pass.", {"measurePass", "readStationSettings", "readDefectSettings", "readConsist",
                                 "readLimits", "recordingsIn", "passFromJson"})
            .c_str());
}

/// The limits by the keys of the measures.
KxInspect::WheelLimits limitsOf(const std::map<std::string, std::pair<Number, Number>>& limits) {
    KxInspect::WheelLimits result;
    for (const auto& entry : limits) { // clang 14 does not let the search below use the parts of a structured binding
        const auto measure = std::ranges::find_if(
            KxInspect::kWheelMeasures, [&](const KxInspect::WheelMeasure& m) { return m.key == entry.first; });
        if (measure == KxInspect::kWheelMeasures.end()) {
            throw py::value_error("no measure of wheels is called '" + entry.first + "'");
        }
        result.*(measure->limit) = {entry.second.first, entry.second.second};
    }
    return result;
}

WheelResults measureWheels(const py::list& wheels, Number flangeBack, float spacing,
                           const std::map<std::string, std::pair<Number, Number>>& limits, const py::object& progress) {
    KxInspect::WheelOptions options;
    options.flangeBack = flangeBack;
    options.spacing = spacing;
    options.limits = limitsOf(limits);
    std::vector<KxInspect::CrossSection> sections;
    for (const py::handle wheel : wheels) {
        sections.push_back(sectionOf(py::reinterpret_borrow<py::object>(wheel)));
    }
    WheelResults results;
    {
        const KxInspect::Progress report = progressOf(progress);
        const py::gil_scoped_release release;
        results = KxInspect::measureWheels(sections, options, report);
    }
    for (const KxInspect::WheelResult& wheel : results.wheels) {
        warnOfReading(wheel.file, wheel.reading);
    }
    return results;
}

WheelResults measureRim(const Cloud& rim, const std::array<float, 2>& centre,
                        const std::map<std::string, std::pair<Number, Number>>& limits) {
    KxInspect::WheelOptions options;
    options.centre = {centre[0], centre[1]};
    options.limits = limitsOf(limits);
    std::vector<KxInspect::Point3> points;
    points.reserve(std::size_t(rim.points.size()));
    for (const KxMath::KxPointXYZ& p : rim.points) {
        points.push_back({p.x, p.y, p.z});
    }
    const py::gil_scoped_release release;
    WheelResults results;
    results.wheels.push_back(KxInspect::measureRim(points, {}, options));
    results.limits = options.limits;
    results.version = KxMath_GetVersionString();
    return results;
}

void bindWheels(py::module_& module) {
    bindResult<WheelResults>(module, "_WheelResults", &KxInspect::wheelsFromJson, &kxreport::wheelReport);
    module.def("_measure_wheels", &measureWheels, py::arg("wheels"), py::arg("flange_back"), py::arg("spacing"),
               py::arg("limits"), py::arg("progress"),
               doc("Measures wheel profiles.", {"measureWheels", "measureWheel", "wheelsFromJson"}).c_str());
    module.def("_measure_rim", &measureRim, py::arg("rim"), py::arg("centre"), py::arg("limits"),
               doc("Measures the section of a rim in space.", {"measureRim"}).c_str());
}

ConicityResult measureConicity(const std::array<py::object, 4>& sections, float gauge, float backToBack, float depth,
                               float radius1, float radius2, float amplitude, Number smoothing,
                               const std::array<float, 3>& gaugeError) {
    KxInspect::ConicityInput input;
    for (std::size_t i = 0; i < sections.size(); ++i) {
        input.sections[i] = sectionOf(sections[i]);
    }
    input.gauge = gauge;
    input.backToBack = backToBack;
    input.gaugeDepth = depth;
    input.radius1 = radius1;
    input.radius2 = radius2;
    input.shownAmplitude = amplitude;
    input.smoothing = smoothing;
    input.gaugeError = {gaugeError[0], gaugeError[1], gaugeError[2]};
    ConicityResult result;
    {
        const py::gil_scoped_release release;
        result = KxInspect::measureConicity(input);
    }
    for (const KxInspect::PlacedSection& section : result.sections) {
        warnOfReading(section.file, section.reading);
    }
    return result;
}

void bindConicity(py::module_& module) {
    bindResult<ConicityResult>(module, "_ConicityResult", &KxInspect::conicityFromJson, &kxreport::conicityReport)
        .def_property_readonly("curve",
                               [](const ConicityResult& self) {
                                   Profile curve;
                                   for (const KxInspect::Point& p : self.conicity) {
                                       curve.points.append({p.x, p.y});
                                   }
                                   return curve;
                               })
        .def(
            "at",
            [](const ConicityResult& self, float amplitude) {
                const Number conicity = KxInspect::conicityAt(self, amplitude);
                if (!conicity) {
                    refuseResult(KxInspect::reasonWithoutConicity(self, amplitude));
                }
                return *conicity;
            },
            py::arg("amplitude"),
            doc("The conicity at an amplitude. kx.NoResult where there is none.",
                {"conicityAt", "reasonWithoutConicity"})
                .c_str())
        .def(
            "interval_at",
            [](const ConicityResult& self, float amplitude) {
                const KxInspect::Interval interval = KxInspect::intervalAt(self, amplitude);
                return py::make_tuple(interval.low, interval.high);
            },
            py::arg("amplitude"), doc("Its 95 % interval, NaN where it is unknown.", {"intervalAt"}).c_str());
    module.def("_measure_conicity", &measureConicity, py::arg("sections"), py::arg("gauge"), py::arg("back_to_back"),
               py::arg("gauge_depth"), py::arg("radius1"), py::arg("radius2"), py::arg("amplitude"),
               py::arg("smoothing"), py::arg("gauge_error"),
               doc("Wheel 1, rail 1, wheel 2, rail 2.", {"measureConicity", "conicityFromJson"}).c_str());
}

CalibrationResult measurePoses(const std::vector<std::tuple<std::string, Profile, std::array<double, 3>>>& shots,
                               int placement, const Text& side, Number sensorY, const Text& obliqueCrest,
                               const std::map<std::string, double>& object, const py::object& progress) {
    KxInspect::CalibrationTask task;
    task.placement = placement;
    task.sensorY = sensorY;
    if (obliqueCrest) {
        task.obliqueCrest = *obliqueCrest == "above" ? KxInspect::ObliqueCrest::Above : KxInspect::ObliqueCrest::Below;
    }
    if (side) {
        task.side = *side == "larger-y" ? KxInspect::SensorSide::LargerY : KxInspect::SensorSide::SmallerY;
    }
    task.object =
        task.side ? KxInspect::calibrationObjectFacing(*task.side) : KxInspect::calibrationObjectFor(placement);
    const std::map<std::string, double*> fields = {{"pitch", &task.object.pitch},
                                                   {"slope", &task.object.slope},
                                                   {"obliqueness", &task.object.obliqueness},
                                                   {"crest_y", &task.object.crestY}};
    for (const auto& [name, value] : object) {
        *fields.at(name) = value;
    }
    std::vector<KxInspect::NamedProfile> profiles;
    profiles.reserve(shots.size());
    for (const auto& [name, profile, moved] : shots) {
        profiles.push_back({name, KxInspect::fromKxProfile(libraryObject(profile)), moved});
    }
    const KxInspect::Progress report = progressOf(progress);
    const py::gil_scoped_release release;
    KxInspect::CalibrationTerms terms; // the names of the arguments in Python
    terms.sensorY = "sensor_y";
    terms.crestY = "crest_y";
    terms.obliqueCrest = "oblique_crest";
    return KxInspect::measurePoses(profiles, task, report, terms);
}

/// The points of a profile in the track frame, by the values of a pose under their names in results.
Cloud toTrack(const Profile& profile, const std::map<std::string, double>& values) {
    KxInspect::SensorPose pose;
    for (const KxInspect::PoseField& field : KxInspect::kPoseFields) {
        pose.*field.value = values.at(field.name);
    }
    Cloud cloud;
    for (const KxInspect::Point3& p : KxInspect::toTrack(KxInspect::fromKxProfile(libraryObject(profile)), pose)) {
        cloud.points.append({p.x, p.y, p.z});
    }
    return cloud;
}

/// The pose of a result as keys of sensor n.
KxInspect::PoseKeys keysOf(const CalibrationResult& result, int sensor) {
    if (!result.hasPose()) {
        refuseResult(reasonWithoutPose(result));
    }
    return KxInspect::poseKeysOf(result.average, result.task.placement, sensor);
}

void bindPoses(py::class_<CalibrationResult>& type) {
    type.def(
            "with_settings",
            [](const CalibrationResult& self, const std::string& text, int sensor) {
                return KxInspect::withPose(text, keysOf(self, sensor));
            },
            py::arg("text"), py::arg("sensor"), doc("The text of settings with the pose.", {"withPose"}).c_str())
        .def(
            "store",
            [](const CalibrationResult& self, const Path& path, int sensor, const py::object& progress) {
                const KxInspect::PoseKeys keys = keysOf(self, sensor);
                const KxInspect::Progress report = progressOf(progress);
                const py::gil_scoped_release release;
                KxInspect::storePose(path.bytes, keys, report);
            },
            py::arg("path"), py::arg("sensor"), py::arg("progress"),
            doc("Stores the pose in a file of settings.", {"storePose", "readPoseSettings", "poseKeysOf"}).c_str());
}

void bindCalibration(py::module_& module) {
    module.def(
        "_ridges",
        [](double pitch, double obliqueness) {
            KxInspect::CalibrationObject object;
            object.pitch = pitch;
            object.obliqueness = obliqueness;
            std::vector<std::pair<double, double>> ridges;
            for (const KxInspect::CalibrationRidge& ridge : KxInspect::ridgesOf(object)) {
                ridges.emplace_back(ridge.crest, ridge.obliqueness);
            }
            return ridges;
        },
        py::arg("pitch"), py::arg("obliqueness"), doc("The ridges of the object.", {"ridgesOf"}).c_str());
    module.def("_to_track", &toTrack, py::arg("profile"), py::arg("pose"),
               doc("The points in the track frame.", {"toTrack"}).c_str());
    auto type = bindResult<CalibrationResult>(module, "_CalibrationResult", &KxInspect::calibrationFromJson,
                                              &kxreport::calibrationReport);
    bindPoses(type);
    type.def_property_readonly(
        "reason", [](const CalibrationResult& self) { return reasonWithoutPose(self); },
        doc("", {"reasonWithoutPose"}).c_str());
    module.def("_measure_poses", &measurePoses, py::arg("shots"), py::arg("placement"), py::arg("side"),
               py::arg("sensor_y"), py::arg("oblique_crest"), py::arg("object"), py::arg("progress"),
               doc("The pose of a sensor.", {"measurePoses", "measurePose", "calibrationObjectFor",
                                             "calibrationObjectFacing", "calibrationFromJson"})
                   .c_str());
}

} // namespace

void bindMeasuring(py::module_& module) {
    bindPass(module);
    bindWheels(module);
    bindConicity(module);
    bindCalibration(module);
}

} // namespace kxpython
