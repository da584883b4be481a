// Pictures as PNG files (ISO/IEC 15948:2004) in memory.
#include "report/elements/png.h"

#include <array>
#include <new>

namespace kxreport {

namespace {

/// The remainders of all bytes for the cyclic redundancy check, ISO/IEC 15948, annex D.
std::array<std::uint32_t, 256> makeRemainders() {
    std::array<std::uint32_t, 256> remainders;
    for (std::uint32_t byte = 0; byte < remainders.size(); ++byte) {
        std::uint32_t remainder = byte;
        for (int bit = 0; bit < 8; ++bit) {
            remainder = (remainder >> 1) ^ ((remainder & 1u) != 0 ? 0xedb88320u : 0u);
        }
        remainders[byte] = remainder;
    }
    return remainders;
}

std::uint32_t checksum(const QByteArray& bytes) {
    static const std::array<std::uint32_t, 256> remainders = makeRemainders();
    std::uint32_t sum = 0xffffffffu;
    for (const char c : bytes) {
        sum = remainders[(sum ^ static_cast<std::uint8_t>(c)) & 0xffu] ^ (sum >> 8);
    }
    return ~sum;
}

void appendNumber(QByteArray& bytes, std::uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes.append(static_cast<char>((number >> shift) & 0xffu));
    }
}

void appendChunk(QByteArray& file, const char* type, const QByteArray& data) {
    appendNumber(file, static_cast<std::uint32_t>(data.size()));
    const QByteArray checked = type + data; // the length is not part of the sum
    file += checked;
    appendNumber(file, checksum(checked));
}

QByteArray header(const PaletteImage& image) {
    constexpr char kBitDepth = 8;
    constexpr char kIndexedColour = 3;
    QByteArray data;
    appendNumber(data, static_cast<std::uint32_t>(image.width));
    appendNumber(data, static_cast<std::uint32_t>(image.height));
    data.append(kBitDepth).append(kIndexedColour);
    return data.append(3, '\0'); // deflate, adaptive filters, no interlace
}

QByteArray palette(const PaletteImage& image) {
    QByteArray data;
    for (const Rgb colour : image.palette) {
        for (int shift = 16; shift >= 0; shift -= 8) {
            data.append(static_cast<char>((colour >> shift) & 0xffu));
        }
    }
    return data;
}

QByteArray compressedRows(const PaletteImage& image) {
    constexpr char kNoFilter = 0;
    constexpr int kLengthBytes = 4; // qCompress() puts the length before the zlib stream
    QByteArray rows;
    rows.reserve((qsizetype(image.width) + 1) * image.height);
    const char* pixels = reinterpret_cast<const char*>(image.pixels.data());
    for (int row = 0; row < image.height; ++row) {
        rows.append(kNoFilter).append(pixels, image.width);
        pixels += image.width;
    }
    const QByteArray compressed = qCompress(rows, 9);
    if (compressed.isEmpty()) { // without memory
        throw std::bad_alloc();
    }
    return compressed.mid(kLengthBytes);
}

} // namespace

QByteArray png(const PaletteImage& image) {
    QByteArray file("\x89PNG\r\n\x1a\n");
    appendChunk(file, "IHDR", header(image));
    appendChunk(file, "PLTE", palette(image));
    appendChunk(file, "tRNS", QByteArray(1, '\0'));
    appendChunk(file, "IDAT", compressedRows(image));
    appendChunk(file, "IEND", {});
    return file;
}

} // namespace kxreport
