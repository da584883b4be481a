// The measures of one wheel and what is allowed for them.
#pragma once

#include "tools/kxmath/console/profileOptions.h"

#include <KxMath/KxMetro.h>

#include <QtCore/QStringList>

#include <array>
#include <limits>
#include <optional>

namespace kxtool {

/// A measure as it is named in outputs and options.
struct WheelMeasure {
    const char* key; ///< in JSON and CSV
    const char* option; ///< --min-OPTION, --max-OPTION
    const char* title; ///< for people
    float KxMath::_WheelProfileValues::*value;
};

inline constexpr std::array kWheelMeasures = {
    WheelMeasure{"heightAt70", "height", "height at 70", &KxMath::_WheelProfileValues::heightAt70},
    WheelMeasure{"xAtLevel18", "thickness", "x at level 18", &KxMath::_WheelProfileValues::xAtLevel18},
    WheelMeasure{"widthLevel2ToH13", "width", "width 2 to h-13", &KxMath::_WheelProfileValues::widthLevel2ToH13},
    WheelMeasure{"heightExcess", "excess", "height excess", &KxMath::_WheelProfileValues::heightExcess},
};

/// What is allowed for a measure, in mm; NaN for no limit.
struct Limit {
    float min = std::numeric_limits<float>::quiet_NaN();
    float max = std::numeric_limits<float>::quiet_NaN();

    bool isSet() const;
    /// False for a measure of NaN when there is a limit.
    bool holds(float value) const;
};

using Limits = std::array<Limit, kWheelMeasures.size()>;

enum class Verdict { NoLimits, Within, Outside, NotMeasured, NotRead };

/// How the sections are made from what is in the files.
struct WheelOptions {
    Orientation orientation;
    Columns columns;
    KxMath::KxCircle circle; ///< its centre, for clouds in 3-D
    std::optional<float> flangeBack; ///< its x in the file; none: where the profile begins
    float spacing = 0.0f; ///< of the points along a profile, 0: as they are
    Limits limits;
};

struct WheelResult {
    QString file;
    QString error; ///< why the file could not be read
    QStringList warnings;
    KxMath::_WheelProfileValues values;
    QList<KxMath::KxPointXY> section; ///< the points that were measured, with the origin of `measured`
    QList<KxMath::KxPointXY> measured; ///< the smooth profile from which the measures were taken

    bool isMeasured() const;
};

/// Reads and measures a file.
WheelResult measureWheel(const QString& file, const WheelOptions& options);

Verdict verdictOf(const WheelResult& result, const Limits& limits);

/// "within", "outside", "not measured", "not read", empty for no limits.
QString verdictText(Verdict verdict);

} // namespace kxtool
