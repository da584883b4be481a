// A height map with its block means and seeds as an HTML page with pictures.
#pragma once

#include "inspect/scan/scanGrid.h"

namespace kxtool {

QString gridReport(const GridOptions& options, const ScanGrid& grid);

} // namespace kxtool
