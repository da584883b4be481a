// The page of a fit of settings.
#pragma once

#include <KxInspect/StationSetup.h>

#include <QtCore/QString>

namespace kxreport {

QString fitReport(const KxInspect::StationFit& fit);

} // namespace kxreport
