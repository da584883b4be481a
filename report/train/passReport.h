// A pass as an HTML page with plots.
#pragma once

#include "inspect/train/pass.h"

#include <QtCore/QString>

namespace kxtool {

/// The page. The wheel files must still be in the folder of the pass.
/// @param pairNumber the pair whose profiles are shown, from 1 on
QString passReport(const Pass& pass, int pairNumber);

} // namespace kxtool
