// The parts of kxmath store.
#pragma once

#include <QtCore/QStringList>

namespace kxtool {

/// Each runs with the name of the program and the arguments behind its own name. @return the exit code
int runStoreAdd(const QStringList& arguments);
int runStoreExport(const QStringList& arguments);
int runStoreCheck(const QStringList& arguments);
int runStoreInfo(const QStringList& arguments);

} // namespace kxtool
