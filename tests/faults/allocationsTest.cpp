// Operations of the libraries while system calls fail: what a process meets that has no memory left.
//
// Each operation of the tables (*Operations.cpp) is repeated with its first, its second, ... allocation failing, once
// alone and once with all that follow, on lists of its own and on lists that it shares. Expected each time: the right
// result, or std::bad_alloc, or the value by which the operation reports a failure; no signal, no leak, and objects that
// can be used again and destroyed.
//
// Covered: malloc(), calloc(), realloc() and the aligned ones, and so operator new and Qt's containers, on one thread,
// for each allocation of an operation, or for kSampled of more than
// kMostAllocations. Not covered: mmap(), the stack, other threads, and calls other
// than allocations; Qt's JSON and QSettings, where blocks stay alive after a failed allocation.
//
// To add an operation, write a line in the table of its subject. To add another kind of fault (open(), read(), write()
// that fail), write a second class like AllocationFault and a second sweep() with it: tables, states and what is expected
// stay. Sanitizers replace the allocations themselves; their build leaves this program out.
#include "failingAllocations.h"
#include "operation.h"

#include <gtest/gtest.h>

#include <KxInspect/Error.h>

#include <algorithm>
#include <array>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <new>

#include <unistd.h>

using namespace faults;

namespace {

constexpr long kMostAllocations = 300;
constexpr long kSampled = 100; ///< of those of an operation that has more
constexpr long kNone = LONG_MAX; ///< no allocation has this number

/// What is being tried, for the message of a signal.
char position[160] = "";

extern "C" void reportSignal(int number) {
    static_cast<void>(!write(STDERR_FILENO, position, sizeof(position)));
    std::signal(number, SIG_DFL);
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

/// Runs the operation with the allocation of that number failing.
void tryWith(const Operation& operation, bool isShared, long number, Fails fails, std::uint64_t expected) {
    std::snprintf(position, sizeof(position), "\nsignal in %s, %s lists, allocation %ld%s\n", operation.name.c_str(),
                  isShared ? "shared" : "own", number, fails == Fails::Once ? "" : " and all that follow");
    const long before = liveBlocks();
    const char* fault = nullptr;
    {
        const Trial trial = operation.make(isShared);
        trial.prepare();
        Outcome outcome = Outcome::Refused;
        {
            const AllocationFault armed(number, fails);
            outcome = runOnce(trial);
        }
        if (outcome == Outcome::Done) {
            fault = trial.digest() == expected ? nullptr : "a wrong result";
        } else {
            trial.prepare();
            const bool isRepeated = runOnce(trial) == Outcome::Done && trial.digest() == expected;
            fault = isRepeated ? nullptr : "objects that cannot be used again";
        }
    }
    const long leaked = liveBlocks() - before;
    if (fault != nullptr || leaked != 0) {
        ADD_FAILURE() << position + 1 << (fault != nullptr ? fault : "a leak") << ", blocks left: " << leaked;
    }
}

void sweep(const Operation& operation, bool isShared) {
    const Trial trial = operation.make(isShared);
    trial.prepare();
    ASSERT_EQ(runOnce(trial), Outcome::Done);
    const std::uint64_t expected = trial.digest();
    trial.prepare(); // a second time, so that what the libraries keep for later is there
    long count = 0;
    {
        const AllocationFault counter(kNone, Fails::Once);
        ASSERT_EQ(runOnce(trial), Outcome::Done);
        count = counter.allocations();
    }
    ASSERT_EQ(trial.digest(), expected);
    for (const Fails fails : {Fails::Once, Fails::FromThenOn}) {
        const long tries = count <= kMostAllocations ? count : kSampled;
        for (long i = 1; i <= tries && !testing::Test::HasFailure(); ++i) {
            tryWith(operation, isShared, i * count / tries, fails, expected);
        }
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

class Allocations : public testing::Test {
public:
    explicit Allocations(const Operation& operation) : operation_(operation) {}

protected:
    void SetUp() override {
        std::signal(SIGSEGV, reportSignal);
        std::signal(SIGABRT, reportSignal);
    }
    void TestBody() override {
        for (const bool isShared : {false, true}) {
            sweep(operation_, isShared);
        }
    }
    void TearDown() override {
        std::signal(SIGSEGV, SIG_DFL);
        std::signal(SIGABRT, SIG_DFL);
    }

private:
    const Operation operation_;
};

/// A test for each operation, under its name.
[[maybe_unused]] const bool areRegistered = [] {
    for (const Operation& operation : allOperations()) {
        testing::RegisterTest("Allocations", operation.name.c_str(), nullptr, nullptr, __FILE__, __LINE__,
                              [operation]() -> testing::Test* { return new Allocations(operation); });
    }
    return true;
}();

/// Which of three allocations succeed while one fails, and how many blocks they leave alive and count.
struct Three {
    std::array<bool, 3> hasMemory{};
    long live = 0;
    long counted = 0;

    Three(long number, Fails fails) {
        std::array<void*, 3> blocks;
        const long before = liveBlocks();
        {
            const AllocationFault fault(number, fails);
            std::generate(blocks.begin(), blocks.end(), [] { return std::malloc(8); });
            counted = fault.allocations();
        }
        live = liveBlocks() - before;
        std::transform(blocks.begin(), blocks.end(), hasMemory.begin(), [](void* block) { return block != nullptr; });
        std::for_each(blocks.begin(), blocks.end(), [](void* block) { std::free(block); });
    }
};

TEST(AllocationFault, FailsTheAllocationOfItsNumberAndCountsBlocks) {
    const long before = liveBlocks();
    const Three once(2, Fails::Once);
    const Three lasting(2, Fails::FromThenOn);
    const long after = liveBlocks();
    EXPECT_EQ(once.hasMemory, (std::array{true, false, true}));
    EXPECT_EQ(lasting.hasMemory, (std::array{true, false, false}));
    EXPECT_EQ(once.live, 2);
    EXPECT_EQ(lasting.live, 1);
    EXPECT_EQ(once.counted, 3);
    EXPECT_EQ(after, before);
}

} // namespace
