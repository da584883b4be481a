#include "injection.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace faults {

namespace {

// The C library allocates before main(), so that these must need no constructor.
char watched[4096] = "";
Fault armed;
std::atomic<Seen*> seenNow{nullptr};

struct Named {
    const char* name;
    How how;
    int error;
};
constexpr Named kHows[] = {
    {"EIO", How::Error, EIO},     {"ENOSPC", How::Error, ENOSPC}, {"EMFILE", How::Error, EMFILE},
    {"EINTR", How::Error, EINTR}, {"EACCES", How::Error, EACCES}, {"ENOMEM", How::Error, ENOMEM},
    {"short", How::Short, 0},     {"zero", How::Zero, 0},         {"kill", How::Kill, 0},
};

} // namespace

bool parseFault(const char* text, Fault& fault) {
    fault = {};
    if (std::strcmp(text, "none") == 0) {
        return true;
    }
    const char* const first = std::strchr(text, ':');
    const char* const second = first != nullptr ? std::strchr(first + 1, ':') : nullptr;
    if (second == nullptr) {
        return false;
    }
    bool isCall = false;
    for (std::size_t i = 0; i < kCalls; ++i) {
        if (std::strncmp(text, kCallNames[i], static_cast<std::size_t>(first - text)) == 0 &&
            kCallNames[i][first - text] == '\0') {
            fault.call = static_cast<Call>(i);
            isCall = true;
        }
    }
    const bool isSize = first[1] == '>';
    (isSize ? fault.largest : fault.number) = std::strtol(first + (isSize ? 2 : 1), nullptr, 10);
    fault.isLasting = second[-1] == '+';
    for (const Named& named : kHows) {
        if (std::strcmp(second + 1, named.name) == 0) {
            fault.how = named.how;
            fault.error = named.error;
            return isCall;
        }
    }
    return false;
}

void watch(const char* folder) {
    std::strncpy(watched, folder, sizeof(watched) - 1);
}

bool isWatched(const char* path) {
    const std::size_t size = std::strlen(watched);
    return size > 0 && (*path != '/' || (std::strncmp(path, watched, size) == 0 && (path[size] & ~'/') == 0));
}

void arm(const Fault& fault, Seen& seen) {
    armed = fault;
    seen = {};
    seenNow = &seen;
}

void disarm() {
    seenNow = nullptr;
}

const Fault* next(Call call, const char* path, long size) {
    Seen* const seen = seenNow;
    if (seen == nullptr) {
        return nullptr;
    }
    const long number = ++std::atomic_ref(seen->counts[static_cast<std::size_t>(call)]);
    if (call != armed.call) {
        return nullptr;
    }
    const bool isMet = armed.largest > 0
                           ? size > armed.largest
                           : number == armed.number || (armed.isLasting && armed.number > 0 && number > armed.number);
    if (!isMet) {
        return nullptr;
    }
    if (!seen->hasFailed) {
        seen->hasFailed = true;
        std::strncpy(seen->path, path, sizeof(seen->path) - 1);
    }
    return &armed;
}

} // namespace faults
