// What the user of kxmath train asks for.
#pragma once

#include "tools/kxmath/console/failOn.h"
#include "tools/kxmath/console/outputFile.h"

#include <KxInspect/Consist.h>
#include <KxInspect/PassIdentity.h>

#include <QtCore/QString>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace kxtool {

struct TrainOptions {
    std::vector<std::string> recordings; ///< two or more
    QString settings;
    QString out; ///< where the folder of the pass is made
    OutputFile json;
    OutputFile csv;
    OutputFile report;
    int mode;
    int pair; ///< whose profiles the page shows, from 1
    float tolerance;
    std::optional<float> nominal;
    QString defects; ///< settings of the judgement of treads, empty for none
    std::optional<std::array<float, 2>> defectRange;
    FailOn failOn;
    KxInspect::PassLabels labels;
    QString consist; ///< list of vehicles, empty for none
    KxInspect::ConsistOrder consistOrder;
    QString limits; ///< file of limits, empty for none
};

/// Throws a CommandError when the arguments are wrong. Empty when help was asked for and printed.
std::optional<TrainOptions> parseTrainOptions(const QStringList& arguments);

} // namespace kxtool
