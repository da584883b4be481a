// A height map with its block means and patches as an HTML page with pictures.
#pragma once

#include "report/elements/pageOrigin.h"

#include <KxInspect/Grid.h>

#include <QtCore/QString>

namespace kxreport {

/// The page of a result. One without heights (read from JSON without pictures) has the tables only.
QString gridReport(const KxInspect::GridResult& grid, const PageOrigin& origin = {});

} // namespace kxreport
