// --fail-on: verdicts with which a run fails.
#pragma once

#include "tools/kxmath/console/exitCodes.h"
#include "tools/kxmath/console/options.h"

#include <cstddef>
#include <vector>

namespace kxtool {

/// What a command may find. Its name is that in --fail-on.
enum class Verdict {
    Out, ///< "out": a measured value is beyond its limit or tolerance
    Defect, ///< "defect": a wheel is defective
    NotJudged, ///< "not-judged": what was to be judged could not be
    Warning, ///< "warning": a value is beyond its limit for warnings, and not beyond that for alarms
    Alarm, ///< "alarm": a value is beyond its limit for alarms
    NotMeasured, ///< "not-measured": a value that has limits was not measured
    Shift, ///< "shift": a sensor measures differently than before
    Unconfirmed, ///< "unconfirmed": a result rests on one statement that nothing confirms
};

/// A verdict that a command can give, and when it gives it there, for the help: "a wheel is outside a limit".
struct PossibleVerdict {
    Verdict verdict;
    const char* when;
};

/// How often a run gave a verdict.
struct GivenVerdict {
    Verdict verdict;
    std::size_t count;
};

/// The verdicts that --fail-on lists, none without the option.
class FailOn {
public:
    /// Adds the option to those of a command that can give these verdicts.
    static void declare(Options& options, const std::vector<PossibleVerdict>& possible);

    FailOn() = default;
    /// Reads the option. Throws a CommandError (WrongUse) for a verdict that the command cannot give, with those that it
    /// can.
    FailOn(const Options& options, const std::vector<PossibleVerdict>& possible);

    bool isSet() const { return !verdicts_.empty(); }
    bool holds(Verdict verdict) const;

    /// The exit code of a run that would end with `code`: FailOnMet when that is Done and a listed verdict was given,
    /// which is then printed on stderr. Call it after all outputs are written.
    ExitCode exitCode(const char* command, ExitCode code, const std::vector<GivenVerdict>& given) const;

private:
    std::vector<Verdict> verdicts_;
};

} // namespace kxtool
