// The rules of every BackgroundExecutor.
#pragma once

#include "MirethVex/Platform/BackgroundExecutor.hpp"
#include "TestSupport.hpp"

namespace mireth::test {

class BackgroundExecutorHarness {
  public:
    virtual ~BackgroundExecutorHarness() = default;
    virtual platform::BackgroundExecutor& executor() = 0;
    virtual void destroyExecutor() = 0;
    /// How many errors the executor has logged.
    virtual int loggedErrors() = 0;
};

using BackgroundExecutorContract = ContractTest<BackgroundExecutorHarness>;

}  // namespace mireth::test
