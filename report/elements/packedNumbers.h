// Numbers in the text of a page: quantised, coded as steps, compressed. report/view/script/data.js reads them.
#pragma once

#include <QtCore/QByteArray>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace kxreport {

/// Values further than this many units of the resolution from 0 are not held; steps between others are exact in the
/// double precision of scripts.
inline constexpr double kMostUnits = 35184372088832.0; // 2 to the power of 45

/// Quantised values as codes of 7 bits per byte, the lowest first, the eighth bit set in all bytes but the last of a code.
/// Code 0 is a missing value. Another one is twice the step from the last value of its row (from 0 for the first one) and
/// 1, for a negative step twice its size. A value that comes back is off by at most half the resolution.
class NumberCoder {
public:
    explicit NumberCoder(double resolution) : resolution_(resolution) {}

    void beginRow() { last_ = 0; }
    /// Values that are not finite or beyond kMostUnits are missing.
    void add(double value);
    /// A number from 0 on as a code of its own, without steps.
    void addCode(std::uint64_t code);

    /// How many finite values were left out.
    std::size_t leftOut() const { return leftOut_; }
    const QByteArray& bytes() const { return bytes_; }

private:
    double resolution_;
    std::int64_t last_ = 0;
    std::size_t leftOut_ = 0;
    QByteArray bytes_;
};

/// A zlib stream of the bytes (RFC 1950) in base64.
QByteArray packed(const QByteArray& bytes);

} // namespace kxreport
