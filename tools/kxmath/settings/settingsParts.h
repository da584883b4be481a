// The parts of kxmath settings.
#pragma once

#include <QtCore/QStringList>

namespace kxtool {

/// Each runs with the name of the program and the arguments behind its own name. @return the exit code
int runSettingsInit(const QStringList& arguments);
int runSettingsCheck(const QStringList& arguments);
int runSettingsFit(const QStringList& arguments);

} // namespace kxtool
