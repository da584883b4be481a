// Operations of the libraries while calls of the C library fail: what a process meets that has no memory left, a full or
// a broken disk, or too many open files.
//
// Each operation of the tables (*Operations.cpp) is repeated with its first, its second, ... call of each kind failing,
// once alone and once with all that follow, on lists of its own and on lists that it shares. Expected each time: the
// right result, or std::bad_alloc, or the value by which the operation reports a failure; no signal, no leak of blocks or
// descriptors, and objects that can be used again and destroyed.
//
// Covered: the calls of failingAllocations.cpp and failingCalls.cpp, on one thread; kSampled allocations of operations
// that have more than kMostCalls. Not covered: mmap(), the stack, and two classes of Qt 6.4. The constructor QCborValue(text),
// which every key of JSON takes, loses its container of 64 bytes, and the text, when their second allocation fails.
// QSettings keeps some 20 blocks for each file that it has read, and crashes when its constructor fails
// (inspect/base/memory.h).
//
// To add an operation, write a line in the table of its subject. Sanitizers replace the allocations themselves; their
// build leaves this program out.
#include "injection.h"
#include "operation.h"

#include <gtest/gtest.h>

#include <KxInspect/Error.h>

#include <QtCore/QDir>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <new>

#include <fcntl.h>
#include <unistd.h>

using namespace faults;

namespace {

constexpr long kMostCalls = 300;
constexpr long kSampled = 100; ///< of those of an operation that has more

/// What is being tried, for the message of a signal.
char position[200] = "";

extern "C" void reportSignal(int number) {
    static_cast<void>(!write(STDERR_FILENO, position, sizeof(position)));
    static_cast<void>(std::signal(number, SIG_DFL));
    std::raise(number);
}

enum class Outcome { Done, Refused };

Outcome runOnce(const Trial& trial) {
    try {
        return trial.run() ? Outcome::Done : Outcome::Refused;
    } catch (const std::bad_alloc&) {
        return Outcome::Refused;
    } catch (const KxInspect::Error&) {
        return Outcome::Refused;
    }
}

/// The lowest descriptor that is free: it rises when one is left open.
int freeDescriptor() {
    const int free = dup(STDERR_FILENO);
    close(free);
    return free;
}

/// Runs the operation with a fault.
void tryWith(const Operation& operation, bool isShared, const Fault& fault, std::uint64_t expected) {
    static_cast<void>(std::snprintf(
        position, sizeof(position), "\n%s, %s lists, %s %ld%s, error %d, kind %d\n", operation.name.c_str(),
        isShared ? "shared" : "own", kCallNames[static_cast<std::size_t>(fault.call)], fault.number,
        fault.isLasting ? " and all that follow" : "", fault.error, static_cast<int>(fault.how)));
    const long before = liveBlocks();
    const int descriptor = freeDescriptor();
    const char* failure = nullptr;
    {
        const Trial trial = operation.make(isShared);
        trial.prepare();
        Outcome outcome = Outcome::Refused;
        {
            const ArmedFault armed(fault);
            outcome = runOnce(trial);
        }
        if (outcome == Outcome::Done) {
            failure = operation.hidesFailedWrites || trial.digest() == expected ? nullptr : "a wrong result";
        } else {
            trial.prepare();
            const bool isRepeated = runOnce(trial) == Outcome::Done && trial.digest() == expected;
            failure = isRepeated ? nullptr : "objects that cannot be used again";
        }
    }
    const long leaked = liveBlocks() - before;
    if (failure != nullptr || leaked != 0 || freeDescriptor() != descriptor) {
        ADD_FAILURE() << position + 1 << (failure != nullptr ? failure : "a leak") << ", blocks left: " << leaked
                      << ", first free descriptor " << freeDescriptor() << " after " << descriptor;
    }
}

/// The ways in which calls of a kind fail.
std::vector<Fault> faultsOf(Call call) {
    const Fault error{call, How::Error, EIO};
    const Fault full{call, How::Error, ENOSPC};
    const Fault many{call, How::Error, EMFILE};
    const Fault interrupted{call, How::Error, EINTR};
    const Fault isShort{call, How::Short};
    const Fault zero{call, How::Zero};
    switch (call) {
    case Call::Open:
        return {many, interrupted};
    case Call::Read:
        return {error, interrupted, isShort, zero};
    case Call::Write:
        return {error, full, interrupted, isShort, zero};
    default:
        return {error};
    }
}

void sweep(const Operation& operation, bool isShared, Call call, long count, std::uint64_t expected) {
    const long tries = count <= kMostCalls ? count : kSampled;
    for (Fault fault : faultsOf(call)) {
        for (const bool isLasting : {false, true}) {
            fault.isLasting = isLasting;
            for (long i = 1; i <= tries && !(isLasting && fault.error == EINTR); ++i) {
                fault.number = i * count / tries;
                tryWith(operation, isShared, fault, expected);
                if (testing::Test::HasFailure()) {
                    return;
                }
            }
        }
    }
}

void sweepAll(const Operation& operation, bool isShared) {
    const Trial trial = operation.make(isShared);
    trial.prepare();
    ASSERT_EQ(runOnce(trial), Outcome::Done);
    const std::uint64_t expected = trial.digest();
    trial.prepare(); // a second time, so that what the libraries keep for later is there
    Seen seen;
    {
        const ArmedFault counter({});
        ASSERT_EQ(runOnce(trial), Outcome::Done);
        seen = counter.seen();
    }
    ASSERT_EQ(trial.digest(), expected);
    for (std::size_t i = 0; i < kCalls; ++i) {
        sweep(operation, isShared, static_cast<Call>(i), seen.counts[i], expected);
    }
}

std::vector<Operation> allOperations() {
    std::vector<Operation> all;
    for (const auto& table : {profileOperations(), cloudOperations(), gridOperations(), railwayOperations(),
                              fileOperations(), inspectOperations()}) {
        all.insert(all.end(), table.begin(), table.end());
    }
    return all;
}

class Faults : public testing::Test {
public:
    explicit Faults(const Operation& operation) : operation_(operation) {}

protected:
    void SetUp() override {
        watch(QFile::encodeName(QDir::tempPath()).constData());
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
        qWarning("what Qt keeps for messages is there");
        for (const int number : {SIGSEGV, SIGABRT}) {
            ASSERT_NE(std::signal(number, reportSignal), SIG_ERR);
        }
    }
    void TestBody() override {
        for (const bool isShared : {false, true}) {
            sweepAll(operation_, isShared);
        }
    }
    void TearDown() override {
        for (const int number : {SIGSEGV, SIGABRT}) {
            ASSERT_NE(std::signal(number, SIG_DFL), SIG_ERR);
        }
    }

private:
    const Operation operation_;
};

/// A test for each operation, under its name.
[[maybe_unused]] const bool areRegistered = [] {
    for (const Operation& operation : allOperations()) {
        testing::RegisterTest("Faults", operation.name.c_str(), nullptr, nullptr, __FILE__, __LINE__,
                              [operation]() -> testing::Test* { return new Faults(operation); });
    }
    return true;
}();

/// Which of three allocations succeed while one fails, and how many blocks they leave alive and count.
struct Three {
    std::array<bool, 3> hasMemory{};
    long live = 0;
    long counted = 0;

    Three(long number, bool isLasting) {
        std::array<void*, 3> blocks;
        const long before = liveBlocks();
        {
            const ArmedFault fault({Call::Allocate, How::Error, ENOMEM, number, isLasting});
            std::generate(blocks.begin(), blocks.end(), [] { return std::malloc(8); });
            counted = fault.count(Call::Allocate);
        }
        live = liveBlocks() - before;
        std::transform(blocks.begin(), blocks.end(), hasMemory.begin(), [](void* block) { return block != nullptr; });
        std::for_each(blocks.begin(), blocks.end(), [](void* block) { std::free(block); });
    }
};

TEST(Injection, FailsTheAllocationOfItsNumberAndCountsBlocks) {
    const long before = liveBlocks();
    const Three once(2, false);
    const Three lasting(2, true);
    const long after = liveBlocks();
    EXPECT_EQ(once.hasMemory, (std::array{true, false, true}));
    EXPECT_EQ(lasting.hasMemory, (std::array{true, false, false}));
    EXPECT_EQ(once.live, 2);
    EXPECT_EQ(lasting.live, 1);
    EXPECT_EQ(once.counted, 3);
    EXPECT_EQ(after, before);
}

TEST(Injection, FailsTheCallOfItsNumberBelowTheFolderOnly) {
    watch("/dev/shm");
    const std::array<char, 8> bytes{};
    const QByteArray name = "/dev/shm/kxmath-faults-" + QByteArray::number(getpid());
    for (const auto& [how, result] : {std::pair(How::Error, -1), {How::Short, 4}, {How::Zero, 0}}) {
        const ArmedFault fault({Call::Write, how, ENOSPC, 2});
        const int file = open(name.constData(), O_CREAT | O_WRONLY | O_TRUNC, 0600);
        const int other = open("/dev/null", O_WRONLY);
        EXPECT_EQ(write(file, bytes.data(), bytes.size()), 8);
        EXPECT_EQ(write(other, bytes.data(), bytes.size()), 8);
        errno = 0;
        EXPECT_EQ(write(file, bytes.data(), bytes.size()), result);
        EXPECT_EQ(errno, how == How::Error ? ENOSPC : 0);
        EXPECT_EQ(write(file, bytes.data(), bytes.size()), 8);
        close(other);
        close(file);
        EXPECT_EQ(fault.count(Call::Write), 3);
        EXPECT_EQ(fault.count(Call::Open), 1);
        EXPECT_STREQ(fault.seen().path, name.constData());
    }
    unlink(name.constData());
}

} // namespace
