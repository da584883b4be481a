// How commands end when memory runs out.
#pragma once

namespace kxtool {

/// Prints "kxmath COMMAND: not enough memory", or without the command, and does not allocate. @return the exit code
int failMemory(const char* command = nullptr);

/// Makes also a program end so whose memory runs out where exceptions may not pass.
void installMemoryGuard();

} // namespace kxtool
