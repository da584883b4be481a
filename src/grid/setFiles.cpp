// Sets of profiles in files.
#include "KxMath/KxProfileZ.h"

#include "grid/forReading.h"
#include "io/binaryIo.h"
#include "numeric/bounds.h"

namespace KxMath {

int KxProfileZSet::readFromFile(QString fileName) {
    clear();
    QFile file(fileName);
    if (!detail::openForReading(file)) {
        return size();
    }
    for (;;) {
        KxProfileZ profile; // a new one each time, so that no profile keeps the capacity of a larger one
        const int count = profile.readFromFile(file);
        if (count < 0) { // the end, or a damaged record
            break;
        }
        if (count > 0) {
            profile.z = detail::kNaN; // deliberately not the one in the file
            profiles.append(profile);
        }
    }
    return size();
}

int KxProfileZSet::readFromFile(QString fileName, float z0, float dz) {
    clear();
    stepZ = dz;
    QFile file(fileName);
    if (!detail::openForReading(file)) {
        return size();
    }
    for (float z = z0;; z += dz) { // deliberately a running sum, which a section without points advances too
        KxProfile profile;
        const int count = profile.readFromFile(file);
        if (count < 0) { // the end, or a damaged section
            break;
        }
        if (count > 0) {
            KxProfileZ positioned(profile);
            positioned.z = z;
            profiles.append(positioned);
        }
    }
    return size();
}

bool KxProfileZSet::writeToFile(QString fileName) {
    QFile file(fileName);
    if (!detail::openForWriting(file)) {
        return false;
    }
    for (const KxProfileZ& profile : std::as_const(profiles)) {
        if (!detail::forReading(profile).writeToFile(file)) {
            return false;
        }
    }
    return detail::closeWritten(file);
}

} // namespace KxMath
