// How commands end when memory runs out.
#pragma once

namespace kxtool {

/// Prints "kxmath COMMAND: not enough memory", or without the command, and does not allocate. @return the exit code
int failMemory(const char* command = nullptr);

/// Makes also a program end so whose memory runs out where exceptions may not pass.
void installMemoryGuard();

/// Qt keeps data for each thread, which it makes with the first object that needs them. Without memory for them Qt 6.4
/// crashes. This makes them, and ends the program in the same way. To be called first in each new thread.
void makeThreadData();

} // namespace kxtool
