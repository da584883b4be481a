// --fail-on: which verdicts a command takes, and the exit codes.
#include "tools/kxmath/console/failOn.h"
#include "tools/kxmath/console/commandError.h"

#include <gtest/gtest.h>

namespace {

using namespace kxtool;

const std::vector<PossibleVerdict> kPossible = {{Verdict::Out, "a log is too long"},
                                                {Verdict::NotJudged, "a log has no length"}};

FailOn parsed(const QStringList& arguments) {
    Options options("saw", "[options]", "Saws logs.");
    FailOn::declare(options, kPossible);
    options.parse(QStringList{"kxmath"} + arguments);
    return FailOn(options, kPossible);
}

TEST(FailOnTest, FailsOnWhatIsListedAndWasGiven) {
    const std::vector<GivenVerdict> given = {{Verdict::Out, 0}, {Verdict::NotJudged, 3}};
    struct Case {
        QStringList arguments;
        ExitCode code, expected;
    };
    for (const Case& c :
         {Case{{}, Done, Done}, Case{{"--fail-on", "out"}, Done, Done},
          Case{{"--fail-on", "not-judged"}, Done, FailOnMet}, Case{{"--fail-on", "out, not-judged"}, Done, FailOnMet},
          Case{{"--fail-on", "not-judged", "--fail-on", "out"}, Done, FailOnMet},
          Case{{"--fail-on", "not-judged"}, NoResult, NoResult},
          Case{{"--fail-on", "not-judged"}, BadInput, BadInput}}) {
        EXPECT_EQ(parsed(c.arguments).exitCode("saw", c.code, given), c.expected) << qPrintable(c.arguments.join(' '));
    }
}

TEST(FailOnTest, RefusesVerdictsThatTheCommandCannotGive) {
    for (const char* const list : {"defect", "", "Out", "out,", "ok"}) {
        try {
            parsed({"--fail-on", list});
            ADD_FAILURE() << "taken: " << list;
        } catch (const CommandError& error) {
            EXPECT_EQ(error.code, WrongUse);
            EXPECT_TRUE(error.message.startsWith("--fail-on needs one of out, not-judged, got '"))
                << qPrintable(error.message);
        }
    }
}

} // namespace
