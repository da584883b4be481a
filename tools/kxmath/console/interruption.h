// Ending a command on SIGINT and SIGTERM so that it cleans up.
#pragma once

#include <csignal>

namespace kxtool {

/// Thrown where a command ends because of a signal; its exit code is 128 and the number of the signal.
struct Interrupted {
    int signal;
};

/// While it lives, the first SIGINT or SIGTERM is only noted, for throwIfInterrupted(); a second one kills. Signals that
/// whoever started the program ignores stay ignored.
class Interruption {
public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption&) = delete;
    Interruption& operator=(const Interruption&) = delete;

private:
    struct sigaction before_[2];
};

/// Throws Interrupted when a signal was noted.
void throwIfInterrupted();

} // namespace kxtool
