// Settings files that several processes may change at once.
#pragma once

#include <KxInspect/Progress.h>

#include <functional>
#include <string>

namespace KxInspect::detail {

/// The text of a settings file, empty where there is none. Throws an Error (Unreadable) when it cannot be read whole.
std::string readSettingsText(const std::string& file);

/// Replaces the text of a settings file by what `change` makes of it; it is made where there is none. Those who change
/// one file at once, processes or threads, take turns: meanwhile FILE.lock stands beside it. The lock of a process that
/// died is removed. Throws the errors of readSettingsText() and of `change`, and Unwritable when the file cannot be
/// written, which then stays as it was, or when another process holds the lock for 10 s.
/// @param progress called while it waits; it may throw to give up
void changeSettings(const std::string& file, const std::function<std::string(const std::string&)>& change,
                    const Progress& progress);

} // namespace KxInspect::detail
