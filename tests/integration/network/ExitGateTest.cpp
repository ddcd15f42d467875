// The gate that keeps helper threads out of libraries while the process ends.
#include "platforms/linux/network/ExitGate.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

namespace mireth::platform {
namespace {

using namespace std::chrono_literals;

TEST(ExitGate, LetsInUntilItIsClosed) {
    ExitGate gate;
    EXPECT_TRUE(gate.enter().owns_lock());
    gate.close();
    EXPECT_FALSE(gate.enter().owns_lock());
}

TEST(ExitGate, IsClosedAlsoForAThreadThatKeptItsPassForTooLong) {
    ExitGate gate(1ms);
    {
        const auto pass = gate.enter();
        std::thread([&gate] { gate.close(); }).join();
    }
    EXPECT_FALSE(gate.enter().owns_lock());
}

TEST(ExitGate, WaitsForAPassThatIsOut) {
    ExitGate gate(1h);
    auto pass = gate.enter();
    std::atomic<bool> isGivenBack = false;
    bool hasWaited = false;
    std::thread closing([&] {
        gate.close();
        hasWaited = isGivenBack;
    });
    // Once nobody else is let in, the closing has begun.
    std::thread([&] {
        while (gate.enter().owns_lock()) {
            std::this_thread::yield();
        }
    }).join();
    isGivenBack = true;
    pass.unlock();
    closing.join();
    EXPECT_TRUE(hasWaited);
}

TEST(ExitGate, KeepsWhatIsLeftBehindWhileAPassIsOut) {
    ExitGate gate(1ms);
    const auto pass = gate.enter();
    const auto object = std::make_shared<int>(1);
    std::thread([&] { gate.close(); }).join();
    std::thread([&] { gate.leaveBehind(object); }).join();
    EXPECT_EQ(object.use_count(), 2);
}

}  // namespace
}  // namespace mireth::platform
