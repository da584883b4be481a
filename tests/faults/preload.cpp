// Preloaded into a program, it lets one of its calls fail: KXFAULTS is the fault (see parseFault()), below the current
// folder, and stderr tells when it happens. A report is printed when the program ends:
//
//   KXFAULTS=write:3:ENOSPC LD_PRELOAD=libkxmath_faults.so kxmath convert a.bin b.ply
//
// With KXFAULTS=serve the program does not run; it waits on its standard input for lines of fields separated by the byte 31:
// folder, files for the standard input, output and error, fault, microseconds after which the run is killed (0: never),
// longest seconds, arguments. For each it runs main() in a process of its own and answers with a line: the status of
// wait(), whether the fault happened, its path, and the number of calls of each kind. Starting a program takes longer
// than most runs.
#include "injection.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <new>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

using Main = int (*)(int, char**, char**);

constexpr char kSeparator = 31;
constexpr int kMostArguments = 64;

Main programMain = nullptr;
char* programName = nullptr;
faults::Seen ownSeen;

[[noreturn]] void fail(const char* what) {
    dprintf(STDERR_FILENO, "faults: %s\n", what);
    _exit(99);
}

void replace(int file, const char* path, int flags) {
    const int opened = open(path, flags | O_CLOEXEC, 0600);
    if (opened < 0 || dup2(opened, file) < 0) {
        fail(path);
    }
    close(opened);
}

void killAfter(long microseconds) {
    if (microseconds > 0) {
        sigevent event{};
        event.sigev_notify = SIGEV_SIGNAL;
        event.sigev_signo = SIGKILL;
        timer_t timer{};
        constexpr long kPerSecond = 1000000;
        const itimerspec when{{0, 0}, {microseconds / kPerSecond, microseconds % kPerSecond * 1000}};
        if (timer_create(CLOCK_MONOTONIC, &event, &timer) != 0 || timer_settime(timer, 0, &when, nullptr) != 0) {
            fail("no timer");
        }
    }
}

/// Runs main() with the fields of a line.
[[noreturn]] void run(char* line, faults::Seen& seen, char** environment) {
    char* fields[kMostArguments + 8] = {};
    int count = 0;
    for (char* field = line; field != nullptr && count < kMostArguments + 7;) {
        fields[count++] = field;
        char* const end = std::strchr(field, kSeparator);
        field = end != nullptr ? end + 1 : nullptr;
        if (end != nullptr) {
            *end = '\0';
        }
    }
    faults::Fault fault;
    if (count < 8 || chdir(fields[0]) != 0 || !faults::parseFault(fields[4], fault)) {
        fail("not a valid line");
    }
    replace(STDIN_FILENO, fields[1], O_RDONLY);
    replace(STDOUT_FILENO, fields[2], O_WRONLY | O_CREAT | O_TRUNC);
    replace(STDERR_FILENO, fields[3], O_WRONLY | O_CREAT | O_TRUNC);
    alarm(static_cast<unsigned>(std::strtoul(fields[6], nullptr, 10))); // ends what waits for ever
    const rlimit processorTime{5, 6}; // s; ends a loop without an end
    setrlimit(RLIMIT_CPU, &processorTime);
    fields[6] = programName;
    faults::watch(fields[0]);
    killAfter(std::strtol(fields[5], nullptr, 10));
    faults::arm(fault, seen);
    std::exit(programMain(count - 6, fields + 6, environment));
}

int serve(char** environment) {
    void* const shared = mmap(nullptr, sizeof(faults::Seen), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (shared == MAP_FAILED) {
        fail("no shared memory");
    }
    char line[1 << 14];
    FILE* const requests = fdopen(dup(STDIN_FILENO), "r");
    while (std::fgets(line, sizeof(line), requests) != nullptr) {
        line[std::strcspn(line, "\n")] = '\0';
        auto& seen = *new (shared) faults::Seen;
        const pid_t child = fork();
        if (child == 0) {
            run(line, seen, environment);
        }
        int status = 0;
        if (child < 0 || waitpid(child, &status, 0) != child) {
            fail("no process");
        }
        dprintf(STDOUT_FILENO, "%d%c%d%c%s", status, kSeparator, seen.hasFailed ? 1 : 0, kSeparator, seen.path);
        for (const long count : seen.counts) {
            dprintf(STDOUT_FILENO, "%c%ld", kSeparator, count);
        }
        dprintf(STDOUT_FILENO, "\n");
    }
    return 0;
}

int runOrServe(int count, char** arguments, char** environment) {
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
    programName = arguments[0];
    const char* const text = std::getenv("KXFAULTS");
    if (text == nullptr) {
        return programMain(count, arguments, environment);
    }
    if (std::strcmp(text, "serve") == 0) {
        return serve(environment);
    }
    faults::Fault fault;
    char folder[4096];
    if (!faults::parseFault(text, fault) || getcwd(folder, sizeof(folder)) == nullptr) {
        fail("KXFAULTS is not a valid fault");
    }
    faults::watch(folder);
    faults::arm(fault, ownSeen);
    const int code = programMain(count, arguments, environment);
    faults::disarm();
    dprintf(STDERR_FILENO, "faults: %s %s\n", ownSeen.hasFailed ? "a call failed:" : "no call failed", ownSeen.path);
    return code;
}

} // namespace

// NOLINTNEXTLINE(bugprone-reserved-identifier): the name in the C library
extern "C" int __libc_start_main(Main main, int count, char** arguments, void (*init)(), void (*fini)(),
                                 void (*onEnd)(), void* stackEnd) {
    const auto behind = reinterpret_cast<decltype(&__libc_start_main)>(dlsym(RTLD_NEXT, "__libc_start_main"));
    programMain = main;
    return behind(runOrServe, count, arguments, init, fini, onEnd, stackEnd);
}
