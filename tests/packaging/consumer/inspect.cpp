// What a user of the library for measuring does first: call it, and catch what it throws.
#include <KxInspect/KxInspect.h>
#include <KxInspect/KxMathTypes.h>

#include <cstdio>
#include <string>

int main() {
    KxInspect::Profile profile;
    profile.points = {{0.0f, 1.0f}, {2.0f, 3.0f}};
    KxMath::KxProfile converted = KxInspect::toKxProfile(profile);
    try {
        KxInspect::RecordingReader reader("no such recording");
    } catch (const KxInspect::Error& error) {
        std::puts(error.what());
        const bool isTold = error.kind() == KxInspect::ErrorKind::NotFound &&
                            error.what() == std::string("recording 'no such recording' does not exist");
        return isTold && converted.size() == 2 ? 0 : 1;
    }
    return 1;
}
