// Tables for the standard output.
#pragma once

#include <QtCore/QStringList>

#include <vector>

namespace kxtool {

/// Rows of equally many cells as lines of text, the columns aligned right.
QString textTable(const std::vector<QStringList>& rows);

} // namespace kxtool
