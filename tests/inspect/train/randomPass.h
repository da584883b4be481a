// Recordings with everything that sensors and other programs put into them.
#pragma once

#include "inspect/train/passFiles.h"

#include <QtCore/QDataStream>

#include <random>

namespace inspect_test {

class RandomPass {
public:
    explicit RandomPass(unsigned seed) : random_(seed) {}

    /// Runs of records with wheels, which are points below 100, and without, one of both at the end.
    QByteArray recording() {
        QByteArray bytes;
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out.setByteOrder(QDataStream::LittleEndian);
        out.setFloatingPointPrecision(QDataStream::SinglePrecision);
        const int kinds = any(3); // cloud sections, profile records, both
        float z = 0.0f;
        for (int run = 0, runs = 2 + any(12); run < runs; ++run) {
            const bool isWheel = run % 2 == 1;
            for (int record = any(isWheel ? 12 : 4) + 1; record > 0; --record) {
                const bool hasZ = kinds == 1 || (kinds == 2 && any(2) == 0);
                z += any(30) == 0 ? -3.0f : 1.0f;
                writeRecord(out, isWheel, hasZ ? &z : nullptr);
            }
        }
        return bytes;
    }

    QByteArray settings() {
        const auto pick = [&](std::initializer_list<const char*> texts) {
            return QByteArray(texts.begin()[static_cast<size_t>(any(static_cast<int>(texts.size())))]);
        };
        QByteArray text =
            "calibrLines2=" + pick({"1360", "1359.7"}) + "\nminProfsInWheel=" + pick({"5", "3", "1", "2", "8"}) + "\n";
        for (const QByteArray sensor : {"1", "2"}) {
            text += "[SENSOR" + sensor + "]\nSN=" + sensor + "\nlevel_k=" + pick({"0", "0.1"}) +
                    "\nlevel_b=" + pick({"100", "50.5"}) +
                    "\nk2=-0.3\nb2=52.5\nlowlevel_k=0\nlowlevel_b=" + pick({"10", "45"}) +
                    "\nminPointsIn=" + pick({"2", "5", "0", "1"}) + "\nwndSize=" + pick({"3", "2", "1", "7"}) +
                    "\nhigherPoinInWnd=" + pick({"1", "0"}) + "\nparts=" + pick({"0", "2"}) + "\n";
        }
        return text;
    }

    int any(int end) { return static_cast<int>(random_() % static_cast<unsigned>(end)); }

private:
    void writeRecord(QDataStream& out, bool isWheel, const float* z) {
        const int points = any(6) == 0 ? any(4) : 4 + any(30);
        out << static_cast<quint8>(z != nullptr ? 5 : 2) << static_cast<quint16>(points);
        if (z != nullptr) {
            out << *z;
        }
        const float slope = static_cast<float>(any(5) - 2) * 0.125f;
        for (int i = 0; i < points; ++i) {
            const float y = isWheel ? 50.0f + static_cast<float>(i) * slope + static_cast<float>(any(9)) * 0.01f
                                    : 200.0f - static_cast<float>(any(60)) * (any(8) == 0 ? 2.0f : 0.01f);
            out << static_cast<float>(i) << (any(20) == 0 ? odd() : y);
        }
    }

    float odd() {
        const float all[] = {kNaN, kInf, -kInf, 1e30f, -0.0f, 99.99f};
        return all[any(6)];
    }

    std::mt19937 random_;
};

inline void fillRandomly(unsigned seed, PassFiles& pass) {
    RandomPass random(seed);
    pass.mode = random.any(3) == 0 ? 3 : 0;
    pass.settings = random.settings();
    pass.recordings[0] = random.recording();
    // Often as many wheels on both sides: the same moments seen by both.
    pass.recordings[1] = random.any(2) == 0 ? pass.recordings[0] : random.recording();
}

} // namespace inspect_test
