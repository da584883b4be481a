// The page of a fit of settings.
#pragma once

#include "report/elements/pageOrigin.h"

#include <KxInspect/StationSetup.h>

#include <QtCore/QString>

namespace kxreport {

QString fitReport(const KxInspect::StationFit& fit, const PageOrigin& origin = {});

} // namespace kxreport
