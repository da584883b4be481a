// Pictures of the cells of a grid: z to the right, x upwards.
#pragma once

#include "inspect/scan/scanGrid.h"

#include <QtCore/QString>

namespace kxtool {

/// The heights with their colour scale.
QString heightPicture(const ScanGrid& grid);

/// The block means, each drawn in the middle of its block.
QString meansPicture(const ScanGrid& grid, int blockSize);

/// The seeds in colours of their own, with their numbers.
QString seedsPicture(const ScanGrid& grid);

/// Whether z and x are drawn to one scale; not for a scan that would become a thin line.
bool isToScale(const ScanGrid& grid);

} // namespace kxtool
