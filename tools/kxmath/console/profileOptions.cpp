// Options of the subcommands that read profiles.
#include "tools/kxmath/console/profileOptions.h"

#include "tools/kxmath/console/commandLine.h"

#include <algorithm>

namespace kxtool {

using KxMath::KxPointXY;

void orient(KxMath::KxProfile& profile, Orientation orientation) {
    for (KxPointXY& p : profile.points) {
        p = KxPointXY(orientation.isMirrored ? -p.x : p.x, orientation.isUp ? -p.y : p.y);
    }
    if (!profile.isEmpty() && profile.points.first().x > profile.points.last().x) {
        std::reverse(profile.points.begin(), profile.points.end()); // measured from the outside in
    }
}

void addColumnsOption(QCommandLineParser& parser) {
    parser.addOption({QStringLiteral("columns"),
                      QStringLiteral("The columns of x and y in text files, counted from 1."), QStringLiteral("x,y"),
                      QStringLiteral("1,2")});
}

Columns columnsOption(const QCommandLineParser& parser) {
    const QStringList numbers = parser.value(QStringLiteral("columns")).split(QLatin1Char(','));
    const Columns columns{std::max(numbers.value(0).toInt(), 0) - 1, std::max(numbers.value(1).toInt(), 0) - 1};
    if (numbers.size() != 2 || columns.x < 0 || columns.y < 0) {
        failUse(QStringLiteral("--columns needs two numbers from 1 on, like 1,2"));
    }
    return columns;
}

void addColumnsOption(Options& options) {
    options.addOption("columns", QStringLiteral("The columns of x and y in text files, counted from 1."), "x,y",
                      QStringLiteral("1,2"));
}

KxInspect::Columns columnsOption(const Options& options) {
    const QString text = options.text("columns");
    const QStringList numbers = text.split(QLatin1Char(','));
    const KxInspect::Columns columns{std::max(numbers.value(0).toInt(), 0) - 1,
                                     std::max(numbers.value(1).toInt(), 0) - 1};
    if (numbers.size() != 2 || columns.x < 0 || columns.y < 0) {
        options.failNeed(QStringLiteral("--columns"), QStringLiteral("two numbers from 1 on, like 1,2"), text);
    }
    return columns;
}

float numberOption(const QCommandLineParser& parser, const QString& name, float min, float max) {
    bool isNumber = false;
    const float value = parser.value(name).toFloat(&isNumber);
    if (!isNumber || !(value >= min && value <= max)) {
        failUse(QStringLiteral("--%1 needs a number from %2 to %3").arg(name).arg(double(min)).arg(double(max)));
    }
    return value;
}

} // namespace kxtool
