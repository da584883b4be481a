// Settings of stations: what they may hold, new ones, checks, and finding them from passes with known distances.
#include "bindings.h"
#include "fitState.h"
#include "headerTexts.h"
#include "progress.h"

#include "report/settings/fitReport.h"

#include <KxInspect/KxMathTypes.h>
#include <KxInspect/Limits.h>
#include <KxInspect/StationSetup.h>

#include <pybind11/stl.h>

namespace kxpython {

namespace {

using KxInspect::SettingsKind;
using KxInspect::StationFit;

SettingsKind kindOf(const std::string& name) {
    if (name != "station" && name != "defects") {
        throw py::value_error("settings are of the kind 'station' or 'defects', got '" + name + "'");
    }
    return name == "station" ? SettingsKind::Station : SettingsKind::Defects;
}

const char* wordOf(KxInspect::MeasureOf of) {
    switch (of) {
    case KxInspect::MeasureOf::Wheel:
        return "wheel";
    case KxInspect::MeasureOf::Axle:
        return "axle";
    case KxInspect::MeasureOf::Bogie:
        return "bogie";
    case KxInspect::MeasureOf::Vehicle:
        break;
    }
    return "vehicle";
}

/// The fields of kxmath.SettingKey, for each.
py::list listKeys() {
    py::list list;
    for (const KxInspect::SettingKey& key : KxInspect::settingKeys()) {
        list.append(py::make_tuple(key.name, key.isPerSensor, key.isWhole, key.meaning, key.unit, key.byDefault,
                                   key.min, key.max, key.needed, key.settings, key.words));
    }
    return list;
}

/// The fields of kxmath.LimitMeasure, for each.
py::list listMeasures() {
    py::list list;
    for (const KxInspect::MeasureInfo& measure : KxInspect::measureInfos()) {
        list.append(
            py::make_tuple(measure.name, measure.unit, wordOf(measure.of), measure.meaning, measure.min, measure.max));
    }
    return list;
}

std::vector<std::string> bytesOf(const std::vector<Path>& paths) {
    std::vector<std::string> names;
    names.reserve(paths.size());
    for (const Path& path : paths) {
        names.push_back(path.bytes);
    }
    return names;
}

py::tuple checkSettings(const Path& path, const std::string& kind, const std::vector<Path>& recordings, int mode,
                        const py::object& progress) {
    KxInspect::SettingsCheck check;
    const SettingsKind which = kindOf(kind);
    {
        const KxInspect::Progress report = progressOf(progress);
        const py::gil_scoped_release release;
        check = KxInspect::checkSettings(path.bytes, which, bytesOf(recordings), mode, report);
    }
    py::list findings;
    for (const KxInspect::SettingsFinding& finding : check.findings) {
        findings.append(py::make_tuple(finding.isRefused, finding.key, finding.text));
    }
    return py::make_tuple(findings, check.facts, check.isRefused());
}

StationFit fitStation(const std::vector<std::pair<std::vector<Path>, std::vector<double>>>& passes,
                      const std::optional<Path>& settings, bool withTreads, double maxResidual,
                      const py::object& progress) {
    const KxInspect::Progress report = progressOf(progress);
    const py::gil_scoped_release release;
    KxInspect::FitOptions options;
    options.withTreads = withTreads;
    options.maxResidual = maxResidual;
    if (settings) {
        options.settings = KxInspect::readStationSettings(settings->bytes);
    }
    std::vector<KxInspect::KnownPass> known;
    known.reserve(passes.size());
    for (const auto& [recordings, distances] : passes) {
        known.push_back({bytesOf(recordings), distances});
    }
    return KxInspect::fitStation(known, options, report);
}

py::object lineOf(const std::optional<KxInspect::Line>& line) {
    return line ? py::cast(KxInspect::toKxLine(*line)) : py::object(py::none());
}

py::dict sensorOf(const KxInspect::FittedSensor& sensor) {
    py::dict values;
    values["number"] = sensor.number;
    values["serial"] = sensor.serial;
    values["reference"] = lineOf(sensor.reference);
    values["level"] = lineOf(sensor.level);
    values["low"] = lineOf(sensor.low);
    values["tread_high"] = lineOf(sensor.treadHigh);
    values["tread_low"] = lineOf(sensor.treadLow);
    values["noise"] = sensor.noise;
    values["margin"] = sensor.margin;
    values["deviation"] = sensor.deviation;
    values["wheels"] = sensor.wheels.size();
    Profile points;
    points.points.reserve(qsizetype(sensor.points.size()));
    for (const KxInspect::Point& p : sensor.points) {
        points.points.append({p.x, p.y});
    }
    values["points"] = points;
    return values;
}

py::list pairsOf(const StationFit& fit) {
    py::list list;
    for (const KxInspect::FittedPair& pair : fit.pairs) {
        list.append(py::make_tuple(pair.pass, pair.pair, pair.given, pair.measured, pair.residual));
    }
    return list;
}

void bindFit(py::module_& module) {
    py::class_<StationFit>(module, "_StationFit")
        .def(py::pickle(&stateOf, &fitFrom))
        .def("has_same_bits", &haveSameBits, py::arg("other"))
        .def_readonly("reason", &StationFit::fault)
        .def_readonly("base_distance", &StationFit::baseDistance)
        .def_readonly("base_uncertainty", &StationFit::baseUncertainty)
        .def_readonly("min_profiles_in_wheel", &StationFit::minProfilesInWheel)
        .def_readonly("warnings", &StationFit::warnings)
        .def_property_readonly("pairs", &pairsOf)
        .def_property_readonly("sensors",
                               [](const StationFit& self) {
                                   py::list list;
                                   for (const KxInspect::FittedSensor& sensor : self.sensors) {
                                       list.append(sensorOf(sensor));
                                   }
                                   return list;
                               })
        .def_property_readonly("rms", &StationFit::rms, doc("", {"StationFit::rms"}).c_str())
        .def_property_readonly("largest", &StationFit::largest, doc("", {"StationFit::largest"}).c_str())
        .def_property_readonly("known", &StationFit::known, doc("", {"StationFit::known"}).c_str())
        .def(
            "page", [](const StationFit& self) { return kxreport::fitReport(self).toStdString(); }, "A page of HTML.")
        .def(
            "with_settings",
            [](const StationFit& self, const std::string& text, const std::string& kind) {
                return KxInspect::withFit(text, self, kindOf(kind));
            },
            py::arg("text"), py::arg("kind"), doc("The text of settings with those found.", {"withFit"}).c_str())
        .def(
            "store",
            [](const StationFit& self, const Path& path, const std::string& kind, const py::object& progress) {
                const SettingsKind which = kindOf(kind);
                const KxInspect::Progress report = progressOf(progress);
                const py::gil_scoped_release release;
                KxInspect::storeFit(path.bytes, self, which, report);
            },
            py::arg("path"), py::arg("kind"), py::arg("progress"),
            doc("Stores the settings in a file.", {"storeFit"}).c_str());
    module.def("_fit_station", &fitStation, py::arg("passes"), py::arg("settings"), py::arg("treads"),
               py::arg("max_residual"), py::arg("progress"),
               doc("The settings of a station from passes with known distances.", {"fitStation"}).c_str());
    module.def(
        "_check_fit_target",
        [](const Path& path, const std::vector<int>& serials) { KxInspect::checkFitTarget(path.bytes, serials); },
        py::arg("path"), py::arg("serials"), doc("", {"checkFitTarget"}).c_str());
}

} // namespace

void bindSettings(py::module_& module) {
    module.def("_setting_keys", &listKeys, doc("", {"settingKeys"}).c_str());
    module.def("_limit_measures", &listMeasures, doc("", {"measureInfos"}).c_str());
    module.def(
        "_new_settings",
        [](const std::string& kind, const std::vector<int>& serials) {
            return KxInspect::newSettings(kindOf(kind), serials);
        },
        py::arg("kind"), py::arg("serials"), doc("", {"newSettings"}).c_str());
    module.def("_check_settings", &checkSettings, py::arg("path"), py::arg("kind"), py::arg("recordings"),
               py::arg("mode"), py::arg("progress"), doc("", {"checkSettings", "SettingsCheck::isRefused"}).c_str());
    bindFit(module);
}

} // namespace kxpython
