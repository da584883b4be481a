// Calls on files that fail as planned. Each function stands in front of that of the C library with the same name: those that
// Qt, the libraries and the commands call, and their 64-bit and *at() forms.
#undef _FORTIFY_SOURCE // its inline functions would stand in front of these
#include "injection.h"

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <type_traits>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

using faults::Call;
using faults::Fault;
using faults::How;

namespace {

constexpr int kMostFiles = 1024;
constexpr std::size_t kLongestPath = 400;
char paths[kMostFiles][kLongestPath]; ///< of open files below the watched folder, by descriptor; empty: another file

/// The file is below the watched folder.
void note(int file, const char* path) {
    if (file >= 0 && file < kMostFiles) {
        std::strncpy(paths[file], path, kLongestPath - 1);
    }
}

const char* pathOf(int file) {
    return file >= 0 && file < kMostFiles && paths[file][0] != '\0' ? paths[file] : nullptr;
}

template <typename Act>
auto actOrFail(const Fault* fault, Act act) {
    using Result = decltype(act());
    if (fault != nullptr && fault->how == How::Error) {
        errno = fault->error;
        if constexpr (std::is_pointer_v<Result>) {
            return Result(nullptr);
        } else {
            return Result(-1);
        }
    }
    const Result result = act();
    if (fault != nullptr && fault->how == How::Kill) {
        raise(SIGKILL);
    }
    return result;
}

template <typename Act>
auto onPath(Call call, const char* path, Act act) {
    return actOrFail(faults::isWatched(path) ? faults::next(call, path) : nullptr, act);
}

template <typename Act>
auto onFile(Call call, int file, Act act) {
    const char* const path = pathOf(file);
    return actOrFail(path != nullptr ? faults::next(call, path) : nullptr, act);
}

/// Moves up to `size` bytes by `act(size)`.
template <typename Act>
ssize_t transfer(Call call, int file, std::size_t size, Act act) {
    const char* const path = pathOf(file);
    const Fault* const fault = path != nullptr ? faults::next(call, path) : nullptr;
    // No system writes nothing for ever without an error, and the loop in which Qt writes its lock files relies on that.
    const bool isEndless = fault != nullptr && call == Call::Write && std::strstr(path, ".lock") != nullptr;
    if (fault != nullptr && fault->how == How::Zero && !isEndless) {
        return 0;
    }
    const bool isShort = fault != nullptr && fault->how == How::Short && size > 1;
    return actOrFail(fault, [&] { return act(isShort ? size / 2 : size); });
}

/// A stream of the standard input or output. `act` returns how many objects were moved; a stream reports failures so.
template <typename Act>
std::size_t stream(Call call, FILE* file, Act act) {
    const Fault* const fault = faults::next(call, file == stdin ? "standard input" : "standard output");
    if (fault != nullptr && fault->how != How::Kill) {
        errno = fault->how == How::Error ? fault->error : EIO;
        file->_flags |= _IO_ERR_SEEN; // ferror()
        return 0;
    }
    return actOrFail(fault, act);
}

mode_t modeOf(int flags, va_list arguments) {
    return (flags & (O_CREAT | O_TMPFILE)) != 0 ? static_cast<mode_t>(va_arg(arguments, unsigned)) : 0;
}

template <typename Act>
int opening(const char* path, Act act) {
    const int file = onPath(Call::Open, path, act);
    if (faults::isWatched(path)) {
        note(file, path);
    }
    return file;
}

} // namespace

// The function of the C library behind this one.
#define BEHIND(name) static const auto behind = reinterpret_cast<decltype(&::name)>(dlsym(RTLD_NEXT, #name))

// NAME(PARAMETERS) that fails by the path, or by the open file.
#define BY_PATH(call, result, name, path, parameters, arguments)                                                       \
    result name parameters {                                                                                           \
        BEHIND(name);                                                                                                  \
        return onPath(Call::call, path, [&] { return behind arguments; });                                             \
    }
#define BY_FILE(call, result, name, file, parameters, arguments)                                                       \
    result name parameters {                                                                                           \
        BEHIND(name);                                                                                                  \
        return onFile(Call::call, file, [&] { return behind arguments; });                                             \
    }
#define OPENING(name, parameters, ...)                                                                                 \
    int name parameters {                                                                                              \
        BEHIND(name);                                                                                                  \
        va_list list;                                                                                                  \
        va_start(list, flags);                                                                                         \
        const mode_t mode = modeOf(flags, list);                                                                       \
        va_end(list);                                                                                                  \
        return opening(path, [&] { return behind(__VA_ARGS__, mode); });                                               \
    }
#define TRANSFER(call, name, parameters, ...)                                                                          \
    ssize_t name parameters {                                                                                          \
        BEHIND(name);                                                                                                  \
        return transfer(Call::call, file, size, [&](std::size_t most) { return behind(__VA_ARGS__); });                \
    }

extern "C" {

OPENING(open, (const char* path, int flags, ...), path, flags)
OPENING(open64, (const char* path, int flags, ...), path, flags)
OPENING(openat, (int folder, const char* path, int flags, ...), folder, path, flags)
OPENING(openat64, (int folder, const char* path, int flags, ...), folder, path, flags)

TRANSFER(Read, read, (int file, void* data, std::size_t size), file, data, most)
TRANSFER(Read, pread, (int file, void* data, std::size_t size, off_t at), file, data, most, at)
TRANSFER(Read, pread64, (int file, void* data, std::size_t size, off64_t at), file, data, most, at)
TRANSFER(Write, write, (int file, const void* data, std::size_t size), file, data, most)
TRANSFER(Write, pwrite, (int file, const void* data, std::size_t size, off_t at), file, data, most, at)
TRANSFER(Write, pwrite64, (int file, const void* data, std::size_t size, off64_t at), file, data, most, at)
TRANSFER(Write, sendfile, (int file, int from, off_t* at, std::size_t size), file, from, at, most)

ssize_t readv(int file, const iovec* parts, int count) {
    BEHIND(readv);
    return transfer(Call::Read, file, static_cast<std::size_t>(count),
                    [&](std::size_t most) { return behind(file, parts, static_cast<int>(most)); });
}

ssize_t writev(int file, const iovec* parts, int count) {
    BEHIND(writev);
    return transfer(Call::Write, file, static_cast<std::size_t>(count),
                    [&](std::size_t most) { return behind(file, parts, static_cast<int>(most)); });
}

std::size_t fread(void* data, std::size_t size, std::size_t count, FILE* file) {
    BEHIND(fread);
    const auto act = [&] { return behind(data, size, count, file); };
    return file == stdin ? stream(Call::Read, file, act) : act();
}

std::size_t fwrite(const void* data, std::size_t size, std::size_t count, FILE* file) {
    BEHIND(fwrite);
    const auto act = [&] { return behind(data, size, count, file); };
    return file == stdout ? stream(Call::Write, file, act) : act();
}

int fflush(FILE* file) {
    BEHIND(fflush);
    return actOrFail(file == stdout ? faults::next(Call::Sync, "standard output") : nullptr,
                     [&] { return behind(file); });
}

BY_FILE(Seek, off_t, lseek, file, (int file, off_t at, int from), (file, at, from))
BY_FILE(Seek, off64_t, lseek64, file, (int file, off64_t at, int from), (file, at, from))
BY_FILE(Sync, int, fsync, file, (int file), (file))
BY_FILE(Sync, int, fdatasync, file, (int file), (file))

int close(int file) {
    BEHIND(close);
    const char* const path = pathOf(file);
    const Fault* const fault = path != nullptr ? faults::next(Call::Close, path) : nullptr;
    const int result = behind(file); // as Linux does: the descriptor is gone also after an error
    note(file, "");
    return actOrFail(fault, [&] { return result; });
}

BY_PATH(Rename, int, rename, to, (const char* from, const char* to), (from, to))
BY_PATH(Rename, int, renameat, to, (int folder, const char* from, int toFolder, const char* to),
        (folder, from, toFolder, to))
BY_PATH(Rename, int, renameat2, to, (int folder, const char* from, int toFolder, const char* to, unsigned flags),
        (folder, from, toFolder, to, flags))
BY_PATH(Truncate, int, truncate, path, (const char* path, off_t size), (path, size))
BY_PATH(Truncate, int, truncate64, path, (const char* path, off64_t size), (path, size))
BY_FILE(Truncate, int, ftruncate, file, (int file, off_t size), (file, size))
BY_FILE(Truncate, int, ftruncate64, file, (int file, off64_t size), (file, size))
BY_PATH(MakeFolder, int, mkdir, path, (const char* path, mode_t mode), (path, mode))
BY_PATH(Link, int, link, to, (const char* from, const char* to), (from, to))
BY_PATH(Link, int, linkat, to, (int folder, const char* from, int toFolder, const char* to, int flags),
        (folder, from, toFolder, to, flags))
BY_PATH(Link, int, symlink, to, (const char* from, const char* to), (from, to))
BY_PATH(Remove, int, unlink, path, (const char* path), (path))
BY_PATH(Remove, int, unlinkat, path, (int folder, const char* path, int flags), (folder, path, flags))
BY_PATH(Remove, int, rmdir, path, (const char* path), (path))
BY_PATH(Stat, int, stat, path, (const char* path, struct stat* found), (path, found))
BY_PATH(Stat, int, stat64, path, (const char* path, struct stat64* found), (path, found))
BY_PATH(Stat, int, lstat, path, (const char* path, struct stat* found), (path, found))
BY_PATH(Stat, int, lstat64, path, (const char* path, struct stat64* found), (path, found))
BY_FILE(Stat, int, fstat, file, (int file, struct stat* found), (file, found))
BY_FILE(Stat, int, fstat64, file, (int file, struct stat64* found), (file, found))
BY_PATH(Stat, int, access, path, (const char* path, int mode), (path, mode))
BY_PATH(Stat, ssize_t, readlink, path, (const char* path, char* target, std::size_t size), (path, target, size))
BY_PATH(Stat, char*, realpath, path, (const char* path, char* resolved), (path, resolved))
BY_PATH(Change, int, chmod, path, (const char* path, mode_t mode), (path, mode))
BY_PATH(Change, int, chown, path, (const char* path, uid_t user, gid_t group), (path, user, group))
BY_FILE(Change, int, fchmod, file, (int file, mode_t mode), (file, mode))
BY_FILE(Change, int, futimens, file, (int file, const timespec* times), (file, times))
BY_FILE(List, dirent*, readdir, dirfd(folder), (DIR * folder), (folder))
BY_FILE(List, dirent64*, readdir64, dirfd(folder), (DIR * folder), (folder))

int statx(int file, const char* path, int flags, unsigned mask, struct statx* found) {
    BEHIND(statx);
    const auto act = [&] { return behind(file, path, flags, mask, found); };
    return *path == '\0' ? onFile(Call::Stat, file, act) : onPath(Call::Stat, path, act);
}

DIR* opendir(const char* path) {
    BEHIND(opendir);
    DIR* const folder = onPath(Call::List, path, [&] { return behind(path); });
    if (folder != nullptr && faults::isWatched(path)) {
        note(dirfd(folder), path);
    }
    return folder;
}

int closedir(DIR* folder) {
    BEHIND(closedir);
    note(dirfd(folder), "");
    return behind(folder);
}

} // extern "C"
