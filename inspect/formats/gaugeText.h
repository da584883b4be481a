// Text files of contact profile gauges.
#pragma once

#include "inspect/formats/textTable.h"

namespace KxInspect::detail {

/// Whether a text begins as the header of a gauge file: "NAME=", "NAME...:" or "header.begin".
bool beginsGaugeHeader(std::string_view text);

/// Reads the points behind the header of a gauge file. See ProfileFile.h for what is accepted.
/// Throws an Error Damaged or Unsuitable with line and column, Unreadable.
TextForm readGaugeText(TextLines& lines, const TextOptions& options, PointSink& sink);

} // namespace KxInspect::detail
