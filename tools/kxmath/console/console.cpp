// The output of a command on stderr and stdout.
#include "tools/kxmath/console/console.h"

#include "tools/kxmath/console/commandError.h"
#include "tools/kxmath/console/interruption.h"
#include "tools/kxmath/console/printable.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <unistd.h>

namespace kxtool {

void printLine(const char* command, const QString& message) {
    std::fprintf(stderr, "kxmath %s: %s\n", command, printable(message).toLocal8Bit().constData());
}

void printOutput(const QString& text) {
    const QByteArray bytes = text.toLocal8Bit();
    const size_t size = static_cast<size_t>(bytes.size());
    if (std::fwrite(bytes.constData(), 1, size, stdout) != size || std::fflush(stdout) != 0) {
        throw CommandError{OutputFailed, QStringLiteral("cannot write to the standard output: %1")
                                             .arg(QString::fromLocal8Bit(std::strerror(errno)))};
    }
}

Progress::Progress() : isShown_(isatty(fileno(stderr)) != 0) {}

Progress::~Progress() {
    wipe();
}

void Progress::step(const QString& text) {
    throwIfInterrupted();
    step_ = text;
    percent_ = -1;
    show(text);
}

void Progress::part(qint64 done, qint64 all) {
    throwIfInterrupted();
    const int percent = all > 0 ? static_cast<int>(100 * done / all) : 100;
    if (percent != percent_) {
        percent_ = percent;
        show(step_ + QStringLiteral(" %1 %").arg(percent));
    }
}

void Progress::wipe() {
    if (isShown_) { // without memory: it is called while commands give up
        std::fputs("\r\033[K", stderr);
        std::fflush(stderr);
    }
}

KxInspect::Progress Progress::callback() {
    return [this](const std::string& step, double part) {
        throwIfInterrupted();
        const QString text = QString::fromStdString(step);
        if (text != step_) {
            this->step(text);
        }
        if (part > 0.0) {
            this->part(static_cast<qint64>(part * 1000.0), 1000);
        }
    };
}

void Progress::show(const QString& text) {
    if (isShown_) {
        std::fprintf(stderr, "\r\033[K%s", printable(text).toLocal8Bit().constData());
        std::fflush(stderr);
    }
}

} // namespace kxtool
