// The results of kxmath conicity as text.
#pragma once

#include <KxInspect/Conicity.h>

#include <QtCore/QString>

namespace kxtool {

/// The conicity at the amplitude that is wanted in particular and at whole ones.
QString conicityTable(const KxInspect::ConicityResult& result);

/// The whole curve.
QString conicityCsv(const KxInspect::ConicityResult& result);

} // namespace kxtool
