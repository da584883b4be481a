// Pictures of the cells of a height map: z to the right, x upwards.
#pragma once

#include <KxInspect/Grid.h>

#include <QtCore/QString>

namespace kxreport {

/// The heights with their colour scale.
QString heightPicture(const KxInspect::GridResult& grid);

/// The block means, each drawn in the middle of its block.
QString meansPicture(const KxInspect::GridResult& grid);

/// The patches in colours of their own, with their numbers.
QString patchPicture(const KxInspect::GridResult& grid);

/// Whether z and x are drawn to one scale; not for a scan that would become a thin line.
bool isToScale(const KxInspect::GridResult& grid);

} // namespace kxreport
