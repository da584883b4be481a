// A fit of settings as text for the standard output.
#pragma once

#include <KxInspect/StationSetup.h>

#include <QtCore/QString>

namespace kxtool {

QString fitText(const KxInspect::StationFit& fit);

} // namespace kxtool
