// What is in a folder.
#include "tools/kxmath/console/folderNames.h"

#include <cerrno>
#include <memory>

#include <dirent.h>

namespace kxtool {

int appendNamesIn(const std::string& path, std::vector<std::string>& names) {
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir(path.c_str()), closedir);
    errno = folder ? 0 : errno;
    while (const dirent* const entry = folder ? readdir(folder.get()) : nullptr) {
        if (const std::string name = entry->d_name; name != "." && name != "..") {
            names.push_back(name);
        }
        errno = 0;
    }
    return errno;
}

} // namespace kxtool
