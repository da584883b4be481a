// The patches of a height map as rows of tables.
#pragma once

#include <KxInspect/Grid.h>

#include <QtCore/QStringList>

namespace kxreport {

/// The headings of the columns.
QStringList patchColumns();
/// The row of a patch, counted from 0.
QStringList patchRow(const KxInspect::GridResult& grid, std::size_t index);

/// The limits of the search as text.
QString searchText(const KxInspect::PatchSearch& search);

} // namespace kxreport
