// Sorting a cloud next to std::stable_sort of the same points. Both get a fresh copy that is not timed.
#include "stopwatch.h"

#include <KxMath/KxMath.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

using KxMath::KxPointXY;

constexpr int kPoints = 1000000;

enum Order { Random, Sorted, Reversed, NearlySorted, Ties };

const std::vector<const char*> kOrderNames = {"random", "sorted", "reversed", "nearly sorted", "ties"};

QList<KxPointXY> makePoints(Order order) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> anywhere(-500.0f, 500.0f);
    QList<KxPointXY> points;
    points.reserve(kPoints);
    for (int i = 0; i < kPoints; ++i) {
        const float x = anywhere(random);
        points.append(KxPointXY(order == Ties ? std::floor(x) : x, static_cast<float>(i)));
    }
    const auto byX = [](const KxPointXY& a, const KxPointXY& b) { return a.x < b.x; };
    if (order == Sorted || order == Reversed || order == NearlySorted) {
        std::stable_sort(points.begin(), points.end(), byX);
    }
    if (order == Reversed) {
        std::reverse(points.begin(), points.end());
    }
    if (order == NearlySorted) {
        for (int i = 0; i + 1 < kPoints; i += 1000) {
            std::swap(points[i].x, points[i + 1].x);
        }
    }
    return points;
}

void sortCloud(benchmark::State& state, Order order) {
    const QList<KxPointXY> points = makePoints(order);
    KxMath::KxPointCloud<KxPointXY> cloud;
    for (auto _ : state) {
        cloud.points = points;
        cloud.points.detach();
        kxbench::timeIteration(state, [&] { cloud.sort(KxMath::KxSortAscending, KxMath::KxSortAscending); });
    }
}

void sortStandard(benchmark::State& state, Order order) {
    const QList<KxPointXY> source = makePoints(order);
    for (auto _ : state) {
        std::vector<KxPointXY> points(source.begin(), source.end());
        kxbench::timeIteration(state, [&] {
            std::stable_sort(points.begin(), points.end(),
                             [](const KxPointXY& a, const KxPointXY& b) { return a.x < b.x; });
        });
        benchmark::DoNotOptimize(points.data());
    }
}

[[maybe_unused]] const bool isRegistered = [] {
    for (const Order order : {Random, Sorted, Reversed, NearlySorted, Ties}) {
        const std::string name = std::string("sort 1e6 points, ") + kOrderNames[order];
        benchmark::RegisterBenchmark((name + "/KxMath").c_str(), sortCloud, order)->UseManualTime();
        benchmark::RegisterBenchmark((name + "/std::stable_sort").c_str(), sortStandard, order)->UseManualTime();
    }
    return true;
}();

} // namespace
