// What a command declares, as data: for manual pages and completions.
#pragma once

#include <QtCore/QCommandLineOption>
#include <QtCore/QStringList>

#include <utility>
#include <vector>

namespace kxtool {

/// The declarations of a command or of a part of one. A command throws it in place of running when it is asked for it.
struct CommandDescription {
    QString name; ///< "train", "settings init"
    QString usage; ///< "kxmath train REC1 REC2 --settings FILE [options]"
    QString text; ///< what it does, as above the options in its help
    QString details; ///< as below the options in its help; may be empty
    std::vector<std::pair<QString, QString>> arguments; ///< names and help of the positional arguments
    std::vector<QCommandLineOption> options; ///< in the order of the help
    QStringList parts; ///< names of parts: "init", "check", "fit"; empty of most commands
};

/// The argument that asks for the description. It holds a zero byte, which no argument of a program can.
QString describeArgument();

/// The description of a command, or of the part of it that `part` names.
/// @param run as in Command
CommandDescription describeCommand(int (*run)(const QStringList& arguments), const QString& part = {});

} // namespace kxtool
