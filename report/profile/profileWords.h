// What a chain of operations did and found, in words.
#pragma once

#include <KxInspect/ProfileChain.h>

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <utility>
#include <vector>

namespace kxreport {

/// The heads of the columns of stepRow().
QStringList stepHead();

/// A step, its numbers of points, and whether it changed anything.
QStringList stepRow(const KxInspect::StepOutcome& outcome);

/// The values of a finding and its points with their titles, or why there is none.
std::vector<std::pair<QString, QString>> findingRows(const KxInspect::ProfileFinding& finding);

} // namespace kxreport
