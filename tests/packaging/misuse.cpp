// Each macro switches on one line that must not compile.
#include <KxMath/KxMath.h>

using namespace KxMath;

int main() {
    const KxProfile constProfile;
    KxProfile profile;
    KxPointCloud<KxPointXY> cloudXY;
    KxPointCloud<KxPointXYZ> cloudXYZ;
    KxPointCloud<KxPointXYZRGB> cloudXYZRGB;
    KxInterpolant interpolant;
    QList<KxProfile> profiles;
#if defined(COPY_CONST_CLOUD)
    const KxPointCloud<KxPointXYZ> constCloud;
    KxPointCloud<KxPointXYZ> copy(constCloud);
#elif defined(COPY_CONST_PROFILE)
    KxProfile copy(constProfile);
#elif defined(APPEND_TO_LIST)
    profiles.append(profile);
#elif defined(COPY_INTERPOLANT)
    KxInterpolant copy(interpolant);
#elif defined(ASSIGN_INTERPOLANT)
    interpolant = interpolant;
#elif defined(CHAIN_POINTS)
    KxPointXY a, b, c;
    a = b = c;
#elif defined(SIZE_Z_OF_XY)
    cloudXY.size_z();
#elif defined(GET_INDEX_Z_OF_XY)
    cloudXY.getIndexZ(0);
#elif defined(TRIM_OF_XYZRGB)
    cloudXYZRGB.trim(0, 1, 0, 1, 0, 1);
#elif defined(GET_INDEX_X_OF_XYZRGB)
    cloudXYZRGB.getIndexX(0);
#elif defined(RESIZE_OF_XYZRGB)
    cloudXYZRGB.resize(1, 1, 1);
#elif defined(ROTATE_XY_OF_XYZRGB)
    cloudXYZRGB.rotateXY(0);
#endif
    return cloudXY.size() + cloudXYZ.size() + cloudXYZRGB.size() + interpolant.count + int(profiles.size());
}
