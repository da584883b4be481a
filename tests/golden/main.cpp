// Prints results of all areas of the library, bit by bit, to be compared between builds.
#include "golden.h"

int main() {
    golden::printGeometry();
    golden::printClouds();
    golden::printProfiles();
    golden::printGrids();
    golden::printRailway();
    return 0;
}
