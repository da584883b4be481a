// The measures of the wheels of a pass as text.
#pragma once

#include <KxInspect/PassResult.h>

#include <QtCore/QString>

namespace kxtool {

/// A table with a row per wheel, and why measures are missing; empty for a pass whose wheels were not measured.
QString wheelMeasuresText(const KxInspect::PassResult& pass);

} // namespace kxtool
