// Names of files: the bytes of the system in the strings of Qt.
#include "tools/kxmath/console/fileNames.h"

#include "inspect/base/utf8.h"

namespace kxtool {

namespace {

constexpr char16_t kFirstEscape = 0xdc00; // and the byte, which is 0x80 or more

bool isEscape(const QString& text, qsizetype i) {
    const bool isPaired = i > 0 && text[i - 1].isHighSurrogate();
    return !isPaired && text[i].unicode() >= kFirstEscape + 0x80 && text[i].unicode() <= kFirstEscape + 0xff;
}

} // namespace

QString fromBytes(std::string_view bytes) {
    QString text;
    for (std::size_t at = 0; at < bytes.size();) {
        if (const std::size_t length = KxInspect::detail::utf8Length(bytes, at); length > 0) {
            text += QString::fromUtf8(bytes.data() + at, static_cast<qsizetype>(length));
            at += length;
        } else {
            text += QChar(static_cast<char16_t>(kFirstEscape + static_cast<unsigned char>(bytes[at])));
            ++at;
        }
    }
    return text;
}

std::string toBytes(const QString& text) {
    std::string bytes;
    qsizetype begin = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (isEscape(text, i)) {
            bytes += text.mid(begin, i - begin).toStdString();
            bytes += static_cast<char>(text[i].unicode() - kFirstEscape);
            begin = i + 1;
        }
    }
    return bytes + text.mid(begin).toStdString();
}

} // namespace kxtool
