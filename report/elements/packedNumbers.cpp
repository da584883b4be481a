// Numbers in the text of a page.
#include "report/elements/packedNumbers.h"

#include <cmath>
#include <new>

namespace kxreport {

void NumberCoder::add(double value) {
    const double units = std::round(value / resolution_);
    if (!(std::abs(units) <= kMostUnits)) { // NaN: true
        leftOut_ += std::isfinite(value) ? 1 : 0;
        bytes_.append('\0');
        return;
    }
    const auto unit = static_cast<std::int64_t>(units);
    const std::int64_t step = unit - last_;
    last_ = unit;
    addCode(1 + (step < 0 ? static_cast<std::uint64_t>(-step) * 2 - 1 : static_cast<std::uint64_t>(step) * 2));
}

void NumberCoder::addCode(std::uint64_t code) {
    while (code > 127) {
        bytes_.append(static_cast<char>((code & 127) | 128));
        code >>= 7;
    }
    bytes_.append(static_cast<char>(code));
}

QByteArray packed(const QByteArray& bytes) {
    constexpr int kLengthBytes = 4; // qCompress() puts the length before the zlib stream
    constexpr int kLevel = 6;
    if (bytes.isEmpty()) { // qCompress() makes no stream of it
        return QByteArray("\x78\x9c\x03\x00\x00\x00\x00\x01", 8).toBase64();
    }
    const QByteArray compressed = qCompress(bytes, kLevel);
    if (compressed.isEmpty()) { // without memory
        throw std::bad_alloc();
    }
    return compressed.mid(kLengthBytes).toBase64();
}

} // namespace kxreport
