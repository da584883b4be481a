// The identity of files that results were made from.
#include "inspect/identity/fileIdentity.h"

#include "inspect/base/error.h"
#include "inspect/base/paths.h"
#include "inspect/base/sha256.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>

#include <algorithm>
#include <vector>

namespace KxInspect {

InputFile identifyFile(const std::string& path, const Progress& progress) {
    constexpr qint64 kBlock = qint64(1) << 18;
    const ErrorSource source{"file", path, {}};
    const detail::QtPath where(path);
    const QFileInfo info(where.text());
    if (!info.exists()) {
        detail::fail(ErrorKind::NotFound, source, QStringLiteral("does not exist"));
    }
    QFile file(where.text());
    if (!info.isFile()) {
        detail::fail(ErrorKind::Unsuitable, source, QStringLiteral("is not a file"));
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        detail::fail(ErrorKind::Unreadable, source, QStringLiteral("cannot be read: ") + file.errorString());
    }
    const qint64 size = file.size();
    detail::Sha256 hash;
    std::vector<char> block(static_cast<std::size_t>(kBlock));
    for (qint64 done = 0; done < size;) {
        const qint64 count = file.read(block.data(), std::min(kBlock, size - done));
        if (count <= 0) {
            detail::fail(ErrorKind::Unreadable, source,
                         QStringLiteral("cannot be read: it ends at byte %1 of %2").arg(done).arg(size));
        }
        hash.add(block.data(), static_cast<std::size_t>(count));
        done += count;
        if (progress) {
            progress("hashing " + detail::shown(path), static_cast<double>(done) / static_cast<double>(size));
        }
    }
    if (size == 0 && file.read(block.data(), 1) != 0) { // the size of a file that cannot be looked at is 0
        detail::fail(ErrorKind::Unreadable, source, QStringLiteral("cannot be read: its size is not known"));
    }
    return {detail::bareName(path), size, hash.text()};
}

} // namespace KxInspect

namespace KxInspect::detail {

std::string bareName(const std::string& path) {
    return shown(path.substr(path.rfind('/') + 1)); // npos + 1 is 0
}

std::string withBareName(std::string text, const std::string& path) {
    const std::string from = '\'' + shown(path) + '\'';
    const std::string to = '\'' + bareName(path) + '\'';
    if (path.empty() || from == to) {
        return text;
    }
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

InputFile identityOf(const std::string& path, std::string_view content) {
    return {bareName(path), static_cast<std::int64_t>(content.size()), sha256Of(content)};
}

} // namespace KxInspect::detail
