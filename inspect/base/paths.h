// Paths of the interface, which are bytes, as Qt opens them and as texts show them.
#pragma once

#include "inspect/base/utf8.h"

#include <QtCore/QString>

#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace KxInspect::detail {

/// A path in texts: UTF-8, in which each byte that is no part of UTF-8 is written as %XX.
inline std::string shown(const std::string& path) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    std::string text;
    for (std::size_t at = 0; at < path.size();) {
        if (const std::size_t length = utf8Length(path, at); length > 0) {
            text.append(path, at, length);
            at += length;
            continue;
        }
        const auto byte = static_cast<unsigned char>(path[at]);
        text += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
        ++at;
    }
    return text;
}

/// The same as a Qt string. It names no file where the path is not UTF-8: QtPath reaches all.
inline QString toQt(const std::string& path) {
    return QString::fromStdString(shown(path));
}

/// A path by which Qt reaches an existing file or folder. Qt takes UTF-8 only; what has other bytes in its path is reached
/// by a descriptor that this object holds open (/proc/self/fd, on Linux). A path that leads nowhere is that of toQt().
class QtPath {
public:
    explicit QtPath(const std::string& path) : text_(toQt(path)) {
#ifdef O_PATH
        descriptor_ = isUtf8(path) ? -1 : open(path.c_str(), O_PATH | O_CLOEXEC);
        if (descriptor_ >= 0) {
            text_ = QStringLiteral("/proc/self/fd/%1").arg(descriptor_);
        }
#endif
    }
    ~QtPath() {
        if (descriptor_ >= 0) {
            close(descriptor_);
        }
    }
    QtPath(const QtPath&) = delete;
    QtPath& operator=(const QtPath&) = delete;

    const QString& text() const {
        return text_;
    }

private:
    QString text_;
    int descriptor_ = -1;
};

} // namespace KxInspect::detail
