// The recordings below a folder, by station, time and sensor.
#include <KxInspect/RecordingGroups.h>

#include "inspect/base/error.h"
#include "inspect/recordings/layout.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>
#include <memory>
#include <new>
#include <tuple>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace KxInspect {

namespace {

using detail::Layout;
using detail::PathValues;
using Folder = std::unique_ptr<DIR, int (*)(DIR*)>;

constexpr int kOpenFolder = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

std::string lastError() {
    return std::strerror(errno);
}

/// @param file a descriptor that passes to the folder, or -1; null with errno where it is none
Folder folderOf(int file) {
    Folder folder(file < 0 ? nullptr : fdopendir(file), closedir);
    if (!folder && file >= 0) {
        const int error = errno;
        close(file);
        errno = error;
    }
    return folder;
}

/// Walks through the folders of the layout, which are as deep as it has names.
class Search {
public:
    explicit Search(const std::string& layout) : layout_(layout) {}

    /// @param path of the folder, without a slash at its end
    void look(const Folder& folder, const std::string& path, std::size_t level, const PathValues& values) {
        for (const std::string& name : namesIn(folder, path)) {
            if (!layout_.isLookedAt(level, name)) {
                continue;
            }
            lookAt(folder, path, name, level, values);
        }
    }

    FoundRecordings result() {
        FoundRecordings found;
        for (auto& [key, recordings] : groups_) {
            std::sort(recordings.begin(), recordings.end(), [](const FoundRecording& a, const FoundRecording& b) {
                return std::tie(a.serial, a.path) < std::tie(b.serial, b.path);
            });
            found.groups.push_back({key.first, key.second, std::move(recordings)});
        }
        std::sort(skipped_.begin(), skipped_.end(),
                  [](const SkippedPath& a, const SkippedPath& b) { return a.path < b.path; });
        found.skipped = std::move(skipped_);
        return found;
    }

private:
    void skip(const std::string& path, std::string reason) { skipped_.push_back({path, std::move(reason), false}); }

    /// Notes that something could not be looked at, unless it went away.
    void skipUnreadable(const std::string& path) {
        if (errno == ENOMEM) {
            throw std::bad_alloc();
        }
        if (errno != ENOENT) {
            skipped_.push_back({path, "cannot be read: " + lastError(), true});
        }
    }

    std::vector<std::string> namesIn(const Folder& folder, const std::string& path) {
        std::vector<std::string> names;
        errno = 0;
        while (const dirent* const entry = readdir(folder.get())) {
            if (const std::string name = entry->d_name; name != "." && name != "..") {
                names.push_back(name);
            }
            errno = 0;
        }
        if (errno != 0) {
            skipUnreadable(path);
        }
        return names;
    }

    void lookAt(const Folder& folder, const std::string& parent, const std::string& name, std::size_t level,
                PathValues values) {
        const bool isFile = level + 1 == layout_.levels();
        const std::string path = parent + '/' + name;
        struct stat status {};
        if (fstatat(dirfd(folder.get()), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
            skipUnreadable(path);
        } else if (S_ISLNK(status.st_mode)) {
            skip(path, "is a link, which is not followed");
        } else if (std::string why = layout_.read(level, name, values); !why.empty()) {
            skip(path, std::move(why));
        } else if (isFile ? !S_ISREG(status.st_mode) : !S_ISDIR(status.st_mode)) {
            skip(path, isFile ? "is not a file" : "is not a folder");
        } else if (isFile) {
            add(path, values, status);
        } else {
            const Folder below = folderOf(openat(dirfd(folder.get()), name.c_str(), kOpenFolder | O_NOFOLLOW));
            if (below) {
                look(below, path, level + 1, values);
            } else {
                skipUnreadable(path);
            }
        }
    }

    void add(const std::string& path, const PathValues& values, const struct stat& status) {
        constexpr std::int64_t kSecond = 1'000'000'000;
        const std::int64_t changed = std::int64_t(status.st_ctim.tv_sec) * kSecond + status.st_ctim.tv_nsec;
        groups_[{values.station, values.time}].push_back({path, values.serial, status.st_size, changed});
    }

    Layout layout_;
    std::map<std::pair<std::string, std::string>, std::vector<FoundRecording>> groups_;
    std::vector<SkippedPath> skipped_;
};

} // namespace

FoundRecordings findRecordings(const std::string& folder, const std::string& layout) {
    Search search(layout);
    const Folder top = folderOf(open(folder.c_str(), kOpenFolder));
    if (!top) {
        const ErrorSource source{"the folder", folder, {}};
        if (errno == ENOENT) {
            detail::fail(ErrorKind::NotFound, source, QStringLiteral("does not exist"));
        }
        if (errno == ENOTDIR) {
            detail::fail(ErrorKind::Unsuitable, source, QStringLiteral("is not a folder"));
        }
        throw Error(ErrorKind::Unreadable, source, "cannot be read: " + lastError());
    }
    std::string path = folder;
    while (!path.empty() && path.back() == '/') {
        path.pop_back();
    }
    search.look(top, path, 0, {});
    return search.result();
}

} // namespace KxInspect
