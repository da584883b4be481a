// Results of the library's operations as text: hexadecimal floats, and for lists their number and a digest of all bits.
#pragma once

#include "support/bitDigest.h"

#include <KxMath/KxMath.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>

namespace golden {

using testing_support::BitDigest;

/// Random numbers from integers only, independent of compiler and mathematical library.
class Source {
public:
    explicit Source(std::uint32_t seed) : state_(seed * 2654435761u + 1u) {}

    std::uint32_t bits() {
        state_ = state_ * 1664525u + 1013904223u;
        return state_ >> 8;
    }
    /// -64 up to 64 in steps of 2^-12: exact in single precision.
    float value() { return static_cast<float>(static_cast<int>(bits() & 0x7ffffu) - 0x40000) / 4096.0f; }

private:
    std::uint32_t state_;
};

/// One line of the output: a name, then whatever is added.
class Line {
public:
    explicit Line(const char* name) { std::printf("%s:", name); }
    ~Line() { std::printf("\n"); }
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

    Line& operator<<(float v) { return *this << static_cast<double>(v); }
    Line& operator<<(double v) {
        if (std::isnan(v)) {
            std::printf(" nan"); // of any sign and payload
        } else {
            std::printf(" %a", v);
        }
        return *this;
    }
    Line& operator<<(int v) {
        std::printf(" %d", v);
        return *this;
    }
    Line& operator<<(const KxMath::KxPointXY& p) { return *this << p.x << p.y; }
    Line& operator<<(const KxMath::KxPointXYZ& p) { return *this << p.x << p.y << p.z; }
    Line& operator<<(const KxMath::KxLine& line) { return *this << line.k << line.b; }
    Line& operator<<(const KxMath::KxCircle& circle) { return *this << circle.x << circle.y << circle.radius; }
    template <typename Point>
    Line& operator<<(const KxMath::KxPointCloud<Point>& cloud) {
        return *this << cloud.points;
    }

    /// Number, first and middle element, and the digest of a list.
    template <typename T>
    Line& operator<<(const QList<T>& list) {
        BitDigest digest;
        for (const T& element : list) {
            add(digest, element);
        }
        *this << static_cast<int>(list.size());
        if (!list.isEmpty()) {
            *this << list.first() << list[list.size() / 2];
        }
        std::printf(" #%016llx", static_cast<unsigned long long>(digest.value()));
        return *this;
    }

private:
    static void add(BitDigest& digest, int v) { digest.add(v); }
    static void add(BitDigest& digest, float v) {
        digest.add(std::isnan(v) ? std::numeric_limits<float>::quiet_NaN() : v); // of any sign and payload
    }
    static void add(BitDigest& digest, const KxMath::KxPointXY& p) {
        add(digest, p.x);
        add(digest, p.y);
    }
    static void add(BitDigest& digest, const KxMath::KxPointXYZ& p) {
        add(digest, p.x);
        add(digest, p.y);
        add(digest, p.z);
    }
};

/// A profile of `count` points over -width/2 to width/2: an arc, a step, a groove, noise, and where `isDamaged` missing
/// points and spikes.
inline QList<KxMath::KxPointXY> profilePoints(std::uint32_t seed, int count, float width, bool isDamaged) {
    Source source(seed);
    QList<KxMath::KxPointXY> points;
    for (int i = 0; i < count; ++i) {
        const float x = width * (static_cast<float>(i) / static_cast<float>(count) - 0.5f);
        float y = 20.0f - x * x / 256.0f + source.value() / 1024.0f;
        y += i > count / 2 ? 1.5f : 0.0f;
        y -= i > count / 5 && i < count / 4 ? 2.0f : 0.0f;
        if (isDamaged && source.bits() % 37u == 0u) {
            y = std::numeric_limits<float>::quiet_NaN();
        }
        if (isDamaged && source.bits() % 53u == 0u) {
            y += 8.0f;
        }
        points.append(KxMath::KxPointXY(x, y));
    }
    return points;
}

inline QList<KxMath::KxPointXYZ> spacePoints(std::uint32_t seed, int count) {
    Source source(seed);
    QList<KxMath::KxPointXYZ> points;
    for (int i = 0; i < count; ++i) {
        const float x = source.value();
        const float y = source.value() / 8.0f;
        points.append(KxMath::KxPointXYZ(x, y, std::floor(source.value())));
    }
    return points;
}

void printGeometry();
void printClouds();
void printProfiles();
void printGrids();
void printRailway();

} // namespace golden
