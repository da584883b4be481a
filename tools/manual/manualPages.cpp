// Manual pages in the language of man(7).
#include "tools/manual/manualPages.h"

#include "tools/kxmath/console/helpText.h"
#include "tools/kxmath/help/topics.h"

#include <KxMath/KxMathVersion.h>

namespace kxmanual {

namespace {

/// Text that the formatter prints as it is.
QString escaped(QString text) {
    text.replace(QLatin1Char('\\'), QStringLiteral("\\e"));
    text.replace(QLatin1Char('-'), QStringLiteral("\\-"));
    text.replace(QLatin1Char('\''), QStringLiteral("\\(aq"));
    text.replace(QLatin1Char('`'), QStringLiteral("\\(ga"));
    text.replace(QLatin1Char('^'), QStringLiteral("\\(ha"));
    text.replace(QLatin1Char('~'), QStringLiteral("\\(ti"));
    return text.startsWith(QLatin1Char('.')) ? QStringLiteral("\\&") + text : text;
}

/// Paragraphs are filled; lists and drawings, which are indented, keep their lines.
QString formatted(const QString& text) {
    constexpr qsizetype kColumns = 72; // of a screen of 80, behind the margin of a manual page
    QString result;
    const QStringList blocks = text.split(QStringLiteral("\n\n"), Qt::SkipEmptyParts);
    for (const QString& block : blocks) {
        bool isList = false;
        result += QStringLiteral(".PP\n");
        const QStringList lines = kxtool::wrapped(block, kColumns).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        for (const QString& line : lines) {
            if (line.startsWith(QLatin1Char(' ')) && !isList) {
                result += QStringLiteral(".nf\n");
                isList = true;
            } else if (!line.startsWith(QLatin1Char(' ')) && isList) {
                result += QStringLiteral(".fi\n");
                isList = false;
            }
            result += escaped(line) + QLatin1Char('\n');
        }
        result += isList ? QStringLiteral(".fi\n") : QString();
    }
    return result;
}

QString heading(const QString& name) {
    return QStringLiteral(".TH %1 1 \"\" \"kxmath %2\" \"User Commands\"\n.nh\n.ad l\n")
        .arg(escaped(name.toUpper()), escaped(QLatin1String(KxMath_GetVersionString())));
}

QString section(const QString& title) {
    return QStringLiteral(".SH %1\n").arg(escaped(title.toUpper()));
}

/// An entry of a list: a name in bold, and what it is.
QString entry(const QString& name, const QString& text) {
    return QStringLiteral(".TP\n\\fB%1\\fR\n%2\n").arg(escaped(name), escaped(text));
}

QString optionEntry(const QCommandLineOption& option) {
    const QString value = option.valueName().isEmpty() ? QString() : QLatin1Char(' ') + option.valueName();
    return entry(writtenNames(option).join(QStringLiteral(", ")) + value, option.description());
}

QString entries(const kxtool::CommandDescription& description) {
    QString text;
    for (const auto& [name, help] : description.arguments) {
        text += entry(name, help);
    }
    for (const QCommandLineOption& option : description.options) {
        text += optionEntry(option);
    }
    return text;
}

} // namespace

QByteArray programPage(const std::vector<CommandPages>& definitions) {
    QString text = heading(QStringLiteral("kxmath")) + section(QStringLiteral("Name")) +
                   escaped(QStringLiteral("kxmath - data of laser triangulation profile sensors")) + QLatin1Char('\n') +
                   section(QStringLiteral("Synopsis")) + escaped(QStringLiteral("kxmath COMMAND [options]")) +
                   QStringLiteral("\n.br\n") + escaped(QStringLiteral("kxmath help [COMMAND | TOPIC]")) +
                   QStringLiteral("\n.br\n") + escaped(QStringLiteral("kxmath --version")) + QLatin1Char('\n') +
                   section(QStringLiteral("Commands"));
    for (const CommandPages& pages : definitions) {
        text += entry(QStringLiteral("kxmath-%1(1)").arg(pages.command.name), pages.summary);
    }
    for (const kxtool::HelpTopic& topic : kxtool::helpTopics()) {
        text += section(QString(QLatin1String(topic.name)).replace(QLatin1Char('-'), QLatin1Char(' '))) +
                formatted(QLatin1String(topic.text));
    }
    return text.toUtf8();
}

QByteArray commandPage(const CommandPages& pages) {
    const kxtool::CommandDescription& command = pages.command;
    QString text = heading(QStringLiteral("kxmath-") + command.name) + section(QStringLiteral("Name")) +
                   escaped(QStringLiteral("kxmath-%1 - %2").arg(command.name, pages.summary)) + QLatin1Char('\n') +
                   section(QStringLiteral("Synopsis")) + escaped(command.usage) + QLatin1Char('\n');
    for (const kxtool::CommandDescription& part : pages.parts) {
        text += QStringLiteral(".br\n") + escaped(part.usage) + QLatin1Char('\n');
    }
    text += section(QStringLiteral("Description")) + formatted(command.text) + section(QStringLiteral("Options")) +
            entries(command);
    for (const kxtool::CommandDescription& part : pages.parts) {
        text += section(part.name) + formatted(part.text) + entries(part) + formatted(part.details);
    }
    if (!command.details.isEmpty()) {
        text += section(QStringLiteral("Details")) + formatted(command.details);
    }
    text += section(QStringLiteral("See also")) + QStringLiteral(".BR kxmath (1)\n");
    return text.toUtf8();
}

} // namespace kxmanual
