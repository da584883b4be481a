// Signals while an Interruption lives and afterwards.
#include "tools/kxmath/console/interruption.h"

#include <gtest/gtest.h>

#include <csignal>

#include <unistd.h>

using namespace kxtool;

namespace {

volatile std::sig_atomic_t seen = 0;

void see(int signal) {
    seen = signal;
}

TEST(Interruption, LeavesTheHandlersAsTheyWere) {
    for (const int number : {SIGINT, SIGTERM}) {
        SCOPED_TRACE(number);
        struct sigaction own {};
        struct sigaction before {};
        own.sa_handler = see;
        sigaction(number, &own, &before);
        {
            const Interruption interruption;
            struct sigaction during {};
            sigaction(number, nullptr, &during);
            EXPECT_NE(during.sa_handler, see);
            EXPECT_NE(during.sa_handler, SIG_DFL);
        }
        seen = 0;
        kill(getpid(), number);
        EXPECT_EQ(seen, number);
        EXPECT_NO_THROW(throwIfInterrupted());
        sigaction(number, &before, nullptr);
    }
}

} // namespace
