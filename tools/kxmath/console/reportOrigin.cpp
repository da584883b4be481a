// What a report says of how it was made.
#include "tools/kxmath/console/reportOrigin.h"

#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/printable.h"

#include <KxInspect/InputFile.h>
#include <KxMath/KxMathVersion.h>

#include <QtCore/QDateTime>
#include <QtCore/QUrl>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <unistd.h>

namespace kxtool {

namespace {

[[noreturn]] void failReading(const QString& name, const std::error_code& error) {
    throw CommandError{
        BadInput,
        QStringLiteral("'%1' cannot be read: %2").arg(printable(name), QString::fromStdString(error.message()))};
}

/// What an argument names; not_found for all that cannot be a name. A command fails where the system cannot tell.
std::filesystem::file_type typeOf(const QString& name) {
    std::error_code error;
    const std::filesystem::file_type type = std::filesystem::status(toBytes(name), error).type();
    const bool isNoName = error == std::errc::filename_too_long || error == std::errc::permission_denied ||
                          error == std::errc::too_many_symbolic_link_levels;
    if (type == std::filesystem::file_type::none && !isNoName) {
        failReading(name, error);
    }
    return isNoName ? std::filesystem::file_type::not_found : type;
}

/// A file name without its folder; another text as it is. A text of an option names a file when its folder is there.
QString withoutFolder(const QString& text, const ReportArguments& arguments) {
    if (text.contains(QLatin1String("://"))) { // of a database: nothing that lets others in
        return QUrl(text).toString(QUrl::RemovePassword | QUrl::RemoveQuery);
    }
    const qsizetype last = text.lastIndexOf(QLatin1Char('/'), -2); // one at the end belongs to the name of a folder
    const bool isPath = last >= 0 && (arguments.files.contains(text) ||
                                      typeOf(text.left(last + 1)) == std::filesystem::file_type::directory);
    return isPath ? text.mid(last + 1) : text;
}

/// As a shell takes it.
QString quoted(const QString& text) {
    for (const QChar c : text) {
        if (!c.isLetterOrNumber() && !QStringLiteral("-_.,:/=+@%").contains(c)) {
            QString inside = text;
            return QLatin1Char('\'') + inside.replace(QLatin1Char('\''), QLatin1String("'\\''")) + QLatin1Char('\'');
        }
    }
    return text.isEmpty() ? QStringLiteral("''") : text;
}

/// The part of an argument that may name a file: behind "--option=" or "-o=".
QString valueOf(const QString& argument) {
    const qsizetype sign = argument.indexOf(QLatin1Char('='));
    return argument.startsWith(QLatin1Char('-')) && sign > 0 ? argument.mid(sign + 1) : argument;
}

/// Whether the user may read a file that is there; where not, the command itself says so.
bool mayBeRead(const QString& name) {
    if (access(toBytes(name).c_str(), R_OK) == 0) {
        return true;
    }
    if (errno != EACCES) {
        failReading(name, std::error_code(errno, std::generic_category()));
    }
    return false;
}

QString commandLine(const char* command, const ReportArguments& arguments) {
    QString line = QStringLiteral("kxmath ") + QLatin1String(command);
    for (qsizetype i = 1; i < arguments.all.size(); ++i) {
        const QString value = valueOf(arguments.all.at(i));
        const QString option = arguments.all.at(i).chopped(value.size());
        line += QLatin1Char(' ') + quoted(printable(option + withoutFolder(value, arguments)));
    }
    return line;
}

QString timeText() {
    bool isSet = false;
    const qint64 seconds = qEnvironmentVariable("SOURCE_DATE_EPOCH").toLongLong(&isSet);
    const QDateTime time = isSet ? QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC) : QDateTime::currentDateTimeUtc();
    return time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")) + QStringLiteral(" UTC");
}

std::vector<kxreport::PageInput> inputsIn(const ReportArguments& arguments) {
    std::vector<kxreport::PageInput> inputs;
    QStringList seen;
    for (qsizetype i = 1; i < arguments.all.size(); ++i) {
        const QString name = valueOf(arguments.all.at(i));
        if (arguments.outputs.contains(name) || seen.contains(name)) {
            continue;
        }
        const std::filesystem::file_type type = typeOf(name);
        const bool isGone = type == std::filesystem::file_type::not_found && arguments.files.contains(name);
        if (!isGone && type != std::filesystem::file_type::regular) {
            continue;
        }
        seen.append(name);
        inputs.push_back({printable(withoutFolder(name, arguments)), {}});
        if (!isGone && mayBeRead(name)) {
            inputs.back().sha256 = QString::fromStdString(KxInspect::identifyFile(toBytes(name)).sha256);
        }
    }
    return inputs;
}

} // namespace

kxreport::PageOrigin reportOrigin(const char* command, const ReportArguments& arguments) {
    std::vector<kxreport::PageOption> options = arguments.options;
    for (kxreport::PageOption& option : options) {
        option.value = printable(withoutFolder(option.value, arguments));
    }
    return {timeText(),
            commandLine(command, arguments),
            QLatin1String(KxMath_GetVersionString()),
            arguments.note,
            inputsIn(arguments),
            std::move(options)};
}

} // namespace kxtool
