// A height map with its seeds as a table and for programs.
#pragma once

#include "inspect/scan/scanGrid.h"

namespace kxtool {

/// A seed in words, for tables.
QStringList seedColumns();
QStringList seedRow(const ScanGrid& grid, size_t index);

/// The limits of the search in words.
QString searchText(const SeedSearch& search);

/// The table for the standard output.
QString gridText(const GridOptions& options, const ScanGrid& grid);

/// The result as JSON.
QString gridJson(const GridOptions& options, const ScanGrid& grid);

} // namespace kxtool
