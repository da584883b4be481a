// The patches of a height map in words, for tables.
#pragma once

#include <KxInspect/Grid.h>

#include <QtCore/QStringList>

namespace kxreport {

/// The headings of the columns.
QStringList patchColumns();
/// The row of a patch, counted from 0.
QStringList patchRow(const KxInspect::GridResult& grid, std::size_t index);

/// The limits of the search in words.
QString searchText(const KxInspect::PatchSearch& search);

} // namespace kxreport
