// Tables for the standard output.
#pragma once

#include <QtCore/QStringList>

#include <vector>

namespace kxtool {

/// Rows with as many cells each, as lines of columns that are as wide as they must be.
QString textTable(const std::vector<QStringList>& rows);

} // namespace kxtool
