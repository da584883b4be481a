// What kxmath help tells beside the help of the commands.
#pragma once

#include <span>

namespace kxtool {

/// A subject of several commands.
struct HelpTopic {
    const char* name;
    const char* title;
    const char* text; ///< paragraphs and indented lists
};

/// All topics in the order in which the help lists them. No name is that of a command.
std::span<const HelpTopic> helpTopics();

} // namespace kxtool
