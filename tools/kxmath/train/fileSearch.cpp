// Finding files by their content.
#include "tools/kxmath/train/fileSearch.h"

#include "inspect/base/paths.h"
#include "tools/kxmath/console/folderNames.h"

#include <KxInspect/Error.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include <sys/stat.h>

namespace kxtool {

namespace {

using KxInspect::Error;
using KxInspect::InputFile;
using KxInspect::detail::shown;

struct Candidate {
    std::string path;
    std::string name; ///< as texts show it
    std::int64_t bytes;
};

/// All files below a folder.
class Files {
public:
    explicit Files(const std::string& folder) {
        if (const int error = addFolder(folder); error != 0) {
            throw Error(error == ENOENT ? KxInspect::ErrorKind::NotFound : KxInspect::ErrorKind::Unreadable,
                        {"the folder", folder, {}}, std::string("cannot be read: ") + std::strerror(error), {});
        }
        while (!open_.empty()) {
            const std::string next = std::move(open_.back());
            open_.pop_back();
            if (const int error = addFolder(next); error != 0) {
                noteUnreadable(next, error);
            }
        }
    }

    std::vector<Candidate> files;
    std::vector<std::string> unreadable;

private:
    void noteUnreadable(const std::string& path, int error) {
        unreadable.push_back('\'' + shown(path) + "': " + std::strerror(error));
    }

    int addFolder(const std::string& folder) {
        std::vector<std::string> names;
        const int error = appendNamesIn(folder, names);
        std::sort(names.begin(), names.end());
        for (const std::string& name : names) {
            std::string path = folder;
            addEntry(path.append("/").append(name), name);
        }
        return error;
    }

    void addEntry(const std::string& path, const std::string& name) {
        struct stat entry {};
        if (lstat(path.c_str(), &entry) != 0) {
            noteUnreadable(path, errno);
        } else if (S_ISDIR(entry.st_mode)) {
            open_.push_back(path);
        } else if (stat(path.c_str(), &entry) == 0 && S_ISREG(entry.st_mode)) { // a link that leads nowhere is no file
            files.push_back({path, shown(name), static_cast<std::int64_t>(entry.st_size)});
        }
    }

    std::vector<std::string> open_;
};

class Search {
public:
    Search(std::vector<WantedFile>& wanted, SearchedFolders& searched, const KxInspect::Progress& progress)
        : wanted_(wanted), searched_(searched), progress_(progress) {}

    /// Hashes a file that has the size of one that is still looked for.
    void look(const Candidate& file) {
        const auto isOpen = [&](const WantedFile& each) {
            return each.path.empty() && each.identity.bytes == file.bytes;
        };
        if (std::none_of(wanted_.begin(), wanted_.end(), isOpen)) {
            return;
        }
        try {
            const std::string hash = KxInspect::identifyFile(file.path, progress_).sha256;
            for (WantedFile& each : wanted_) {
                if (isOpen(each) && each.identity.sha256 == hash) {
                    each.path = file.path;
                }
            }
        } catch (const Error& error) {
            searched_.unreadable.push_back('\'' + shown(file.path) + "': " + error.reason());
        }
    }

private:
    std::vector<WantedFile>& wanted_;
    SearchedFolders& searched_;
    const KxInspect::Progress& progress_;
};

bool hasName(const std::vector<WantedFile>& wanted, const Candidate& file) {
    return std::any_of(wanted.begin(), wanted.end(),
                       [&](const WantedFile& each) { return each.identity.name == file.name; });
}

} // namespace

SearchedFolders findFiles(const std::string& folder, std::vector<WantedFile>& wanted,
                          const KxInspect::Progress& progress) {
    Files all(folder);
    std::stable_partition(all.files.begin(), all.files.end(),
                          [&](const Candidate& file) { return hasName(wanted, file); });
    SearchedFolders searched{std::move(all.unreadable)};
    Search search(wanted, searched, progress);
    for (const Candidate& file : all.files) {
        search.look(file);
    }
    for (WantedFile& each : wanted) {
        const auto namesake = std::find_if(all.files.begin(), all.files.end(),
                                           [&](const Candidate& file) { return file.name == each.identity.name; });
        if (each.path.empty() && namesake != all.files.end()) {
            each.namesake = namesake->path;
        }
    }
    return searched;
}

} // namespace kxtool
