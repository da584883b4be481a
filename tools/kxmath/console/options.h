// The options and arguments of a command, with one wording for each mistake.
#pragma once

#include "tools/kxmath/console/outputFile.h"

#include <QtCore/QCommandLineParser>
#include <QtCore/QStringList>

#include <limits>
#include <optional>
#include <utility>
#include <vector>

namespace kxtool {

/// The range of an option's value, bounds included.
struct Bounds {
    double min = -std::numeric_limits<double>::infinity();
    double max = std::numeric_limits<double>::infinity();
    bool isAboveMin = false; ///< the lower bound is excluded
};

inline constexpr Bounds kAbove0{0.0, std::numeric_limits<double>::infinity(), true};
inline constexpr Bounds kNotNegative{0.0};

/// " (is 'NAME' meant?)" with the known name that is nearest to a misspelled one, behind `prefix`; empty when none is near.
QString suggestion(const QString& name, const QStringList& known, const char* prefix = "");

/// The arguments without the second one, the name of a command.
QStringList withoutName(const QStringList& arguments);

/// Lists are returned constant: a loop over one that is not would copy it, without a check of the memory in Qt 6.4.
///
/// Declares the options of a command, parses its arguments, and returns checked values. -o is short for the main output of
/// the command: one of its options, or an argument, as a table in options.cpp says. All but the declarations and the
/// queries isSet() and text() throw a CommandError (WrongUse) that says what the option needs and what it got.
class Options {
public:
    /// @param command as on the command line: "train"
    /// @param usage what follows it: "REC1 REC2 --settings FILE [options]"
    /// @param description printed above the options in the help, `details` below them
    Options(const char* command, const char* usage, const QString& description, const char* details = "");

    /// A positional argument.
    void addArgument(const char* name, const QString& help);
    /// An option without a value.
    void addFlag(const char* name, const QString& help);
    /// An option with a value.
    /// @param value placeholder of the value in the help: "MM"
    void addOption(const char* name, const QString& help, const char* value, const QString& byDefault = {});

    /// Parses the arguments of the command; the first is the name of the program. Throws the CommandDescription when the
    /// describeArgument() is among them.
    /// @return false when --help was given and the help was printed
    bool parse(const QStringList& arguments);

    bool isSet(const char* name) const;
    /// The value of an option, its default when it was not given.
    QString text(const char* name) const;
    /// All values of an option that may be given more than once.
    const QStringList texts(const char* name) const;
    /// The long names of all options that were given, without an -o that stands for an argument.
    const QStringList namesGiven() const;

    /// The value of an option that must be given.
    QString needed(const char* name) const;
    QString oneOf(const char* name, const QStringList& choices) const;
    float number(const char* name, const Bounds& bounds = {}) const;
    std::optional<float> numberIfSet(const char* name, const Bounds& bounds = {}) const;
    int wholeNumber(const char* name, int min = std::numeric_limits<int>::min(),
                    int max = std::numeric_limits<int>::max()) const;
    /// `count` numbers separated by `separator`.
    std::vector<float> numbers(const char* name, int count, const Bounds& bounds = {}, char separator = ',') const;
    /// The file that an option names.
    OutputFile output(const char* name) const;

    /// The positional arguments, `min` to `max` of them; the file or folder of -o, where it stands for an argument, is the
    /// last one.
    /// @param what names them in the message: "recordings"
    const QStringList arguments(const char* what, int min, int max = std::numeric_limits<int>::max()) const;

    /// @{ Checks a part of a value, which the message calls `what`: "STEP of --seeds".
    double toNumber(const QString& text, const QString& what, const Bounds& bounds = {}) const;
    int toWholeNumber(const QString& text, const QString& what, int min = std::numeric_limits<int>::min(),
                      int max = std::numeric_limits<int>::max()) const;
    void checkChoice(const QString& text, const QString& what, const QStringList& choices) const;
    /// @}

    /// Throws "WHAT needs NEED, got 'TEXT', see kxmath COMMAND --help".
    [[noreturn]] void failNeed(const QString& what, const QString& need, const QString& text) const;
    /// Throws another message with the same hint.
    [[noreturn]] void fail(const QString& message) const;

private:
    QStringList outputNames() const;
    std::vector<kxreport::PageOption> values() const;
    void declareOption(const QCommandLineOption& option);
    void declare(const char* name, const QString& help, const char* value, const QString& byDefault);
    void refuseAttached(const QStringList& arguments) const;

    QCommandLineParser parser_;
    QStringList arguments_;
    QStringList names_; ///< of all options
    std::vector<QCommandLineOption> declared_;
    std::vector<std::pair<QString, QString>> declaredArguments_; ///< names and help
    const char* command_;
    const char* usage_;
    const char* details_;
    QString mainOutput_; ///< what -o is short for; empty where there is none
};

} // namespace kxtool
