// Pictures of the cells of a height map: z to the right, x upwards.
#pragma once

#include <KxInspect/Grid.h>

#include <QtCore/QString>

namespace kxreport {

/// The heights with their colour scale.
QString heightPicture(const KxInspect::GridResult& grid);

/// The block means, each drawn in the middle of its block.
QString meansPicture(const KxInspect::GridResult& grid);

/// The patches, each in its colour and with its number.
QString patchPicture(const KxInspect::GridResult& grid);

/// Whether z and x are drawn to the same scale; false for a scan so narrow that it would become a thin line.
bool isToScale(const KxInspect::GridResult& grid);

} // namespace kxreport
