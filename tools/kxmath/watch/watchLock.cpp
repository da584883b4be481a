// One watch at a time in a folder of results.
#include "tools/kxmath/watch/watchLock.h"

#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/fileNames.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace kxtool {

namespace {

[[noreturn]] void failLock(const std::string& folder, const std::string& why) {
    throw CommandError{
        OutputFailed,
        QStringLiteral("cannot write in folder '%1': %2").arg(fromBytes(folder), QString::fromStdString(why))};
}

} // namespace

WatchLock::WatchLock(const std::string& folder) {
    constexpr mode_t kForAll = 0666; // the mask of the process takes its part
    std::error_code error;
    if (std::filesystem::create_directories(folder, error); error) {
        failLock(folder, error.message());
    }
    const std::string path = folder + "/.watch.lock"; // stays: removing it would let two processes hold one each
    do {
        file_ = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kForAll);
    } while (file_ < 0 && errno == EINTR);
    if (file_ < 0) {
        failLock(folder, std::strerror(errno));
    }
    if (flock(file_, LOCK_EX | LOCK_NB) != 0) {
        const int why = errno;
        close(file_);
        failLock(folder, why == EWOULDBLOCK ? "another watch is at work there" : std::strerror(why));
    }
}

WatchLock::~WatchLock() {
    close(file_);
}

} // namespace kxtool
