#include "inputs.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <random>
#include <tuple>
#include <vector>

namespace kxbench {

using KxMath::KxPointXY;
using KxMath::KxPointXYZ;

namespace {

/// The list for a key, filled on the first call.
template <typename Point, typename Key, typename Next>
const QList<Point>& cached(std::map<Key, QList<Point>>& lists, const Key& key, int count, Next next) {
    QList<Point>& points = lists[key];
    points.reserve(count);
    while (points.size() < count) {
        points.append(next(static_cast<int>(points.size())));
    }
    return points;
}

float fraction(int i, int count) {
    return static_cast<float>(i) / static_cast<float>(count);
}

} // namespace

const QList<KxPointXY>& profilePoints(int count, unsigned seed) {
    static std::map<std::pair<int, unsigned>, QList<KxPointXY>> lists;
    std::mt19937 random(seed);
    std::normal_distribution<float> noise(0.0f, 0.02f);
    return cached(lists, std::pair(count, seed), count, [&](int i) {
        const float x = 80.0f * (fraction(i, count) - 0.5f);
        const float step = i > count / 2 ? 1.5f : 0.0f;
        const float spike = i % 97 == 50 ? 3.0f : 0.0f;
        return KxPointXY(x, 30.0f - x * x / 400.0f + step + spike + noise(random));
    });
}

const QList<KxPointXYZ>& scanPoints(int count) {
    static std::map<int, QList<KxPointXYZ>> lists;
    std::mt19937 random(2);
    std::normal_distribution<float> noise(0.0f, 0.1f);
    return cached(lists, count, count, [&](int i) {
        const float x = 0.0625f * static_cast<float>(i % kProfilePoints);
        const int profile = i / kProfilePoints;
        const float z = 0.5f * static_cast<float>(profile);
        return KxPointXYZ(x, 3.0f * std::sin(x / 9.0f) + noise(random), z);
    });
}

const QList<KxPointXYZ>& shuffledScan(int count) {
    static std::map<int, QList<KxPointXYZ>> lists;
    std::vector<int> order;
    if (lists[count].isEmpty()) {
        order.resize(static_cast<std::size_t>(count));
        std::iota(order.begin(), order.end(), 0);
        std::shuffle(order.begin(), order.end(), std::mt19937(4));
    }
    return cached(lists, count, count, [&](int i) { return scanPoints(count)[order[static_cast<std::size_t>(i)]]; });
}

const QList<KxPointXYZ>& reversedScan(int count) {
    static std::map<int, QList<KxPointXYZ>> lists;
    return cached(lists, count, count, [&](int i) { return scanPoints(count)[count - 1 - i]; });
}

const QList<KxPointXYZ>& randomPoints(int count) {
    static std::map<int, QList<KxPointXYZ>> lists;
    std::mt19937 random(3);
    std::uniform_real_distribution<float> anywhere(0.0f, 100.0f);
    return cached(lists, count, count, [&](int) {
        const float x = anywhere(random);
        const float y = anywhere(random);
        return KxPointXYZ(x, y, anywhere(random));
    });
}

const QList<KxPointXYZ>& densePoints(int count) {
    constexpr int kFar = 100;
    static std::map<int, QList<KxPointXYZ>> lists;
    std::mt19937 random(5);
    constexpr float kWhole = 5.0f; // mm; cubes of this size are filled completely or not at all
    const float side = kWhole * std::round(std::cbrt(static_cast<float>(count)) / kWhole);
    std::uniform_real_distribution<float> anywhere(0.0f, side);
    return cached(lists, count, count, [&](int i) {
        const float x = anywhere(random);
        const float y = anywhere(random);
        const float z = anywhere(random);
        const int far = i - (count - kFar);
        return far < 0 ? KxPointXYZ(x, y, z) : KxPointXYZ(side + 50.0f * static_cast<float>(1 + far), y, z);
    });
}

const QList<KxPointXY>& orderedPoints(int count, Order order, int list) {
    static std::map<std::tuple<int, Order, int>, QList<KxPointXY>> lists;
    QList<KxPointXY>& points = lists[{count, order, list}];
    if (!points.isEmpty()) {
        return points;
    }
    std::mt19937 random(static_cast<unsigned>(1 + list));
    std::uniform_real_distribution<float> anywhere(-500.0f, 500.0f);
    std::vector<float> xs(static_cast<std::size_t>(count));
    for (float& x : xs) {
        x = order == Order::Ties ? std::floor(anywhere(random)) : anywhere(random);
    }
    if (order != Order::Random && order != Order::Ties) {
        std::sort(xs.begin(), xs.end());
    }
    constexpr int kPart = 100; // one in so many is out of order
    std::uniform_int_distribution<std::size_t> someone(0, xs.size() - 1);
    switch (order) {
    case Order::Reversed:
        std::reverse(xs.begin(), xs.end());
        break;
    case Order::Tail:
        std::generate(xs.end() - count / kPart, xs.end(), [&] { return anywhere(random); });
        break;
    case Order::Swapped:
        for (int pair = 0; pair < count / (2 * kPart); ++pair) {
            std::swap(xs[someone(random)], xs[someone(random)]);
        }
        break;
    case Order::Sawtooth: {
        constexpr std::size_t kTeeth = 16;
        const std::vector<float> sorted = xs;
        std::size_t next = 0;
        for (std::size_t tooth = 0; tooth < kTeeth; ++tooth) {
            for (std::size_t i = tooth; i < sorted.size(); i += kTeeth) {
                xs[next++] = sorted[i];
            }
        }
        break;
    }
    default:
        break;
    }
    for (int i = 0; i < count; ++i) {
        points.append(KxPointXY(xs[static_cast<std::size_t>(i)], static_cast<float>(i)));
    }
    return points;
}

const KxMath::KxProfileZSet& profileSet() {
    static KxMath::KxProfileZSet set;
    for (int row = static_cast<int>(set.profiles.size()); row < kRows; ++row) {
        KxMath::KxProfileZ profile(0.0625f * static_cast<float>(row));
        profile.points = profilePoints(kProfilePoints, static_cast<unsigned>(row % 16));
        for (KxPointXY& p : profile.points) {
            p.x *= 0.9999f; // moves points off the columns of the grid
        }
        set.profiles.append(profile);
        set.stepZ = 0.0625f; // as in x: a grid of 1280 columns
    }
    set.calcRange();
    return set;
}

QString memoryFile(const char* name) {
    return QStringLiteral("/dev/shm/kxmath-benchmark-") + QString::fromLatin1(name);
}

} // namespace kxbench
