// How commands end when memory runs out.
#include "tools/kxmath/console/outOfMemory.h"

#include "tools/kxmath/console/exitCodes.h"

#include <QtCore/QThread>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

namespace kxtool {

namespace {

[[noreturn]] void endOrAbort() {
    try {
        if (const std::exception_ptr current = std::current_exception()) {
            std::rethrow_exception(current);
        }
    } catch (const std::bad_alloc&) {
        std::_Exit(failMemory());
    } catch (...) {
    }
    std::abort();
}

/// Qt keeps data for each thread, which it makes with the first object that needs them. Without memory for them Qt 6.4
/// crashes: until they are there, that is how memory runs out.
void makeThreadData() {
    struct sigaction action {};
    struct sigaction before {};
    action.sa_handler = [](int) { std::_Exit(failMemory()); };
    sigaction(SIGSEGV, &action, &before);
    QThread::currentThread();
    sigaction(SIGSEGV, &before, nullptr);
}

} // namespace

int failMemory(const char* command) {
    std::fprintf(stderr, "kxmath%s%s: not enough memory\n", command != nullptr ? " " : "", // stderr has no buffer
                 command != nullptr ? command : "");
    return OutOfMemory;
}

void installMemoryGuard() {
    std::set_terminate(endOrAbort);
    makeThreadData();
}

} // namespace kxtool
