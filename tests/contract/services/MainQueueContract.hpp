// The rules of every MainQueue, and what an implementation gives to be held to them.
#pragma once

#include <functional>

#include "MirethVex/Platform/MainQueue.hpp"
#include "TestSupport.hpp"

namespace mireth::test {

class MainQueueHarness {
  public:
    virtual ~MainQueueHarness() = default;
    virtual platform::MainQueue& queue() = 0;
    /// The queue's own time, in seconds.
    virtual double now() = 0;
    /// Runs the queue on the calling thread until `done` or for `limit` seconds of its own time; the
    /// last value of `done`.
    virtual bool runUntil(const std::function<bool()>& done, double limit) = 0;
    /// Destroys the queue.
    virtual void destroyQueue() = 0;
    /// How many errors the queue has logged.
    virtual int loggedErrors() = 0;
};

using MainQueueContract = ContractTest<MainQueueHarness>;

}  // namespace mireth::test
