// Ending a command on SIGINT and SIGTERM so that it cleans up.
#include "tools/kxmath/console/interruption.h"

#include <cstddef>

namespace kxtool {

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM};

volatile std::sig_atomic_t noted = 0;

void note(int signal) {
    noted = signal;
}

} // namespace

Interruption::Interruption() {
    struct sigaction action {};
    action.sa_handler = note;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART); // the second one finds the default, which kills
    for (std::size_t i = 0; i < 2; ++i) {
        sigaction(kSignals[i], nullptr, &before_[i]);
        if (before_[i].sa_handler != SIG_IGN) {
            sigaction(kSignals[i], &action, nullptr);
        }
    }
}

Interruption::~Interruption() {
    for (std::size_t i = 0; i < 2; ++i) {
        sigaction(kSignals[i], &before_[i], nullptr);
    }
}

void throwIfInterrupted() {
    if (noted != 0) {
        throw Interrupted{noted};
    }
}

} // namespace kxtool
