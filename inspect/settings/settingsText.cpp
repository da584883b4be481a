// Settings files that several processes may change at once.
#include "inspect/settings/settingsText.h"

#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/formats/openFile.h"

#include <KxInspect/AtomicFile.h>

#include <QtCore/QLockFile>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>

namespace KxInspect::detail {

namespace {

constexpr const char* kRole = "settings";

struct Free {
    void operator()(char* text) const { std::free(text); }
};

/// The path without links, empty where it leads nowhere.
std::string resolved(const std::string& path) {
    const std::unique_ptr<char, Free> text(realpath(path.c_str(), nullptr));
    return text ? text.get() : std::string();
}

/// A folder and a name in it.
struct Place {
    std::string folder, name;
};

/// Where a file stands whatever links lead to it, so that all who write it meet at one lock.
Place placeOf(const std::string& file) {
    const std::string target = resolved(file);
    const std::string& path = target.empty() ? file : target;
    const std::size_t slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    return {folder, path.substr(slash + 1)}; // npos + 1 is 0
}

/// The lock of a file, FILE.lock beside it. It waits for others to release it.
class Lock {
public:
    Lock(const std::string& file, const Progress& progress)
        : place_(placeOf(file)), folder_(place_.folder),
          lock_(folder_.text() + QLatin1Char('/') + toQt(place_.name) + QStringLiteral(".lock")) {
        constexpr int kStale = 5000; // ms; what a process that died leaves behind; the file of a living one is kept
        constexpr int kPart = 100; // ms
        constexpr int kParts = 100; // 10 s in all
        lock_.setStaleLockTime(kStale);
        for (int i = 0; i < kParts; ++i) {
            if (lock_.tryLock(kPart)) {
                return;
            }
            if (lock_.error() != QLockFile::LockFailedError) {
                fail(file, QStringLiteral("cannot be made"));
            }
            if (progress) {
                progress("waiting for " + shown(place_.name) + ".lock", 0.0);
            }
        }
        fail(file, QStringLiteral("was held by another process for 10 s"));
    }

private:
    [[noreturn]] void fail(const std::string& file, const QString& why) const {
        detail::fail(
            ErrorKind::Unwritable, {kRole, file, {}},
            QStringLiteral("could not be written: the lock '%1.lock' beside it %2").arg(toQt(place_.name), why));
    }

    Place place_;
    QtPath folder_;
    QLockFile lock_;
};

} // namespace

std::string readSettingsText(const std::string& file) {
    std::error_code error;
    const auto type = std::filesystem::status(file, error).type();
    if (type == std::filesystem::file_type::not_found) {
        return {};
    }
    const ErrorSource source{kRole, file, {}};
    if (type != std::filesystem::file_type::regular) { // never taken for one that is missing: it would be replaced
        fail(ErrorKind::Unreadable, source,
             QStringLiteral("cannot be read: ") + QString::fromStdString(error ? error.message() : "not a file"));
    }
    const QtPath where(file);
    QFile settings(where.text());
    openForReading(settings, source);
    return readAll(settings, source).toStdString();
}

void changeSettings(const std::string& file, const std::function<std::string(const std::string&)>& change,
                    const Progress& progress) {
    [[maybe_unused]] const Lock lock(file, progress); // until the file is in place
    writeWholeFile({kRole, file, {}}, change(readSettingsText(file)));
}

} // namespace KxInspect::detail
