// The parts of the module, each with its classes and functions.
#pragma once

#include "values.h"

namespace kxpython {

void bindPrimitives(py::module_& module);
void bindDirections(py::module_& module); ///< after the profiles and clouds, which their functions take
void bindProfile(py::module_& module);
void bindProfileChanges(py::class_<Profile>& type);
void bindProfileFilters(py::class_<Profile>& type);
void bindProfileFits(py::class_<Profile>& type);
void bindProfileFeatures(py::class_<Profile>& type);
void bindClouds(py::module_& module);
void bindCloudOperations(py::class_<Cloud>& type);
void bindFiles(py::module_& module);
void bindRecords(py::module_& module);
void bindFileContents(py::module_& module);
void bindRecordingGroups(py::module_& module);
void bindHeightMaps(py::module_& module);
void bindMeasuring(py::module_& module);
void bindSettings(py::module_& module);

} // namespace kxpython
