// Text line by line from a device whose reads may fail.
#include "io/lineReader.h"

#include <gtest/gtest.h>

#include <QtCore/QBuffer>

#include <algorithm>

namespace {

/// Text whose read number `failing` returns no bytes; later reads continue.
class FailingDevice : public QIODevice {
public:
    FailingDevice(const QByteArray& text, int failing) : text_(text), failing_(failing) { open(ReadOnly | Unbuffered); }

    bool atEnd() const override { return at_ == text_.size(); }

protected:
    qint64 readData(char* data, qint64 most) override {
        if (++reads_ == failing_) {
            return -1;
        }
        const qint64 count = std::min(most, text_.size() - at_);
        std::copy_n(text_.constData() + at_, count, data);
        at_ += count;
        return count;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray text_;
    int failing_;
    int reads_ = 0;
    qint64 at_ = 0;
};

TEST(LineReader, EndsAtAReadWithoutBytes) {
    QByteArray text;
    constexpr int kLines = 40000;
    for (int i = 0; i < kLines; ++i) {
        text += QByteArray::number(100000 + i) + ";7\n";
    }
    int longest = 0;
    for (int failing = 1; failing <= 9; ++failing) {
        FailingDevice device(text, failing);
        KxMath::detail::LineReader reader(device, ',', '.');
        int lines = 0;
        for (auto line = reader.next(); line; line = reader.next(), ++lines) {
            const std::string whole = std::to_string(100000 + lines) + ";7";
            ASSERT_EQ(*line, whole) << failing;
        }
        longest = std::max(longest, lines);
        EXPECT_FALSE(reader.next());
    }
    EXPECT_EQ(longest, kLines); // the text takes fewer reads than 9
}

} // namespace
