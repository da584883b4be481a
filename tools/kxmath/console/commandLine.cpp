// Running a command.
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

} // namespace kxtool
