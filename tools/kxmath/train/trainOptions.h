// What the user of kxmath train asks for.
#pragma once

#include "tools/kxmath/console/outputFile.h"
#include "tools/kxmath/train/again.h"
#include "tools/kxmath/train/measuringOptions.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <optional>
#include <variant>

namespace kxtool {

struct TrainOptions : MeasuringOptions {
    QString out; ///< where the folder of the pass is made
    OutputFile json;
    OutputFile csv;
    OutputFile report;
    int pair; ///< whose profiles the page shows, from 1
    OutputFile sheet;
};

/// Throws a CommandError when the arguments are wrong. Empty when help was asked for and printed.
std::optional<std::variant<TrainOptions, AgainOptions>> parseTrainOptions(const QStringList& arguments);

} // namespace kxtool
