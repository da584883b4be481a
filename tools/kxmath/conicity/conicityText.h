// The results of kxmath conicity as text.
#pragma once

#include <KxInspect/Conicity.h>

#include <QtCore/QString>

namespace kxtool {

/// The conicity at the shown amplitude and at whole amplitudes.
QString conicityTable(const KxInspect::ConicityResult& result);

/// The whole curve.
QString conicityCsv(const KxInspect::ConicityResult& result);

} // namespace kxtool
