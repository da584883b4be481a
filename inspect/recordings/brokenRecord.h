// What is wrong where no whole record begins.
#pragma once

#include <KxInspect/Error.h>

#include <QtCore/QFile>

namespace KxInspect::detail {

/// The error about the record at the position of `file`, which could not be read: cut short, of a kind that is not
/// expected, or unreadable; with its byte and number.
/// @param recordsBefore whole ones
/// @param expected the first bytes of the kinds of records that may stand there, rising: "\2\5"
Error brokenRecord(QFile& file, const ErrorSource& source, std::int64_t recordsBefore, const QByteArray& expected);

} // namespace KxInspect::detail
