// The kind of a file by its content.
#include "inspect/formats/contentKind.h"

#include "inspect/base/paths.h"
#include "inspect/formats/gaugeText.h"

#include <KxMath/KxRecording.h>

#include <QtCore/QFile>

namespace KxInspect {

namespace detail {

namespace {

constexpr qint64 kHeadSize = 1 << 12; // bytes; headers of gauge files have some 2000

/// The kind of files of other programs.
std::optional<FileKind> kindByFirstLine(const QByteArray& head) {
    if (head.startsWith("\x93NUMPY")) {
        return FileKind::Npy;
    }
    if (head.startsWith("Gwyddion Simple Field ")) {
        return FileKind::Gsf;
    }
    if (head.startsWith("aISO-") || head.startsWith("bISO-")) {
        return FileKind::Sdf;
    }
    if (head.startsWith("solid ") && head.contains("facet")) {
        return FileKind::Stl;
    }
    const qsizetype element = head.indexOf("<VTKFile");
    if (element < 0 || element != head.indexOf("<VTKFile ")) {
        return {};
    }
    const QByteArray attributes = head.mid(element, head.indexOf('>', element) - element);
    if (attributes.contains("\"ImageData\"")) {
        return FileKind::Vti;
    }
    return attributes.contains("\"PolyData\"") ? std::optional(FileKind::Vtp) : std::nullopt;
}

/// The kind that the first bytes state.
std::optional<FileKind> kindBySignature(const QByteArray& head) {
    switch (head.isEmpty() ? '\0' : head.front()) {
    case KxMath::KxSectionXY:
    case KxMath::KxSectionXYZ:
    case KxMath::KxSectionXYZRGB:
        return FileKind::Cloud;
    case KxMath::KxProfileRecord:
        return FileKind::Profiles;
    default:
        break;
    }
    if (head.startsWith("ply\n") || head.startsWith("ply\r")) {
        return FileKind::Ply;
    }
    if (head.startsWith("# .PCD") || head.startsWith("VERSION ") || head.startsWith("FIELDS ")) {
        return FileKind::Pcd;
    }
    return kindByFirstLine(head);
}

bool isText(const QByteArray& head) {
    if (head.startsWith("\xff\xfe") || head.startsWith("\xfe\xff")) { // UTF-16
        return true;
    }
    const auto isControl = [](char c) {
        return static_cast<unsigned char>(c) < ' ' && c != '\t' && c != '\r' && c != '\n' && c != '\f';
    };
    return !head.isEmpty() && std::none_of(head.cbegin(), head.cend(), isControl);
}

} // namespace

std::optional<FileKind> kindOfFile(QIODevice& file, const std::string& name) {
    const std::optional<FileKind> byName = kindByFileName(name);
    QByteArray head = file.peek(kHeadSize);
    if (byName == FileKind::Xyzf || byName == FileKind::Stl) { // these begin with any byte
        return byName;
    }
    if (const std::optional<FileKind> kind = kindBySignature(head)) {
        return kind;
    }
    if (!isText(head)) {
        return byName;
    }
    if (head.startsWith("\xef\xbb\xbf")) {
        head.remove(0, 3);
    }
    if (beginsGaugeHeader({head.constData(), static_cast<std::size_t>(head.size())})) {
        return FileKind::Gauge;
    }
    if (byName && *byName != FileKind::Cloud && *byName != FileKind::Profiles) {
        return byName;
    }
    return head.left(head.indexOf('\n')).contains(';') ? FileKind::Csv : FileKind::Xyz;
}

} // namespace detail

std::optional<FileKind> kindOfFile(const std::string& path) {
    const detail::QtPath where(path);
    QFile file(where.text());
    const bool isKept = file.open(QIODevice::ReadOnly) && !file.isSequential(); // a pipe would lose what is looked at
    return isKept ? detail::kindOfFile(file, path) : kindByFileName(path);
}

} // namespace KxInspect
