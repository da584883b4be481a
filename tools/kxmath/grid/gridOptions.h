// What the user of kxmath grid asked for.
#pragma once

#include "tools/kxmath/console/outputFile.h"

#include <QtCore/QString>

#include <limits>
#include <optional>

namespace kxtool {

/// How seeds are searched; what is not given is chosen from the block means.
struct SeedOptions {
    std::optional<float> start;
    std::optional<float> end;
    std::optional<float> step;
    std::optional<float> tolerance;
    std::optional<int> minCount;
    float maxDrop = std::numeric_limits<float>::quiet_NaN();
};

struct GridOptions {
    QString set;
    float step = 0.0f; ///< pitch of the grid, mm
    float z0 = 0.0f; ///< position of the first profile
    std::optional<float> dz; ///< distance of the profiles, where it is not the pitch
    std::optional<float> gap; ///< largest distance of points between which heights are interpolated
    int blockSize = 4;
    std::optional<float> edgeCut;
    SeedOptions seeds;
    QString seedFolder; ///< empty for no files
    OutputFile json;
    OutputFile report;
};

} // namespace kxtool
