// Runs the code of docs/tasks.md.
#include "tasks.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>

#include <cstdio>

namespace {

int failures = 0;

} // namespace

void expect(bool holds, const char* what) {
    if (!holds) {
        std::printf("not so: %s\n", what);
        ++failures;
    }
}

int main() {
    const QTemporaryDir folder;
    if (!folder.isValid() || !QDir::setCurrent(folder.path())) {
        std::printf("no temporary folder\n");
        return 1;
    }
    tryFiles();
    tryCleaning();
    tryFits();
    tryFeatures();
    tryClouds();
    tryScans();
    tryHeightMaps();
    tryRailway();
    tryMeasuring();
    return failures == 0 ? 0 : 1;
}
