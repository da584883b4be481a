// Progress on a terminal.
#include "tools/kxmath/console/console.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <string>

#include <pty.h>
#include <unistd.h>

namespace {

/// While it lives, stderr is a terminal.
class Terminal {
public:
    Terminal() : before_(dup(STDERR_FILENO)) {
        int terminal = -1;
        if (openpty(&screen_, &terminal, nullptr, nullptr, nullptr) == 0) {
            dup2(terminal, STDERR_FILENO);
            close(terminal);
        }
    }
    ~Terminal() {
        restore();
        close(before_);
        close(screen_);
    }
    /// What it shows.
    std::string shown() {
        std::fputc('.', stderr); // never nothing
        std::fflush(stderr);
        std::string all;
        std::array<char, 4096> text = {};
        ssize_t size = 1;
        while (size > 0 && (all.empty() || all.back() != '.')) { // it comes in parts
            size = read(screen_, text.data(), text.size());
            all.append(text.data(), static_cast<std::size_t>(size < 0 ? 0 : size));
        }
        restore();
        return all;
    }

private:
    void restore() const { dup2(before_, STDERR_FILENO); }

    int before_;
    int screen_ = -1;
};

TEST(Progress, ShowsEachPercentOnceOnATerminal) {
    Terminal terminal;
    {
        kxtool::Progress progress;
        progress.step(QStringLiteral("reading a"));
        for (const int done : {250, 252, 252, 760}) {
            progress.part(done, 1000);
        }
        const KxInspect::Progress callback = progress.callback();
        callback("reading b", 0.0);
        callback("reading b", 0.5);
        progress.part(0, 0);
    }
    EXPECT_EQ(terminal.shown(), "\r\033[Kreading a\r\033[Kreading a 25 %\r\033[Kreading a 76 %"
                                "\r\033[Kreading b\r\033[Kreading b 50 %\r\033[Kreading b 100 %\r\033[K.");
}

} // namespace
