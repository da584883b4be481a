// The results of kxmath profile as text.
#pragma once

#include <KxInspect/ProfileChain.h>

#include <QtCore/QString>

namespace kxtool {

/// The steps with their numbers of points, and what was found.
QString profileTable(const KxInspect::ProfileResult& result);

/// All operations, a line for each.
QString operationList();

} // namespace kxtool
