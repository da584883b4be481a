// What files hold, for pages that show it.
#pragma once

#include "report/view/dataViews.h"
#include "tools/kxmath/view/viewOptions.h"

#include <KxInspect/Progress.h>

#include <string>
#include <variant>

namespace kxtool {

/// What is shown: the text of a result, or data.
using Shown = std::variant<std::string, kxreport::ProfilesView, kxreport::SetView, kxreport::CloudView>;

/// Reads the files of the arguments. Throws an Error for files that cannot be read, a CommandError for files and options
/// that do not go together.
Shown readShown(const ViewArguments& arguments, const KxInspect::Progress& progress);

} // namespace kxtool
