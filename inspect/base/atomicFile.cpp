// Files that appear whole or not at all.
#include <KxInspect/AtomicFile.h>

#include "inspect/base/error.h"
#include "inspect/base/paths.h"

#include <QtCore/QFile>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace KxInspect {

namespace {

using detail::QtPath;
namespace fs = std::filesystem;

std::string lastError() {
    return std::strerror(errno);
}

/// What a path leads to: a file or a free name, or something that is written into.
struct Place {
    std::string path;
    bool isReplaced;
    int openFile = -1; ///< its number, where the path names an open file of this process
};

/// Whether a name in that folder stands for an open file, as /dev/stdout does.
bool isOfOpenFiles(const fs::path& folder) {
    std::error_code none;
    const std::string path = fs::canonical(folder.empty() ? fs::path(".") : folder, none).string();
    const std::string end = "/fd";
    return path.rfind("/proc/", 0) == 0 && path.size() > end.size() &&
           path.compare(path.size() - end.size(), end.size(), end) == 0;
}

/// The number of the open file of this process that a path in such a folder names, -1 for those of others.
int openFileOf(const fs::path& path) {
    std::error_code error;
    const std::string name = path.filename().string();
    int number = -1;
    const auto [end, failure] = std::from_chars(name.data(), name.data() + name.size(), number);
    const bool isNumber = failure == std::errc() && end == name.data() + name.size();
    return isNumber && fs::equivalent(path.parent_path(), "/proc/self/fd", error) ? number : -1;
}

/// What is there, which may be nothing. @param find fs::status to follow links, or fs::symlink_status
/// Throws a filesystem_error where that cannot be found out.
fs::file_type typeOf(const fs::path& path, fs::file_status (*find)(const fs::path&, std::error_code&)) {
    std::error_code error;
    const fs::file_type type = find(path, error).type();
    if (type == fs::file_type::none && error != std::errc::too_many_symbolic_link_levels) {
        throw fs::filesystem_error("", error);
    }
    return type;
}

Place placeOf(const std::string& path) {
    constexpr int kMostLinks = 40; // as the system
    const fs::file_type reached = typeOf(path, fs::status);
    if (reached == fs::file_type::directory) {
        throw fs::filesystem_error("", std::make_error_code(std::errc::is_a_directory));
    }
    const bool isFree = reached == fs::file_type::not_found || reached == fs::file_type::none;
    if (!isFree && reached != fs::file_type::regular) {
        return {path, false};
    }
    fs::path place = path;
    for (int links = 0; links < kMostLinks; ++links) {
        if (typeOf(place, fs::symlink_status) != fs::file_type::symlink) {
            return {place.string(), true};
        }
        if (isOfOpenFiles(place.parent_path())) {
            return {path, false, openFileOf(place)}; // whoever opened it would not see another file in its place
        }
        place = place.parent_path() / fs::read_symlink(place); // an absolute one replaces all of it
    }
    return {path, true}; // a circle: making the file fails
}

/// The name with "incomplete-" before it, short enough for a file system.
std::string incompleteName(std::string name) {
    constexpr std::size_t kMostBytes = 230; // 255 without the prefix and a number
    if (name.size() > kMostBytes) {
        std::size_t end = kMostBytes;
        while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xc0) == 0x80) { // within a character of UTF-8
            --end;
        }
        name.resize(end);
    }
    return "incomplete-" + name;
}

/// Makes a file that was not there and sets `path`, after which nothing throws. @return 0 or errno
int makeFile(const fs::path& folder, const fs::path& name, mode_t mode, std::string& path) {
    constexpr int kMostFiles = 10000;
    const std::string base = (folder / incompleteName(name.string())).string();
    for (int number = 1; number <= kMostFiles; ++number) {
        std::string tried = number == 1 ? base : base + '-' + std::to_string(number);
        int file = -1;
        do {
            file = open(tried.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        } while (file < 0 && errno == EINTR);
        if (file >= 0) {
            close(file);
            path = std::move(tried);
            return 0;
        }
        if (errno != EEXIST) {
            return errno;
        }
    }
    return EEXIST;
}

/// Owner and permissions of the file that is replaced. Those of a new file are right already.
bool copyPermissions(const std::string& from, const std::string& to) {
    struct stat old {};
    if (stat(from.c_str(), &old) != 0) {
        return errno == ENOENT;
    }
    constexpr mode_t kBits = 07777;
    struct stat made {};
    if (stat(to.c_str(), &made) == 0 && (made.st_uid != old.st_uid || made.st_gid != old.st_gid)) {
        // Only the superuser may: another user becomes the owner of what he writes.
        [[maybe_unused]] const int isIgnored = chown(to.c_str(), old.st_uid, old.st_gid);
    }
    return chmod(to.c_str(), old.st_mode & kBits) == 0;
}

/// Writes into a device, a pipe or an open file. @return false on failure, with errno
bool writeInto(int file, const char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t written = write(file, bytes, size);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return false;
        }
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
    return true;
}

} // namespace

AtomicFile::AtomicFile(ErrorSource target) : target_(std::move(target)) {
    constexpr mode_t kForAll = 0666; // the mask of the process takes its part
    constexpr mode_t kForOwner = 0600; // of what will be copied into a device
    int failure = 0;
    try {
        const Place place = placeOf(target_.file);
        place_ = place.path;
        isReplaced_ = place.isReplaced;
        openFile_ = place.openFile;
        const fs::path path(place_);
        if (isReplaced_) {
            failure = makeFile(path.parent_path(), path.filename(), kForAll, path_);
        } else {
            failure = access(place_.c_str(), W_OK) != 0
                          ? errno
                          : makeFile(fs::temp_directory_path(), path.filename(), kForOwner, path_);
        }
    } catch (const fs::filesystem_error& error) {
        failure = error.code().value();
    }
    if (failure != 0) {
        fail(failure == EISDIR ? "it is a folder" : std::strerror(failure));
    }
}

AtomicFile::~AtomicFile() {
    if (!path_.empty()) {
        unlink(path_.c_str());
    }
}

void AtomicFile::fail(const std::string& why) const {
    detail::fail(ErrorKind::Unwritable, target_,
                 QStringLiteral("could not be written: ") + QString::fromStdString(why));
}

void AtomicFile::commit(std::uint64_t size) {
    std::error_code error;
    const std::uint64_t written = fs::file_size(path_, error);
    if (error) {
        fail(error.message());
    }
    if (written != size) {
        fail("only " + std::to_string(written) + " of " + std::to_string(size) + " bytes were stored");
    }
    if (isReplaced_) {
        replace();
    } else {
        copyInto();
    }
}

void AtomicFile::replace() {
    if (!copyPermissions(place_, path_) || std::rename(path_.c_str(), place_.c_str()) != 0) {
        fail(lastError());
    }
    path_.clear();
}

void AtomicFile::copyInto() const {
    constexpr qint64 kBlock = 1 << 16;
    const QtPath where(path_);
    QFile from(where.text());
    if (!from.open(QIODevice::ReadOnly)) {
        fail(from.errorString().toStdString());
    }
    // An open file is written on where its writers are: opened anew it would have an end of its own.
    const int to =
        openFile_ >= 0 ? fcntl(openFile_, F_DUPFD_CLOEXEC, 0) : open(place_.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC);
    bool isWritten = to >= 0;
    for (qint64 left = from.size(); isWritten && left > 0;) {
        const QByteArray bytes = from.read(std::min(left, kBlock));
        isWritten = !bytes.isEmpty() && writeInto(to, bytes.constData(), static_cast<std::size_t>(bytes.size()));
        left -= bytes.size();
    }
    const std::string why = lastError();
    if (to >= 0 && close(to) != 0) {
        isWritten = false;
    }
    if (!isWritten) {
        fail(why);
    }
}

void writeWholeFile(const ErrorSource& target, std::string_view content) {
    AtomicFile whole(target);
    const QtPath where(whole.path());
    QFile file(where.text());
    const auto size = static_cast<qint64>(content.size());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(content.data(), size) != size ||
        !file.flush()) {
        whole.fail(file.errorString().toStdString());
    }
    file.close();
    whole.commit(content.size());
}

} // namespace KxInspect
