// The folder in which a command works until what it writes is whole.
#include "tools/kxmath/console/workFolder.h"

#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/fileNames.h"
#include "tools/kxmath/console/folderNames.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <new>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <ftw.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kxtool {

namespace {

namespace fs = std::filesystem;

constexpr int kMostFolders = 100000;

[[noreturn]] void failFolder(const std::string& path, const std::string& why) {
    throw CommandError{
        OutputFailed,
        QStringLiteral("cannot write in folder '%1': %2").arg(fromBytes(path), QString::fromStdString(why))};
}

std::string lastError() {
    return std::strerror(errno);
}

std::string numbered(const std::string& name, int number) {
    return number == 1 ? name : name + '-' + std::to_string(number);
}

/// Whether something is there, be it a link that leads nowhere.
bool isTaken(const std::string& path) {
    std::error_code none;
    return fs::exists(fs::symlink_status(path, none));
}

bool isFolder(const std::string& path) {
    std::error_code none;
    return fs::is_directory(path, none);
}

/// An open file, -1 where it could not be opened.
struct Descriptor {
    Descriptor(const std::string& path, int flags, mode_t mode) : number(open(path.c_str(), flags | O_CLOEXEC, mode)) {}
    ~Descriptor() { close(number); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    const int number;
};

/// Repeats a call that a signal interrupts.
template <typename Call>
ssize_t repeated(Call call) {
    for (;;) {
        if (const ssize_t result = call(); result >= 0 || errno != EINTR) {
            return result;
        }
    }
}

/// @param copied how many bytes there were. @return false on failure, with errno
bool copyBytes(int from, int to, off_t& copied) {
    std::array<char, 1 << 16> block;
    for (;;) {
        const ssize_t size = repeated([&] { return read(from, block.data(), block.size()); });
        if (size <= 0) {
            return size == 0;
        }
        for (ssize_t done = 0; done < size;) {
            errno = EIO; // where nothing is written
            const auto left = static_cast<std::size_t>(size - done);
            const ssize_t written = repeated([&] { return write(to, block.data() + done, left); });
            if (written <= 0) {
                return false;
            }
            done += written;
        }
        copied += size;
    }
}

/// Without "." and "..", and without a slash at its end.
fs::path absolutePath(const std::string& path) {
    std::error_code error;
    const fs::path whole = fs::absolute(path, error).lexically_normal();
    if (error) {
        failFolder(path, error.message());
    }
    return whole.has_filename() ? whole : whole.parent_path();
}

/// Waits until what was written to the file system of a folder is on the disk.
void syncFolder(const std::string& path) {
    const Descriptor folder(path, O_RDONLY | O_DIRECTORY, 0);
    if (folder.number < 0 || syncfs(folder.number) != 0) {
        failFolder(path, lastError());
    }
}

} // namespace

void removeAll(const std::string& path) {
    // Without memory, or where something cannot be removed, it stays.
    const auto removeOne = [](const char* each, const struct stat*, int, struct FTW*) { return std::remove(each); };
    constexpr int kMostOpen = 16;
    // It is tried again where it failed for a moment.
    if (nftw(path.c_str(), removeOne, kMostOpen, FTW_DEPTH | FTW_PHYS) != 0) {
        nftw(path.c_str(), removeOne, kMostOpen, FTW_DEPTH | FTW_PHYS);
    }
}

std::vector<std::string> namesIn(const std::string& path) {
    std::vector<std::string> names;
    if (const int error = appendNamesIn(path, names); error != 0) {
        failFolder(path, std::strerror(error));
    }
    return names;
}

WorkFolder::WorkFolder(const QString& parent, const QString& name)
    : parent_(absolutePath(toBytes(parent)).string()), name_(toBytes(name)) {
    std::error_code error;
    if (fs::create_directories(parent_, error); error) {
        failFolder(toBytes(parent), error.message());
    }
    for (int number = 1; number < kMostFolders && path_.empty(); ++number) {
        constexpr mode_t kAll = 0777; // the mask of the process takes its part
        std::string candidate = parent_ + "/incomplete-" + numbered(name_, number);
        // Making a folder fails when it is there: no two runs get the same one.
        if (mkdir(candidate.c_str(), kAll) == 0) {
            path_ = std::move(candidate);
        } else if (errno != EEXIST) {
            failFolder(toBytes(parent) + '/' + name_, lastError());
        }
    }
    if (path_.empty()) {
        failFolder(parent_, "too many incomplete folders are there");
    }
    try {
        qtPath_.emplace(path_);
    } catch (const std::bad_alloc&) { // no destructor runs
        rmdir(path_.c_str());
        throw;
    }
}

WorkFolder::~WorkFolder() {
    if (isFinished_) {
        return;
    }
    removeAll(path_); // what stays has a name that says what it is
}

WorkFolder WorkFolder::forTarget(const QString& target) {
    const std::string name = absolutePath(toBytes(target)).filename().string();
    fs::path folder = fs::path(toBytes(target));
    if (!isFolder(folder.string())) {
        folder = folder.has_filename() ? folder.parent_path() : folder.parent_path().parent_path();
    }
    return {folder.empty() ? QStringLiteral(".") : fromBytes(folder.string()), fromBytes(name)};
}

void WorkFolder::link(const QString& source, const QString& name) const {
    std::error_code error;
    fs::create_symlink(absolutePath(toBytes(source)), path_ + '/' + toBytes(name), error);
    if (error) {
        copy(source, name);
    }
}

void WorkFolder::copy(const QString& source, const QString& name) const {
    const std::string sourceName = toBytes(source);
    const std::string targetName = path_ + '/' + toBytes(name);
    const Descriptor from(sourceName, O_RDONLY, 0);
    struct stat found {};
    if (from.number < 0 || fstat(from.number, &found) != 0) {
        throw CommandError{
            BadInput,
            QStringLiteral("'%1' cannot be read: %2").arg(fromBytes(sourceName), QString::fromStdString(lastError()))};
    }
    const Descriptor to(targetName, O_WRONLY | O_CREAT | O_EXCL, found.st_mode);
    if (to.number < 0 || fchmod(to.number, found.st_mode) != 0) {
        failFolder(targetName, lastError());
    }
    off_t copied = 0;
    if (!copyBytes(from.number, to.number, copied)) {
        failFolder(targetName, lastError());
    }
    if (copied != found.st_size) { // a read that brings nothing looks like the end
        throw CommandError{BadInput, QStringLiteral("'%1' cannot be read: it ends at byte %2 of %3")
                                         .arg(fromBytes(sourceName))
                                         .arg(copied)
                                         .arg(found.st_size)};
    }
}

void WorkFolder::finish() {
    throwIfInterrupted();
    for (int number = 1; number < kMostFolders; ++number) {
        const std::string candidate = parent_ + '/' + numbered(name_, number);
        if (isTaken(candidate)) {
            continue;
        }
        // Another run may take the name meanwhile; renaming onto its folder fails, since that is not empty.
        if (std::rename(path_.c_str(), candidate.c_str()) == 0) {
            path_ = candidate;
            isFinished_ = true;
            return;
        }
        const std::string why = lastError();
        if (!isTaken(candidate)) {
            failFolder(parent_, why);
        }
    }
    failFolder(parent_, "no free name for '" + name_ + "'");
}

bool WorkFolder::finishUnlessTaken() {
    throwIfInterrupted();
    syncFolder(path_);
    const std::string target = parent_ + '/' + name_;
    if (isTaken(target)) {
        return false;
    }
    if (std::rename(path_.c_str(), target.c_str()) != 0) { // fails, too, where another one has just been made
        const std::string why = lastError();
        if (isTaken(target)) {
            return false;
        }
        failFolder(parent_, why);
    }
    path_ = target;
    isFinished_ = true;
    syncFolder(parent_);
    return true;
}

void WorkFolder::finishAs(const QString& target, const QString& last) {
    throwIfInterrupted();
    const std::string path = toBytes(target);
    if (isFolder(path)) {
        moveInto(path, toBytes(last));
    } else if (std::rename(path_.c_str(), path.c_str()) != 0) {
        failFolder(path, lastError());
    } else {
        path_ = absolutePath(path).string();
    }
    isFinished_ = true;
}

void WorkFolder::moveInto(const std::string& target, const std::string& last) {
    std::vector<std::string> names;
    if (const int error = appendNamesIn(path_, names); error != 0) {
        failFolder(path_, std::strerror(error));
    }
    std::error_code error;
    // By name, `last` behind all others.
    std::sort(names.begin(), names.end(), [&](const std::string& a, const std::string& b) {
        return std::pair(a == last, a) < std::pair(b == last, b);
    });
    const fs::path to(target);
    for (const std::string& name : names) { // before the first one moves
        if (isFolder((to / name).string())) {
            throw CommandError{
                OutputFailed, QStringLiteral("cannot write '%1': it is a folder").arg(fromBytes((to / name).string()))};
        }
    }
    const fs::path older = to / last;
    if (!names.empty() && names.back() == last && fs::is_regular_file(older, error) && !fs::remove(older, error)) {
        failFolder(older.string(), error.message());
    }
    for (const std::string& name : names) {
        const fs::path place = to / name;
        if (std::rename((fs::path(path_) / name).c_str(), place.c_str()) != 0) {
            throw CommandError{OutputFailed, QStringLiteral("cannot write '%1': %2")
                                                 .arg(fromBytes(place.string()), QString::fromStdString(lastError()))};
        }
    }
    if (fs::remove(path_, error); error) {
        failFolder(path_, error.message());
    }
}

} // namespace kxtool
