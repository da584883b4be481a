// Settings as keys and values.
#pragma once

#include <KxInspect/PassIdentity.h>
#include <KxInspect/Settings.h>

#include <vector>

namespace KxInspect::detail {

/// @{ All values of the settings under the keys of their files, defaults included; absent ones are left out.
std::vector<SettingValue> valuesOf(const StationSettings& settings);
std::vector<SettingValue> valuesOf(const DefectSettings& settings);
/// @}

} // namespace KxInspect::detail
