// Measured wheels in words.
#pragma once

#include <KxInspect/Wheel.h>

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace kxreport {

/// The names of the wheels' files, with folders where the names alone are alike.
QStringList wheelNames(const KxInspect::WheelResults& results);

/// "≥ 27.5, ≤ 31"; a dash without a limit.
QString limitText(const KxInspect::Limit& limit);

/// "the noise of the points and the standard uncertainties of the gauge, 0.01 mm, 0.1 mrad and 100 millionths".
QString causesText(const KxInspect::GaugeError& error);

/// "2 of 3 wheels judged by the limits, 1 of them outside"; empty without limits.
QString judgementText(const KxInspect::WheelResults& results);

} // namespace kxreport
