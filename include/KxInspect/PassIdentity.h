// Which pass a result is of: where and when it was, and from which files and values the result was made.
#pragma once

#include "Consist.h"
#include "Export.h"
#include "InputFile.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace KxInspect {

/// @{ The name and the version of the JSON form of a pass. The version changes when a member goes away or changes its
/// meaning, not when one is added.
inline constexpr const char* kPassSchema = "kxmath.pass";
inline constexpr int kPassSchemaVersion = 1;
/// @}

/// What the caller knows of a pass and recordings do not tell. What was not given is absent and stays so in the result.
struct PassLabels {
    std::optional<std::string> station; ///< UTF-8, 1 to 200 characters without control characters, as the next three
    std::optional<std::string> line;
    std::optional<std::string> track;
    std::optional<std::string> direction; ///< in which the train went, in words of the railway
    /// When the train passed: ISO 8601 with date, time to the minute at least, and zone: "2026-03-29T01:59:07.5+01:00".
    std::optional<std::string> time;
    std::optional<float>
        speed; ///< of the train, km/h, above 0 to 1000; records hold no time from which it could be had
};

/// A value that was measured with.
struct SettingValue {
    std::string key = {}; ///< as in a settings file: "SENSOR1/level_k"
    std::variant<double, std::string> value = 0.0; ///< a number, or a word as "left"
};

/// Settings that were measured with.
struct SettingsIdentity {
    std::optional<InputFile> file = {}; ///< where they were read from; absent when a program filled them in
    /// All that were in force, defaults included, by their keys.
    std::vector<SettingValue> values = {};
};

/// The identity of a pass. The recordings are those of PassResult::sides.
struct PassIdentity {
    PassLabels labels = {};
    SettingsIdentity settings = {};
    std::optional<SettingsIdentity> defects = {}; ///< absent when defects were not looked for
    std::optional<InputFile> consist = {}; ///< the list of vehicles; absent without one that was read from a file
    std::optional<ConsistOrder> consistOrder =
        {}; ///< which end of the list was said to pass first; absent without a list
    std::optional<InputFile> limits = {}; ///< likewise the limits
    std::optional<InputFile> contour = {}; ///< likewise the nominal contour
    std::string version = {}; ///< of the library that measured
};

/// What is wrong with a time, as the predicate of a sentence: "needs a zone ...". Empty for one that PassLabels::time may
/// hold.
KXINSPECT_EXPORT std::string whyNoTime(const std::string& text);

/// What is wrong with the text of a station, a line, a track or a direction, likewise.
KXINSPECT_EXPORT std::string whyNoLabel(const std::string& text);

} // namespace KxInspect
