// What the user of kxmath train asks for.
#pragma once

#include "tools/kxmath/console/failOn.h"
#include "tools/kxmath/console/outputFile.h"
#include "tools/kxmath/train/passFolder.h"

#include <KxInspect/Consist.h>
#include <KxInspect/PassIdentity.h>

#include <QtCore/QString>

#include <array>
#include <optional>

namespace kxtool {

struct TrainOptions {
    PassFiles files;
    QString out; ///< where the folder of the pass is made
    OutputFile json;
    OutputFile csv;
    OutputFile report;
    int mode;
    int pair; ///< whose profiles the page shows, from 1
    float tolerance;
    std::optional<float> nominal;
    std::optional<std::array<float, 2>> defectRange;
    FailOn failOn;
    KxInspect::PassLabels labels;
    KxInspect::ConsistOrder consistOrder;
};

/// Throws a CommandError when the arguments are wrong. Empty when help was asked for and printed.
std::optional<TrainOptions> parseTrainOptions(const QStringList& arguments);

} // namespace kxtool
