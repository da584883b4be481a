// The folder in which a command works until what it writes is whole.
#include "tools/kxmath/console/workFolder.h"

#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/fileNames.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <new>
#include <system_error>
#include <vector>

#include <sys/stat.h>

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

/// Without "." and "..", and without a slash at its end.
fs::path absolutePath(const std::string& path) {
    std::error_code none;
    const fs::path whole = fs::absolute(path, none).lexically_normal();
    return whole.has_filename() ? whole : whole.parent_path();
}

} // namespace

WorkFolder::WorkFolder(const QString& parent, const QString& name)
    : parent_(absolutePath(toBytes(parent)).string()), name_(toBytes(name)) {
    std::error_code error;
    if (fs::create_directories(parent_, error); error) {
        failFolder(toBytes(parent), error.message());
    }
    for (int number = 1; number < kMostFolders && path_.empty(); ++number) {
        constexpr mode_t kAll = 0777; // the mask of the process takes its part
        const std::string candidate = parent_ + "/incomplete-" + numbered(name_, number);
        // Making a folder fails when it is there: no two runs get the same one.
        if (mkdir(candidate.c_str(), kAll) == 0) {
            path_ = candidate;
        } else if (errno != EEXIST) {
            failFolder(toBytes(parent), lastError());
        }
    }
    if (path_.empty()) {
        failFolder(parent_, "too many incomplete folders are there");
    }
    qtPath_.emplace(path_);
}

WorkFolder::~WorkFolder() {
    if (isFinished_) {
        return;
    }
    try {
        std::error_code none;
        fs::remove_all(path_, none);
    } catch (const std::bad_alloc&) { // the folder stays; its name says what it is
    }
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
    std::error_code error;
    fs::copy_file(toBytes(source), path_ + '/' + toBytes(name), error);
    if (error) {
        failFolder(path_, error.message());
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
    std::error_code error;
    for (fs::directory_iterator at(path_, error), end; !error && at != end; at.increment(error)) {
        names.push_back(at->path().filename().string());
    }
    if (error) {
        failFolder(path_, error.message());
    }
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
