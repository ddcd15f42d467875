// Counts what another executor has still to do, so that a paced loop knows when everything is done.
#pragma once

#include <memory>

#include "MirethVex/Headless/InFlight.hpp"
#include "MirethVex/Platform/BackgroundExecutor.hpp"

namespace mireth::headless {

/// Hands work on to `inner`. Work is in flight from the post until it has run and is gone. Any thread.
class TrackedBackgroundExecutor final : public platform::BackgroundExecutor {
  public:
    TrackedBackgroundExecutor(std::shared_ptr<platform::BackgroundExecutor> inner,
                              std::shared_ptr<InFlight> inFlight)
        : inner_(std::move(inner)), inFlight_(std::move(inFlight)) {}

    void post(Work work) override;

  private:
    const std::shared_ptr<platform::BackgroundExecutor> inner_;
    const std::shared_ptr<InFlight> inFlight_;
};

}  // namespace mireth::headless
