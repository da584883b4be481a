// Options of commands: accepted values, and messages for refused ones.
#include "tools/kxmath/console/options.h"
#include "tools/kxmath/console/commandError.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace {

using kxtool::Options;

class Parsed {
public:
    explicit Parsed(const QStringList& arguments) : options("saw", "LOG... [options]", "Saws logs.") {
        options.addArgument("LOG...", "what to saw");
        options.addOption("teeth", "how many", "N", "12");
        options.addOption("length", "of the blade", "MM");
        options.addOption("wood", "its kind", "KIND", "oak");
        options.addOption("shift", "of the cut", "X,Y");
        options.addOption("json", "writes the result", "FILE");
        options.addFlag("wet", "the log is wet");
        options.parse(QStringList{"kxmath"} + arguments);
    }

    Options options;
};

TEST(OptionsTest, HandsOutWhatWasGivenAndDefaults) {
    const Parsed p({"--length", "-1.5e2", "a.log", "--shift=-1,2.5", "--wet", "b.log"});
    EXPECT_EQ(p.options.number("length"), -150.0f);
    EXPECT_EQ(p.options.wholeNumber("teeth", 1, 12), 12);
    EXPECT_EQ(p.options.numbers("shift", 2), (std::vector<float>{-1.0f, 2.5f}));
    EXPECT_EQ(p.options.oneOf("wood", {"oak", "elm"}), "oak");
    EXPECT_EQ(p.options.arguments("logs", 1), (QStringList{"a.log", "b.log"}));
    EXPECT_TRUE(p.options.isSet("wet"));
    EXPECT_FALSE(p.options.output("json").isWanted());
    EXPECT_FALSE(p.options.numberIfSet("json"));
}

TEST(OptionsTest, MessagesNameTheNeededAndTheGivenValue) {
    struct Case {
        QStringList arguments;
        std::function<void(const Options&)> ask;
        const char* message;
    };
    const std::vector<Case> cases = {
        {{"--length", "q"}, [](auto& o) { o.number("length"); }, "--length needs a number, got 'q'"},
        {{"--length", "nan"}, [](auto& o) { o.number("length"); }, "--length needs a number, got 'nan'"},
        {{"--length", "1e39"},
         [](auto& o) { o.number("length", kxtool::kAbove0); },
         "--length needs a number above 0, up to 3.402823466e+38, got '1e39'"},
        {{"--length", "0"},
         [](auto& o) { o.number("length", kxtool::kAbove0); },
         "--length needs a number above 0, got '0'"},
        {{"--length", "99"},
         [](auto& o) {
             o.number("length", {100.0, 10000.0});
         },
         "--length needs a number from 100 to 10000, got '99'"},
        {{"--teeth", "1.5"}, [](auto& o) { o.wholeNumber("teeth"); }, "--teeth needs a whole number, got '1.5'"},
        {{"--teeth", "0"},
         [](auto& o) { o.wholeNumber("teeth", 1); },
         "--teeth needs a whole number of at least 1, got '0'"},
        {{"--shift", "1,x"},
         [](auto& o) { o.numbers("shift", 2); },
         "--shift needs 2 numbers separated by ',', got '1,x'"},
        {{"--shift", "1,2,3"},
         [](auto& o) {
             o.numbers("shift", 2, {-5.0, 5.0});
         },
         "--shift needs 2 numbers from -5 to 5 separated by ',', got '1,2,3'"},
        {{"--wood", "ash"},
         [](auto& o) {
             o.oneOf("wood", {"oak", "elm"});
         },
         "--wood needs one of oak, elm, got 'ash'"},
        {{"--wood", "oka"},
         [](auto& o) {
             o.oneOf("wood", {"elm", "oak"});
         },
         "--wood needs one of elm, oak, got 'oka' (is 'oak' meant?)"},
        {{"--wood", "Elms"},
         [](auto& o) {
             o.oneOf("wood", {"oak", "elm"});
         },
         "--wood needs one of oak, elm, got 'Elms' (is 'elm' meant?)"},
        {{}, [](auto& o) { o.needed("length"); }, "--length is needed"},
        {{"--json", ""}, [](auto& o) { o.output("json"); }, "--json needs the name of a file, got ''"},
        {{}, [](auto& o) { o.arguments("logs", 1); }, "1 or more logs needed, got 0"},
        {{"a", "b"}, [](auto& o) { o.arguments("log", 1, 1); }, "1 log needed, got 2"},
        {{"a", "b"}, [](auto& o) { o.arguments("log", 0, 0); }, "unexpected argument 'a'"},
    };
    for (const Case& c : cases) {
        const Parsed p(c.arguments);
        try {
            c.ask(p.options);
            ADD_FAILURE() << "taken: " << c.message;
        } catch (const kxtool::CommandError& error) {
            EXPECT_EQ(error.code, kxtool::WrongUse);
            EXPECT_EQ(error.message.toStdString(), c.message + std::string(", see kxmath saw --help"));
        }
    }
    const std::pair<QStringList, const char*> refused[] = {
        {{"--weth", "--length", "1"}, "unknown option '--weth' (is '--wet' meant?)"},
        {{"-lenght", "1"}, "unknown option '-lenght' (is '--length' meant?)"},
        {{"--zebra"}, "unknown option '--zebra'"},
        {{"-z"}, "unknown option '-z'"},
        {{"--length"}, "missing value after '--length'"},
        {{"--wet=1"}, "unexpected value after '--wet'"}};
    for (const auto& [arguments, message] : refused) {
        try {
            const Parsed parsed(arguments);
            ADD_FAILURE() << "taken: " << message;
        } catch (const kxtool::CommandError& error) {
            EXPECT_EQ(error.message.toStdString(), message + std::string(", see kxmath saw --help"));
        }
    }
}

TEST(OptionsTest, TheMainOutputHasAShortName) {
    Options train("train", "", "");
    train.addOption("out", "where", "DIR", ".");
    train.addOption("json", "the result", "FILE");
    ASSERT_TRUE(train.parse({"kxmath", "--json", "-output", "-o", "b"}));
    EXPECT_EQ(train.text("out"), "b");
    EXPECT_EQ(train.text("json"), "-output");
    EXPECT_EQ(train.namesGiven(), (QStringList{"json", "out"}));
    Options convert("convert", "", "");
    ASSERT_TRUE(convert.parse({"kxmath", "-o=b", "a"}));
    EXPECT_EQ(convert.arguments("files", 2, 2), (QStringList{"a", "b"}));
    EXPECT_TRUE(convert.namesGiven().isEmpty());
    const std::pair<QStringList, const char*> refused[] = {
        {{"-out", "b"}, "unknown option '-out' (is '--out' meant?)"},
        {{"-out=b"}, "unknown option '-out=b' (is '--out' meant?)"},
        {{"-b"}, "unknown option '-b'"},
        {{"-order"}, "unknown option '-order': -o needs a blank before its value"}};
    for (const auto& [arguments, message] : refused) {
        Options options("train", "", "");
        options.addOption("out", "where", "DIR");
        try {
            options.parse(QStringList{"kxmath"} + arguments);
            ADD_FAILURE() << "taken: " << message;
        } catch (const kxtool::CommandError& error) {
            EXPECT_EQ(error.message.toStdString(), message + std::string(", see kxmath train --help"));
        }
    }
}

} // namespace
