// The report of a result that was written as JSON.
#pragma once

#include <QtCore/QString>

#include <string>

namespace kxtool {

/// The report of a result of train, wheel, conicity, calibrate or grid. Throws an Error for another text.
/// @param file that holds it, for messages
QString resultPage(const std::string& json, const QString& file);

} // namespace kxtool
