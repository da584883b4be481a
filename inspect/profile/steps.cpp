// Chains of operations as text.
#include "inspect/base/error.h"
#include "inspect/base/nearestName.h"
#include "inspect/profile/operations.h"

#include <QtCore/QStringList>

#include <algorithm>
#include <cmath>
#include <limits>

namespace KxInspect {

namespace {

using detail::Operation;

[[noreturn]] void failAt(std::size_t number, const QString& what) {
    detail::fail(ErrorKind::BadArgument, {{}, {}, "do"}, QStringLiteral("step %1: %2").arg(number + 1).arg(what));
}

QString numberText(double value) {
    constexpr int kDigits = 9; // tell floats from each other
    return std::isnan(value) ? QStringLiteral("nan") : QString::number(value, 'g', kDigits);
}

bool fits(const OperationArgument& argument, double value) {
    if (std::isnan(value)) {
        return argument.mayBeMissing;
    }
    const bool isAbove = argument.isAboveMin ? value > argument.min : value >= argument.min;
    return isAbove && value <= argument.max && (!argument.isWhole || value == std::floor(value)) &&
           !(argument.isAboveMin && static_cast<float>(value) <= static_cast<float>(argument.min));
}

const ProfileOperation& operationOf(const std::vector<ProfileOperation>& all, const QString& name, std::size_t number) {
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const ProfileOperation& o) { return o.name == name.toStdString(); });
    if (found != all.end()) {
        return *found;
    }
    QStringList names;
    for (const ProfileOperation& operation : all) {
        names.append(QString::fromStdString(operation.name));
    }
    const QString nearest = detail::nearestName(name, names);
    failAt(number, nearest.isEmpty()
                       ? QStringLiteral("there is no operation '%1'").arg(name)
                       : QStringLiteral("there is no operation '%1' (is '%2' meant?)").arg(name, nearest));
}

double readArgument(const OperationArgument& argument, const QString& text, const ProfileOperation& operation,
                    std::size_t number) {
    bool isNumber = false;
    const double value = text == QLatin1String("nan") ? std::nan("") : text.toDouble(&isNumber);
    const bool isRead = isNumber || text == QLatin1String("nan");
    if (!isRead || !fits(argument, value)) {
        failAt(number, QStringLiteral("%1 of %2 needs %3, got '%4'")
                           .arg(QString::fromStdString(argument.name), QString::fromStdString(textOf(operation)),
                                QString::fromStdString(textOf(argument)), text));
    }
    return value;
}

ProfileStep readStep(const std::vector<ProfileOperation>& all, const QString& text, std::size_t number) {
    const QString name = text.section(QLatin1Char(':'), 0, 0);
    const ProfileOperation& operation = operationOf(all, name, number);
    QStringList fields;
    if (text.contains(QLatin1Char(':'))) {
        fields = text.section(QLatin1Char(':'), 1).split(QLatin1Char(','));
    }
    const auto given = static_cast<std::size_t>(fields.size());
    const auto& arguments = operation.arguments;
    const auto needed = static_cast<std::size_t>(
        std::count_if(arguments.begin(), arguments.end(), [](const OperationArgument& a) { return !a.byDefault; }));
    if (given < needed || given > arguments.size()) {
        const QString count = needed == arguments.size() ? QString::number(needed)
                                                         : QStringLiteral("%1 to %2").arg(needed).arg(arguments.size());
        failAt(number, QStringLiteral("%1 takes %2 arguments, got %3")
                           .arg(QString::fromStdString(textOf(operation)), count)
                           .arg(given));
    }
    ProfileStep step{operation.name, {}};
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        step.arguments.push_back(
            i < given ? readArgument(arguments[i], fields[static_cast<qsizetype>(i)].trimmed(), operation, number)
                      : *arguments[i].byDefault);
    }
    return step;
}

bool isSame(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

/// How many arguments a step needs in text: the last ones that are their defaults are left out.
std::size_t spokenArguments(const ProfileStep& step) {
    std::size_t count = step.arguments.size();
    for (const ProfileOperation& operation : profileOperations()) {
        while (operation.name == step.operation && count > 0 && count <= operation.arguments.size() &&
               operation.arguments[count - 1].byDefault &&
               isSame(*operation.arguments[count - 1].byDefault, step.arguments[count - 1])) {
            --count;
        }
    }
    return count;
}

} // namespace

bool ProfileStep::operator==(const ProfileStep& other) const {
    return operation == other.operation &&
           std::equal(arguments.begin(), arguments.end(), other.arguments.begin(), other.arguments.end(), isSame);
}

std::vector<ProfileOperation> profileOperations() {
    std::vector<ProfileOperation> descriptions;
    for (const Operation& operation : detail::allOperations()) {
        descriptions.push_back(operation.description);
    }
    return descriptions;
}

std::string textOf(const OperationArgument& argument) {
    QString need = argument.isWhole ? QStringLiteral("a whole number") : QStringLiteral("a number");
    if (argument.isAboveMin) {
        need += QStringLiteral(" above %1, up to %2").arg(numberText(argument.min), numberText(argument.max));
    } else {
        need += QStringLiteral(" from %1 to %2").arg(numberText(argument.min), numberText(argument.max));
    }
    if (!argument.unit.empty()) {
        need += QStringLiteral(" (%1)").arg(QString::fromStdString(argument.unit));
    }
    if (argument.mayBeMissing) {
        need += QStringLiteral(" or nan for no bound");
    }
    return need.toStdString();
}

std::string textOf(const ProfileOperation& operation) {
    QString text = QString::fromStdString(operation.name);
    int open = 0;
    for (std::size_t i = 0; i < operation.arguments.size(); ++i) {
        const OperationArgument& argument = operation.arguments[i];
        const bool isOptional = argument.byDefault.has_value();
        open += isOptional ? 1 : 0;
        text += isOptional ? QStringLiteral("[") : QString();
        text += i == 0 ? QLatin1Char(':') : QLatin1Char(',');
        text += QString::fromStdString(argument.name);
    }
    return (text + QString(open, QLatin1Char(']'))).toStdString();
}

std::vector<ProfileStep> profileSteps(const std::string& text) {
    const std::vector<ProfileOperation> all = profileOperations();
    std::vector<ProfileStep> steps;
    for (const QString& part : QString::fromStdString(text).simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        steps.push_back(readStep(all, part, steps.size()));
    }
    return steps;
}

std::string textOf(const ProfileStep& step) {
    QString text = QString::fromStdString(step.operation);
    const std::size_t count = spokenArguments(step);
    for (std::size_t i = 0; i < count; ++i) {
        text += (i == 0 ? QLatin1Char(':') : QLatin1Char(',')) + numberText(step.arguments[i]);
    }
    return text.toStdString();
}

} // namespace KxInspect
