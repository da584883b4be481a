// How passes are measured, whichever recordings they have: the options that commands share.
#pragma once

#include "tools/kxmath/console/failOn.h"
#include "tools/kxmath/console/options.h"
#include "tools/kxmath/train/passFolder.h"

#include <KxInspect/Consist.h>
#include <KxInspect/PassIdentity.h>
#include <KxInspect/Train.h>

#include <QtCore/QString>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace kxtool {

struct MeasuringOptions {
    PassFiles files; ///< its recordings and settings are those of the command
    int mode;
    float tolerance;
    std::optional<float> nominal;
    std::optional<std::array<float, 2>> defectRange;
    FailOn failOn;
    KxInspect::PassLabels labels; ///< station, time and speed are those of the command
    KxInspect::ConsistOrder consistOrder;
    int jobs; ///< measured at once
};

/// Declares them, with --fail-on.
void addMeasuringOptions(Options& options);

/// Their values. Throws a CommandError when they are wrong.
MeasuringOptions measuringOptions(const Options& options);

/// The text of an option that names something; an empty one names nothing. Throws a CommandError (WrongUse) otherwise.
QString nameOf(const Options& options, const char* option, const QString& what);

/// A label of a pass that `whyNot` finds nothing wrong with. Throws a CommandError (WrongUse) otherwise.
std::optional<std::string> labelOf(const Options& options, const char* option,
                                   std::string (*whyNot)(const std::string&));

/// Reads the files that the options name.
KxInspect::PassOptions passOptions(const MeasuringOptions& options);

/// What a pass gives --fail-on.
std::vector<GivenVerdict> verdicts(const KxInspect::PassResult& pass);

/// Why a pass for which hasResult() is false has none, as a sentence.
QString whyNoResult(const KxInspect::PassResult& pass, const MeasuringOptions& options);

} // namespace kxtool
