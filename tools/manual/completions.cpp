// Completions of the command line for shells.
#include "tools/manual/completions.h"

#include "tools/kxmath/help/topics.h"

namespace kxmanual {

namespace {

using kxtool::CommandDescription;

/// In single quotes, as sh, bash and zsh have them.
QString quoted(QString text) {
    return QLatin1Char('\'') + text.replace(QLatin1Char('\''), QStringLiteral("'\\''")) + QLatin1Char('\'');
}

QStringList optionNames(const CommandDescription& description) {
    QStringList names;
    for (const QCommandLineOption& option : description.options) {
        names += writtenNames(option);
    }
    return names;
}

/// What may stand behind kxmath help.
QStringList helpNames(const std::vector<CommandPages>& definitions) {
    QStringList names;
    for (const CommandPages& pages : definitions) {
        names += pages.command.name;
    }
    for (const kxtool::HelpTopic& topic : kxtool::helpTopics()) {
        names += QLatin1String(topic.name);
    }
    return names;
}

/// Commands and parts in one list.
std::vector<const CommandDescription*> allOf(const std::vector<CommandPages>& definitions) {
    std::vector<const CommandDescription*> all;
    for (const CommandPages& pages : definitions) {
        all.push_back(&pages.command);
        for (const CommandDescription& part : pages.parts) {
            all.push_back(&part);
        }
    }
    return all;
}

QString zshArguments(const CommandDescription& description) {
    QString text = QStringLiteral("_arguments -S");
    for (const QCommandLineOption& option : description.options) {
        QString help = firstSentence(option.description());
        for (const char* const special : {"\\", "[", "]", ":"}) {
            help.replace(QLatin1String(special), QLatin1Char('\\') + QLatin1String(special));
        }
        const QStringList names = writtenNames(option);
        for (const QString& name : names) {
            const bool hasValue = !option.valueName().isEmpty();
            const QString attached =
                hasValue && name.startsWith(QStringLiteral("--")) ? QStringLiteral("=") : QString();
            const QString value =
                hasValue ? QString(option.valueName()).replace(QLatin1Char(':'), QStringLiteral("\\:")) : QString();
            text += QStringLiteral(" \\\n            ") +
                    quoted(QStringLiteral("*%1%2[%3]").arg(name, attached, help) +
                           (hasValue ? QStringLiteral(":%1:_files").arg(value) : QString()));
        }
    }
    return text + QStringLiteral(" \\\n            '*:file:_files'");
}

/// A text for fish, in single quotes.
QString fishQuoted(QString text) {
    text.replace(QLatin1Char('\\'), QStringLiteral("\\\\")).replace(QLatin1Char('\''), QStringLiteral("\\'"));
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

} // namespace

QByteArray bashCompletion(const std::vector<CommandPages>& definitions) {
    QString commands;
    QString parts;
    QString options;
    for (const CommandPages& pages : definitions) {
        commands += pages.command.name + QLatin1Char(' ');
        if (!pages.parts.empty()) {
            parts += QStringLiteral("        %1) parts='%2' ;;\n")
                         .arg(pages.command.name, pages.command.parts.join(QLatin1Char(' ')));
        }
    }
    for (const CommandDescription* const description : allOf(definitions)) {
        options += QStringLiteral("        %1) options='%2' ;;\n")
                       .arg(quoted(description->name), optionNames(*description).join(QLatin1Char(' ')));
    }
    return QStringLiteral(R"(# Completion of kxmath for bash.
_kxmath() {
    local word=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]} parts= options= part
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        COMPREPLY=($(compgen -W '%1help --help --version' -- "$word"))
        return
    fi
    case $command in
        help) parts='%2' ;;
%3    esac
    if [ "$COMP_CWORD" -eq 2 ] && [[ $word != -* ]] && [ -n "$parts" ]; then
        COMPREPLY=($(compgen -W "$parts" -- "$word"))
        return
    fi
    if [ "$COMP_CWORD" -gt 2 ]; then
        for part in $parts; do
            if [ "$part" = "${COMP_WORDS[2]}" ]; then
                command="$command $part"
            fi
        done
    fi
    case $command in
%4    esac
    if [[ $word == -* ]]; then
        COMPREPLY=($(compgen -W "$options" -- "$word"))
    fi
}
complete -o default -F _kxmath kxmath
)")
        .arg(commands, helpNames(definitions).join(QLatin1Char(' ')), parts, options)
        .toUtf8();
}

QByteArray zshCompletion(const std::vector<CommandPages>& definitions) {
    QString commands;
    QString cases;
    QStringList withParts;
    for (const CommandPages& pages : definitions) {
        commands += QStringLiteral("        %1\n")
                        .arg(quoted(pages.command.name + QLatin1Char(':') +
                                    QString(pages.summary).replace(QLatin1Char(':'), QStringLiteral("\\:"))));
    }
    for (const CommandPages& pages : definitions) {
        if (!pages.parts.empty()) {
            withParts += pages.command.name;
            cases += QStringLiteral("        %1) if (( CURRENT == 2 )); then compadd -- %2; return; fi ;;\n")
                         .arg(pages.command.name, pages.command.parts.join(QLatin1Char(' ')));
        }
    }
    QString options;
    for (const CommandDescription* const description : allOf(definitions)) {
        options += QStringLiteral("        %1) %2 ;;\n").arg(quoted(description->name), zshArguments(*description));
    }
    return QStringLiteral(R"(#compdef kxmath
# Completion of kxmath for zsh.
_kxmath() {
    local -a commands
    commands=(
%1        'help:tell about a command or a topic'
    )
    if (( CURRENT == 2 )); then
        _describe command commands
        return
    fi
    shift words
    (( CURRENT-- ))
    local command=$words[1]
    case $command in
        help) compadd -- %2; return ;;
%3    esac
    case $command in
        %5)
            command="$command $words[2]"
            shift words
            (( CURRENT-- )) ;;
    esac
    case $command in
%4    esac
}
_kxmath "$@"
)")
        .arg(commands, helpNames(definitions).join(QLatin1Char(' ')), cases, options, withParts.join(QLatin1Char('|')))
        .toUtf8();
}

QByteArray fishCompletion(const std::vector<CommandPages>& definitions) {
    QString text = QStringLiteral("# Completion of kxmath for fish.\n");
    const auto offer = [&](const QString& condition, const QString& what, const QString& help) {
        text += QStringLiteral("complete -c kxmath -n %1 %2%3\n")
                    .arg(fishQuoted(condition), what,
                         help.isEmpty() ? QString() : QStringLiteral(" -d ") + fishQuoted(help));
    };
    for (const CommandPages& pages : definitions) {
        offer(QStringLiteral("__fish_use_subcommand"), QStringLiteral("-f -a ") + pages.command.name, pages.summary);
        if (!pages.parts.empty()) {
            const QString parts = pages.command.parts.join(QLatin1Char(' '));
            offer(QStringLiteral("__fish_seen_subcommand_from %1; and not __fish_seen_subcommand_from %2")
                      .arg(pages.command.name, parts),
                  QStringLiteral("-f -a ") + fishQuoted(parts), {});
        }
    }
    offer(QStringLiteral("__fish_use_subcommand"), QStringLiteral("-f -a help"),
          QStringLiteral("tell about a command or a topic"));
    offer(QStringLiteral("__fish_seen_subcommand_from help"),
          QStringLiteral("-f -a ") + fishQuoted(helpNames(definitions).join(QLatin1Char(' '))), {});
    for (const CommandDescription* const description : allOf(definitions)) {
        const QString condition =
            QStringLiteral("__fish_seen_subcommand_from ") +
            QString(description->name).replace(QLatin1Char(' '), QStringLiteral("; and __fish_seen_subcommand_from "));
        for (const QCommandLineOption& option : description->options) {
            QString what;
            for (const QString& name : option.names()) {
                what += (name.size() == 1 ? QStringLiteral("-s ") : QStringLiteral("-l ")) + name + QLatin1Char(' ');
            }
            what += option.valueName().isEmpty() ? QString() : QStringLiteral("-r ");
            offer(condition, what.chopped(1), firstSentence(option.description()));
        }
    }
    return text.toUtf8();
}

} // namespace kxmanual
