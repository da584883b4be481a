// The options and arguments of a command, with one wording for each mistake.
#pragma once

#include "tools/kxmath/console/outputFile.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QStringList>

#include <limits>
#include <optional>
#include <vector>

namespace kxtool {

/// Which numbers an option takes, its bounds included.
struct Bounds {
    double min = -std::numeric_limits<double>::infinity();
    double max = std::numeric_limits<double>::infinity();
    bool isAboveMin = false; ///< the lower bound itself is left out
};

inline constexpr Bounds kAbove0{0.0, std::numeric_limits<double>::infinity(), true};
inline constexpr Bounds kNotNegative{0.0};

/// Declares what a command understands, parses its arguments, and hands out checked values. All but the declarations
/// and the queries isSet() and text() throw a CommandError (WrongUse) that says what the option needs and what it got.
class Options {
public:
    /// @param command as on the command line: "train"
    /// @param usage what stands behind it: "REC1 REC2 --settings FILE [options]"
    /// @param description stands above the options in the help, `details` below them
    Options(const char* command, const char* usage, const QString& description, const char* details = "");

    /// An argument without a name.
    void addArgument(const char* name, const QString& help);
    /// An option without a value.
    void addFlag(const char* name, const QString& help);
    /// An option with a value.
    /// @param value what stands for the value in the help: "MM"
    void addOption(const char* name, const QString& help, const char* value, const QString& byDefault = {});

    /// Parses the arguments of the command; the first is the name of the program.
    /// @return false when help was asked for: it was printed
    bool parse(const QStringList& arguments);

    bool isSet(const char* name) const;
    /// The value of an option, its default when it was not given.
    QString text(const char* name) const;
    /// All values of an option that may be given more than once.
    QStringList texts(const char* name) const;
    /// The names of all options that were given.
    QStringList namesGiven() const { return parser_.optionNames(); }

    /// The value of an option that must be given.
    QString needed(const char* name) const;
    QString oneOf(const char* name, const QStringList& choices) const;
    float number(const char* name, const Bounds& bounds = {}) const;
    std::optional<float> numberIfSet(const char* name, const Bounds& bounds = {}) const;
    int wholeNumber(const char* name, int min = std::numeric_limits<int>::min(),
                    int max = std::numeric_limits<int>::max()) const;
    /// As many numbers as `count` says, separated by `separator`.
    std::vector<float> numbers(const char* name, int count, const Bounds& bounds = {}, char separator = ',') const;
    /// The file that an option names.
    OutputFile output(const char* name) const;

    /// The arguments without a name: from `min` to `max` of them.
    /// @param what they are, for the message: "recordings"
    QStringList arguments(const char* what, int min, int max = std::numeric_limits<int>::max()) const;

    /// @{ Checks a part of a value, `what` standing for it in the message: "STEP of --seeds".
    double toNumber(const QString& text, const QString& what, const Bounds& bounds = {}) const;
    int toWholeNumber(const QString& text, const QString& what, int min = std::numeric_limits<int>::min(),
                      int max = std::numeric_limits<int>::max()) const;
    /// @}

    /// Gives up: "WHAT needs NEED, got 'TEXT', see kxmath COMMAND --help".
    [[noreturn]] void failNeed(const QString& what, const QString& need, const QString& text) const;
    /// Gives up with another message, the same hint behind it.
    [[noreturn]] void fail(const QString& message) const;

private:
    QCommandLineParser parser_;
    const char* command_;
    const char* usage_;
    const char* details_;
};

} // namespace kxtool
