// kxmath info: what is in a file.
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/options.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/console/textOptions.h"

#include <KxInspect/FileContents.h>

#include <algorithm>
#include <cmath>

namespace kxtool {

namespace {

using KxInspect::FileContents;
using KxInspect::PartKind;

constexpr const char* kName = "info";

const char* const kDescription =
    "Lists what files hold: cloud sections of each kind, profile records, text and the other kinds that\n"
    "kxmath convert reads; how a text is read; the number of points, their ranges, how many are not finite, their "
    "spacing,\n"
    "and the first byte or line of a damaged file that cannot be read. The content determines the\n"
    "kind, or else the file name.\n"
    "\n"
    "Exit codes: 0 done, 1 a file is empty, 2 wrong use, 3 a file is unreadable or damaged, 6 not enough\n"
    "memory.";

QString partText(const FileContents& contents, PartKind kind) {
    switch (kind) {
    case PartKind::CloudSection2D:
        return QStringLiteral("2-D cloud section");
    case PartKind::CloudSection3D:
        return QStringLiteral("3-D cloud section");
    case PartKind::CloudSectionColours:
        return QStringLiteral("cloud section with colours");
    case PartKind::ProfileRecord:
        return QStringLiteral("profile record");
    case PartKind::WholeFile:
        break;
    }
    return QString::fromStdString(kindName(contents.kind.value())) + QStringLiteral(" file");
}

QString rangeText(char axis, const KxInspect::Range& range) {
    return range.isEmpty() ? QString()
                           : QStringLiteral("  %1 from %2 to %3 mm\n")
                                 .arg(QLatin1Char(axis))
                                 .arg(static_cast<double>(range.min))
                                 .arg(static_cast<double>(range.max));
}

QString signName(char sign) {
    switch (sign) {
    case ' ':
        return QStringLiteral("blanks");
    case '\t':
        return QStringLiteral("tabs");
    default:
        return QStringLiteral("'%1'").arg(QLatin1Char(sign));
    }
}

/// How a text was read.
QString formText(const KxInspect::TextForm& form) {
    QString text = QStringLiteral("  columns: %1, separator: %2, decimal sign: %3, title lines: %4")
                       .arg(form.columns)
                       .arg(signName(form.separator), signName(form.decimalSign))
                       .arg(form.titleLines);
    if (form.remarks > 0) {
        text += QStringLiteral(", remarks left out: %1").arg(form.remarks);
    }
    return text + QLatin1Char('\n');
}

QString contentsText(const QString& name, const FileContents& contents) {
    QString text = printable(name) + QStringLiteral(":\n");
    for (const KxInspect::PartCount& part : contents.parts) {
        text += QStringLiteral("  %1 x %2\n").arg(part.count).arg(partText(contents, part.kind));
    }
    if (contents.text) {
        text += formText(*contents.text);
    }
    text += QStringLiteral("  %1 points, %2 of them not finite\n").arg(contents.points).arg(contents.missing);
    text += rangeText('x', contents.x) + rangeText('y', contents.y) + rangeText('z', contents.z);
    if (!std::isnan(contents.spacing)) {
        text += QStringLiteral("  median spacing in x: %1 mm\n").arg(static_cast<double>(contents.spacing));
    }
    if (contents.damage) {
        text += QStringLiteral("  ") + printable(QString::fromStdString(contents.damage->reason())) + QLatin1Char('\n');
    }
    return text;
}

/// Prints what is in one file. @return the exit code for this file
int printContents(const QString& name, const KxInspect::TextOptions& text) {
    Progress progress;
    const FileContents contents = KxInspect::readFileContents(toBytes(name), progress.callback(), text);
    progress.wipe();
    printOutput(contentsText(name, contents));
    if (contents.damage) {
        throw KxInspect::Error(*contents.damage);
    }
    return contents.parts.empty() ? NoResult : Done;
}

int runChecked(const QStringList& arguments) {
    Options options(kName, "FILE... [options]", QLatin1String(kDescription));
    options.addArgument("FILE...", QStringLiteral("The files to examine."));
    addTextOptions(options, true);
    if (!options.parse(arguments)) {
        return Done;
    }
    const KxInspect::TextOptions text = textOptions(options, true);
    int worst = Done;
    for (const QString& name : options.arguments("files", 1)) {
        worst = std::max(worst, runCommand(kName, [&] { return printContents(name, text); }));
    }
    return worst;
}

} // namespace

int runInfo(const QStringList& arguments) {
    return runCommand(kName, [&] { return runChecked(arguments); });
}

} // namespace kxtool
