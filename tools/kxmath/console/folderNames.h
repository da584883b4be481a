// What is in a folder.
#pragma once

#include <string>
#include <vector>

namespace kxtool {

/// Appends the names of all that is in a folder, in no order, without "." and "..".
/// (std::filesystem::directory_iterator ends the program when there is no memory.)
/// @return 0, else the error of the system; some names may have been appended
int appendNamesIn(const std::string& path, std::vector<std::string>& names);

} // namespace kxtool
