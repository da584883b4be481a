// What the distances of a pass and their intervals mean, in words.
#pragma once

#include <KxInspect/PassResult.h>

#include <QtCore/QStringList>

namespace kxreport {

/// Sentences below a table of distances: what their intervals hold, where they are measured, what the sign of a yaw means,
/// and why pairs have no interval or no yaw.
QStringList distanceNotes(const KxInspect::PassResult& pass);

} // namespace kxreport
