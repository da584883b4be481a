// How commands end when memory runs out.
#include "tools/kxmath/console/outOfMemory.h"

#include "tools/kxmath/console/exitCodes.h"

#include <QtCore/QThread>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <mutex>
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

} // namespace

int failMemory(const char* command) {
    std::fprintf(stderr, "kxmath%s%s: not enough memory\n", command != nullptr ? " " : "", // stderr has no buffer
                 command != nullptr ? command : "");
    return OutOfMemory;
}

void makeThreadData() {
    static std::mutex one; // at a time: the handler is the whole program's
    const std::lock_guard<std::mutex> lock(one);
    struct sigaction action {};
    struct sigaction before {};
    action.sa_handler = [](int) { std::_Exit(failMemory()); };
    sigaction(SIGSEGV, &action, &before);
    QThread::currentThread();
    sigaction(SIGSEGV, &before, nullptr);
}

void installMemoryGuard() {
    std::set_terminate(endOrAbort);
    makeThreadData();
}

} // namespace kxtool
