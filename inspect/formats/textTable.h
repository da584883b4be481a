// Texts that are tables of points.
#pragma once

#include "inspect/formats/textLines.h"

#include <KxInspect/TextForm.h>

namespace KxInspect::detail {

/// What a text is read for.
enum class TextUse {
    Profile, ///< x and y
    Points, ///< x, y and z if there is one
};

/// Takes up the points of a text.
class PointSink {
public:
    virtual ~PointSink() = default;
    /// Before the first point; again, what came is then void, when the text turns out to have another form.
    /// @param most no more points come
    virtual void begin(std::int64_t most, bool hasZ) = 0;
    virtual void add(float x, float y, float z) = 0; ///< z is NaN without one
};

/// Throws an Error BadArgument about options that cannot be.
void checkTextOptions(const TextOptions& options, TextUse use);

/// Reads a text in which each line is a point, behind titles. See ProfileFile.h for what is accepted.
/// Throws an Error Damaged or Unsuitable with line and column, Unreadable.
TextForm readTextTable(TextLines& lines, const TextOptions& options, TextUse use, PointSink& sink);

/// The name of a separator in messages: "';'", "blanks".
QString separatorName(char separator);

} // namespace KxInspect::detail
