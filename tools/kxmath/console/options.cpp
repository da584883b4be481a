// The options and arguments of a command, with one wording for each mistake.
#include "tools/kxmath/console/options.h"

#include "inspect/base/nearestName.h"
#include "report/elements/textList.h"
#include "tools/kxmath/console/commandDescription.h"
#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/helpText.h"
#include "tools/kxmath/console/reportOrigin.h"

#include <QtCore/QCoreApplication>

#include <algorithm>
#include <cmath>

namespace kxtool {

namespace {

const QString kHelp = QStringLiteral("help");
constexpr const char* kReport = "report";
constexpr const char* kNote = "note";
constexpr const char* kOutputs[] = {"report", "json", "csv", "sheet", "map", "out", "output", "write", "set"};
const QString kShort = QStringLiteral("o");

/// What -o is short for: the name of an option, or of an argument, which is in capitals.
struct MainOutput {
    const char* command;
    const char* name;
};

constexpr MainOutput kMainOutputs[] = {
    {"simulate", "DIR"},       {"train", "out"},       {"watch", "out"},   {"settings init", "FILE"},
    {"settings fit", "write"}, {"conicity", "json"},   {"wheel", "json"},  {"calibrate", "json"},
    {"grid", "out"},           {"view", "out"},        {"profile", "out"}, {"info", "json"},
    {"store export", "out"},   {"store info", "json"}, {"convert", "OUT"}, {"trend", "report"},
    {"alarms", "report"},
};

QString mainOutputOf(const char* command) {
    for (const MainOutput& output : kMainOutputs) {
        if (qstrcmp(output.command, command) == 0) {
            return QLatin1String(output.name);
        }
    }
    return {};
}

bool isArgument(const QString& mainOutput) {
    return !mainOutput.isEmpty() && mainOutput[0].isUpper();
}

constexpr double kLargest = static_cast<double>(std::numeric_limits<float>::max());

QString optionText(const char* name) {
    return QStringLiteral("--") + QLatin1String(name);
}

/// What is bounded and its bounds: "a number from 1 to 5".
QString needText(const QString& what, const Bounds& bounds) {
    const QString min = QString::number(bounds.min, 'g', 10);
    const QString max = QString::number(bounds.max, 'g', 10);
    if (std::isinf(bounds.min) && std::isinf(bounds.max)) {
        return what;
    }
    if (bounds.isAboveMin) {
        return std::isinf(bounds.max) ? QStringLiteral("%1 above %2").arg(what, min)
                                      : QStringLiteral("%1 above %2, up to %3").arg(what, min, max);
    }
    if (std::isinf(bounds.max)) {
        return QStringLiteral("%1 of at least %2").arg(what, min);
    }
    return std::isinf(bounds.min) ? QStringLiteral("%1 of at most %2").arg(what, max)
                                  : QStringLiteral("%1 from %2 to %3").arg(what, min, max);
}

bool holds(const Bounds& bounds, double value) {
    const bool isAbove = bounds.isAboveMin ? value > bounds.min : value >= bounds.min;
    return std::isfinite(value) && isAbove && value <= bounds.max; // NaN: false
}

/// The long option that was written with a single dash and so taken for a series of short ones; `name` when none was.
QString wholeName(const QString& name, const QStringList& arguments) {
    for (const QString& argument : arguments) {
        if (argument.size() > 2 && argument[0] == QLatin1Char('-') && argument[1] != QLatin1Char('-') &&
            argument.contains(name)) {
            return argument.mid(1).section(QLatin1Char('='), 0, 0);
        }
    }
    return name;
}

} // namespace

QStringList withoutName(const QStringList& arguments) {
    QStringList rest; // made element by element: Qt 6.4 does not check the memory of a list that it copies
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (i != 1) {
            rest.append(arguments[i]);
        }
    }
    return rest;
}

QString suggestion(const QString& name, const QStringList& known, const char* prefix) {
    const QString nearest = KxInspect::detail::nearestName(name, known);
    return nearest.isEmpty() ? QString() : QStringLiteral(" (is '%1%2' meant?)").arg(QLatin1String(prefix), nearest);
}

Options::Options(const char* command, const char* usage, const QString& description, const char* details)
    : command_(command), usage_(usage), details_(details), mainOutput_(mainOutputOf(command)) {
    parser_.setApplicationDescription(description);
    declareOption({kxreport::textList({QStringLiteral("h"), kHelp}), QStringLiteral("Prints this text.")});
    names_ += kHelp;
    if (isArgument(mainOutput_)) {
        declareOption({kShort, QStringLiteral("The same as the argument %1.").arg(mainOutput_), mainOutput_});
    }
}

void Options::declareOption(const QCommandLineOption& option) {
    parser_.addOption(option);
    declared_.push_back(option);
}

void Options::declare(const char* name, const QString& help, const char* value, const QString& byDefault) {
    const QString longName = QLatin1String(name);
    QStringList names;
    if (longName == mainOutput_) {
        names.append(kShort);
    }
    names.append(longName);
    declareOption({names, help, QLatin1String(value), byDefault});
    names_.append(longName);
}

/// Refuses a value that is written behind -o without a blank: most of them are long options with one dash too few.
void Options::refuseAttached(const QStringList& arguments) const {
    if (mainOutput_.isEmpty()) {
        return;
    }
    const QStringList values = parser_.values(kShort);
    for (const QString& argument : arguments) {
        constexpr qsizetype kDashAndLetter = 2;
        const QString value = argument.mid(kDashAndLetter);
        if (argument.startsWith(QStringLiteral("-o")) && !value.isEmpty() && values.contains(value)) {
            const QString name = argument.mid(1).section(QLatin1Char('='), 0, 0);
            const QString meant = suggestion(name, names_, "--");
            fail(QStringLiteral("unknown option '%1'%2%3")
                     .arg(argument, meant,
                          meant.isEmpty() ? QStringLiteral(": -o needs a blank before its value") : QString()));
        }
    }
}

void Options::addArgument(const char* name, const QString& help) {
    parser_.addPositionalArgument(QLatin1String(name), help);
    declaredArguments_.emplace_back(QLatin1String(name), help);
}

void Options::addFlag(const char* name, const QString& help) {
    declare(name, help, "", {});
}

void Options::addOption(const char* name, const QString& help, const char* value, const QString& byDefault) {
    declare(name, help, value, byDefault);
    if (QLatin1String(name) == QLatin1String(kReport)) {
        declare(kNote, QStringLiteral("A note of the operator, which the page of --report begins with."), "TEXT", {});
    }
}

bool Options::parse(const QStringList& arguments) {
    if (arguments.contains(describeArgument())) {
        throw CommandDescription{QLatin1String(command_),
                                 QStringLiteral("kxmath %1 %2").arg(QLatin1String(command_), QLatin1String(usage_)),
                                 parser_.applicationDescription(),
                                 QLatin1String(details_),
                                 declaredArguments_,
                                 declared_,
                                 {}};
    }
    arguments_ = arguments;
    const bool isUnderstood = parser_.parse(arguments);
    if (const QStringList unknown = parser_.unknownOptionNames(); !unknown.isEmpty()) {
        const bool isShort = unknown.front().size() == 1;
        const QString name = isShort ? wholeName(unknown.front(), arguments) : unknown.front();
        const QString dashes = isShort ? QStringLiteral("-") : QStringLiteral("--");
        fail(QStringLiteral("unknown option '%1'%2").arg(dashes + name, suggestion(name, names_, "--")));
    }
    if (!isUnderstood) {
        QString why = parser_.errorText();
        why[0] = why[0].toLower();
        fail(why.endsWith(QLatin1Char('.')) ? why.chopped(1) : why);
    }
    refuseAttached(arguments);
    if (!parser_.isSet(kHelp)) {
        if (names_.contains(kNote) && isSet(kNote) && !isSet(kReport)) {
            fail(QStringLiteral("--note is for the page of --report, which is not given"));
        }
        return true;
    }
    char name[] = "kxmath";
    char* names[] = {name, nullptr};
    int count = 1;
    const QCoreApplication application(count, names); // helpText() asks it for the name of the program
    QString text = parser_.helpText();
    text.remove(0, text.indexOf(QLatin1Char('\n')) + 1); // this line names the program without the command
    printOutput(wrapped(QStringLiteral("Usage: kxmath %1 %2\n\n").arg(QLatin1String(command_), QLatin1String(usage_)) +
                        text + QLatin1String(details_)));
    return false;
}

bool Options::isSet(const char* name) const {
    return parser_.isSet(QLatin1String(name));
}

QString Options::text(const char* name) const {
    return parser_.value(QLatin1String(name));
}

const QStringList Options::texts(const char* name) const {
    return parser_.values(QLatin1String(name));
}

const QStringList Options::namesGiven() const {
    QStringList names;
    for (const QString& name : parser_.optionNames()) {
        if (name != kShort || !isArgument(mainOutput_)) {
            names.append(name == kShort ? mainOutput_ : name);
        }
    }
    return names;
}

QString Options::needed(const char* name) const {
    if (!isSet(name) || text(name).isEmpty()) {
        fail(optionText(name) + QStringLiteral(" is needed"));
    }
    return text(name);
}

QString Options::oneOf(const char* name, const QStringList& choices) const {
    checkChoice(text(name), optionText(name), choices);
    return text(name);
}

float Options::number(const char* name, const Bounds& bounds) const {
    const Bounds representable{std::max(bounds.min, -kLargest), std::min(bounds.max, kLargest), bounds.isAboveMin};
    const double value = toNumber(text(name), optionText(name), bounds);
    if (!holds(representable, value)) {
        failNeed(optionText(name), needText(QStringLiteral("a number"), representable), text(name));
    }
    return static_cast<float>(value);
}

std::optional<float> Options::numberIfSet(const char* name, const Bounds& bounds) const {
    return isSet(name) ? std::optional(number(name, bounds)) : std::nullopt;
}

int Options::wholeNumber(const char* name, int min, int max) const {
    return toWholeNumber(text(name), optionText(name), min, max);
}

std::vector<float> Options::numbers(const char* name, int count, const Bounds& bounds, char separator) const {
    const QStringList fields = text(name).split(QLatin1Char(separator));
    std::vector<float> values;
    for (const QString& field : fields) {
        bool isNumber = false;
        const float value = field.toFloat(&isNumber);
        if (isNumber && holds(bounds, static_cast<double>(value))) {
            values.push_back(value);
        }
    }
    if (fields.size() != count || static_cast<int>(values.size()) != count) {
        const QString need = needText(QStringLiteral("%1 numbers").arg(count), bounds);
        failNeed(optionText(name), QStringLiteral("%1 separated by '%2'").arg(need).arg(QLatin1Char(separator)),
                 text(name));
    }
    return values;
}

/// The values of the options that name outputs.
QStringList Options::outputNames() const {
    QStringList names;
    for (const char* const name : kOutputs) {
        if (names_.contains(QLatin1String(name))) {
            names += parser_.values(QLatin1String(name));
        }
    }
    return names;
}

/// All options that have a value, without the outputs and the note.
std::vector<kxreport::PageOption> Options::values() const {
    std::vector<kxreport::PageOption> options;
    for (const QString& name : names_) {
        const bool isOutput = std::any_of(std::begin(kOutputs), std::end(kOutputs),
                                          [&](const char* output) { return name == QLatin1String(output); });
        const bool isGiven = parser_.isSet(name);
        if (isOutput || name == kHelp || name == QLatin1String(kNote)) {
            continue;
        }
        const QStringList values = parser_.values(name);
        for (const QString& value : values) {
            options.push_back({QStringLiteral("--") + name, value, isGiven});
        }
        if (isGiven && values.isEmpty()) { // a flag
            options.push_back({QStringLiteral("--") + name, QStringLiteral("yes"), true});
        }
    }
    return options;
}

OutputFile Options::output(const char* name) const {
    if (isSet(name) && text(name).isEmpty()) {
        failNeed(optionText(name), QStringLiteral("the name of a file"), text(name));
    }
    OutputFile file(optionText(name), text(name));
    if (QLatin1String(name) == QLatin1String(kReport) && file.isWanted()) {
        file.setOrigin(
            reportOrigin(command_, {arguments_, parser_.positionalArguments(), outputNames(), values(), text(kNote)}));
    }
    return file;
}

const QStringList Options::arguments(const char* what, int min, int max) const {
    QStringList given = parser_.positionalArguments();
    if (isArgument(mainOutput_) && parser_.isSet(kShort)) {
        given.append(parser_.value(kShort));
    }
    if (given.size() < min || given.size() > max) {
        if (max == 0) {
            fail(QStringLiteral("unexpected argument '%1'").arg(given.constFirst()));
        }
        const QString count = min == max ? QString::number(min) : QStringLiteral("%1 or more").arg(min);
        fail(QStringLiteral("%1 %2 needed, got %3").arg(count, QLatin1String(what)).arg(given.size()));
    }
    return given;
}

double Options::toNumber(const QString& text, const QString& what, const Bounds& bounds) const {
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    if (!isNumber || !holds(bounds, value)) {
        failNeed(what, needText(QStringLiteral("a number"), bounds), text);
    }
    return value;
}

int Options::toWholeNumber(const QString& text, const QString& what, int min, int max) const {
    bool isNumber = false;
    const int value = text.toInt(&isNumber);
    if (!isNumber || value < min || value > max) {
        Bounds bounds;
        if (min != std::numeric_limits<int>::min()) {
            bounds.min = min;
        }
        if (max != std::numeric_limits<int>::max()) {
            bounds.max = max;
        }
        failNeed(what, needText(QStringLiteral("a whole number"), bounds), text);
    }
    return value;
}

void Options::checkChoice(const QString& text, const QString& what, const QStringList& choices) const {
    if (!choices.contains(text)) {
        fail(QStringLiteral("%1 needs one of %2, got '%3'%4")
                 .arg(what, choices.join(QStringLiteral(", ")), text, suggestion(text, choices)));
    }
}

void Options::failNeed(const QString& what, const QString& need, const QString& text) const {
    fail(QStringLiteral("%1 needs %2, got '%3'").arg(what, need, text));
}

void Options::fail(const QString& message) const {
    throw CommandError{WrongUse, QStringLiteral("%1, see kxmath %2 --help").arg(message, QLatin1String(command_))};
}

} // namespace kxtool
