// A height map with its patches as a table.
#pragma once

#include <KxInspect/Grid.h>

#include <QtCore/QString>

namespace kxtool {

/// The table for the standard output.
QString gridText(const KxInspect::GridResult& grid);

} // namespace kxtool
