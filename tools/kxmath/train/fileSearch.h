// Finding files by their content.
#pragma once

#include <KxInspect/InputFile.h>
#include <KxInspect/Progress.h>

#include <cstdint>
#include <string>
#include <vector>

namespace kxtool {

/// A file that is looked for.
struct WantedFile {
    KxInspect::InputFile identity;
    std::string path = {}; ///< where one of this size and hash is; empty where there is none
    /// A file of this name with another content; looked for only as long as the wanted one is not found.
    std::string namesake = {};
};

struct SearchedFolders {
    std::vector<std::string>
        unreadable; ///< folders and files that could not be read, with the reason: "'x': no such file"
};

/// Looks for files below a folder. Only files of a wanted size are read, those of the wanted name first; links to files are
/// followed, links to folders are not. Throws an Error when the folder itself cannot be read.
SearchedFolders findFiles(const std::string& folder, std::vector<WantedFile>& wanted,
                          const KxInspect::Progress& progress);

} // namespace kxtool
