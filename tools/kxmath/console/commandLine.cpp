// Running a command, and its arguments.
#include "tools/kxmath/console/commandLine.h"

#include "tools/kxmath/console/console.h"
#include "tools/kxmath/console/interruption.h"
#include "tools/kxmath/console/outOfMemory.h"

#include <KxInspect/Error.h>

#include <new>

namespace kxtool {

namespace {

ExitCode exitCodeOf(KxInspect::ErrorKind kind) {
    switch (kind) {
    case KxInspect::ErrorKind::NoResult:
        return NoResult;
    case KxInspect::ErrorKind::BadArgument:
        return WrongUse;
    case KxInspect::ErrorKind::Unwritable:
        return OutputFailed;
    case KxInspect::ErrorKind::NotFound:
    case KxInspect::ErrorKind::Unreadable:
    case KxInspect::ErrorKind::Damaged:
    case KxInspect::ErrorKind::Unsuitable:
        break;
    }
    return BadInput;
}

} // namespace

void failUse(const QString& message) {
    throw CommandError{WrongUse, message};
}

void failUse(const char* command, const QString& message) {
    failUse(QStringLiteral("%1, see kxmath %2 --help").arg(message, QLatin1String(command)));
}

int runCommand(const char* command, const std::function<int()>& body) {
    try {
        return body();
    } catch (const CommandError& error) {
        printLine(command, error.message);
        return error.code;
    } catch (const KxInspect::Error& error) {
        printLine(command, QString::fromUtf8(error.what()));
        return exitCodeOf(error.kind());
    } catch (const Interrupted& interrupted) {
        constexpr int kFirst = 128; // as shells tell signals
        return kFirst + interrupted.signal;
    } catch (const std::bad_alloc&) {
        return failMemory(command);
    }
}

bool parseOrHelp(QCommandLineParser& parser, const QStringList& arguments, const char* command, const char* usage,
                 const char* details) {
    const QCommandLineOption help = parser.addHelpOption();
    if (!parser.parse(arguments)) {
        const QString why = parser.errorText();
        failUse(command, why.endsWith(QLatin1Char('.')) ? why.chopped(1) : why);
    }
    if (!parser.isSet(help)) {
        return true;
    }
    QString text = parser.helpText();
    text.remove(0, text.indexOf(QLatin1Char('\n')) + 1); // this line names the program without the command
    printOutput(QStringLiteral("Usage: kxmath %1 %2\n").arg(QLatin1String(command), QLatin1String(usage)) + text +
                QLatin1String(details));
    return false;
}

OutputFile outputOption(const QCommandLineParser& parser, const char* option) {
    const QString name = QLatin1String(option);
    if (parser.isSet(name) && parser.value(name).isEmpty()) {
        failUse(QStringLiteral("--%1 needs the name of a file, got ''").arg(name));
    }
    return {QStringLiteral("--") + name, parser.value(name)};
}

} // namespace kxtool
