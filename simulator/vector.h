// Vectors in the track frame: X along the track, Y across it to the left, Z up from the top of the rails, in mm.
#pragma once

namespace kxsim {

struct Vec3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    friend Vec3 operator+(const Vec3& a, const Vec3& b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
    friend Vec3 operator-(const Vec3& a, const Vec3& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
    friend Vec3 operator*(double f, const Vec3& v) { return {f * v.x, f * v.y, f * v.z}; }
};

inline double dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

inline Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

/// A ray; a hit is given by the parameter t of origin + t * direction.
struct Ray {
    Vec3 origin;
    Vec3 direction;

    Vec3 at(double t) const { return origin + t * direction; }
};

} // namespace kxsim
