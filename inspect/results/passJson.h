// A pass for programs.
#pragma once

#include "inspect/train/pass.h"

#include <QtCore/QString>

namespace kxtool {

/// The whole result as a JSON document; missing values are null.
/// @param folder where the wheel files are, empty (then null) when they were not kept
QString passJson(const Pass& pass, const QString& folder);

} // namespace kxtool
