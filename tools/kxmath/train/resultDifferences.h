// Where two results in JSON differ.
#pragma once

#include <QtCore/QStringList>

#include <string>

namespace kxtool {

/// The members that differ: "pairs[2].backToBack: 1360.5 in the result, 1360.25 measured". Empty for texts with the same
/// values.
QStringList differences(const std::string& result, const std::string& measured);

} // namespace kxtool
