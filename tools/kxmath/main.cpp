// The program kxmath.
#include "tools/kxmath/commands.h"

#include <QtCore/QCoreApplication>

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return kxtool::runMain(QCoreApplication::arguments());
}
