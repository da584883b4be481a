// kxmath info: what is in a file.
#include "tools/kxmath/commands.h"
#include "tools/kxmath/console/commandLine.h"
#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/options.h"
#include "tools/kxmath/console/printable.h"
#include "tools/kxmath/console/textOptions.h"
#include "tools/kxmath/info/infoJson.h"

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
    "and the first byte or line of a damaged file that cannot be read, with the number of its record. The content\n"
    "determines the kind, or else the file name.\n"
    "\n"
    "JSON fields: command, version, files (file, kind, parts (kind, count), text (columns, separator, decimalSign,\n"
    "titleLines, remarks), points, missingPoints, xRangeMm, yRangeMm, zRangeMm, medianSpacingMm, error (message, "
    "byte,\n"
    "record, line, column)). Bytes count from 0, all else from 1. A missing value is null.\n"
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

/// Looks into one file and reports what is wrong with it. @return what was found, nothing for a file that cannot be read
InfoEntry examine(const QString& name, const KxInspect::TextOptions& text, ExitCode& code) {
    InfoEntry entry{printable(name), {}, {}};
    const int ended = runCommand(kName, [&] {
        Progress progress;
        try {
            entry.contents = KxInspect::readFileContents(toBytes(name), progress.callback(), text);
            entry.error = entry.contents->damage;
        } catch (const KxInspect::Error& error) {
            entry.error = error;
        }
        progress.wipe();
        if (entry.error) {
            throw KxInspect::Error(*entry.error);
        }
        return entry.contents->parts.empty() ? NoResult : Done;
    });
    code = std::max(code, static_cast<ExitCode>(ended));
    return entry;
}

int runChecked(const QStringList& arguments) {
    Options options(kName, "FILE... [options]", QLatin1String(kDescription));
    options.addArgument("FILE...", QStringLiteral("The files to examine."));
    options.addOption("json", QStringLiteral("Writes what the files hold as JSON; - is the standard output."), "FILE");
    addTextOptions(options, true);
    if (!options.parse(arguments)) {
        return Done;
    }
    const QStringList files = options.arguments("files", 1);
    const KxInspect::TextOptions text = textOptions(options, files, true);
    const OutputFile json = options.output("json");
    checkOutputs({&json}, files);
    ExitCode code = Done;
    std::vector<InfoEntry> entries;
    for (const QString& name : files) {
        const InfoEntry entry = examine(name, text, code);
        if (entry.contents && !json.isStandardOutput()) {
            printOutput(contentsText(name, *entry.contents));
        }
        entries.push_back(entry);
    }
    if (json.isWanted()) {
        json.write(infoJson(entries));
    }
    return code;
}

} // namespace

int runInfo(const QStringList& arguments) {
    return runCommand(kName, [&] { return runChecked(arguments); });
}

} // namespace kxtool
