// The treads of the wheels of a pass as maps.
#pragma once

#include "report/elements/page.h"

#include <KxInspect/PassResult.h>

namespace kxreport {

/// Adds the maps of the wheels that the page shows, those out of round first: the first one in three dimensions and with
/// sections where scripts run, the others as pictures. Nothing when the roundness of none was judged.
void addTreadMaps(const KxInspect::PassResult& pass, Page& page);

} // namespace kxreport
