// A host in real time whose user taps and one of whose threads logs errors, over the whole library.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "MirethVex/Headless/HeadlessPlatform.hpp"
#include "MirethVex/Platform/Window.hpp"
#include "MirethVex/PublicSide/MirethSR.hpp"
#include "benchmarks/SilentLog.hpp"
#include "platforms/linux/system/AsioMainQueue.hpp"
#include "tests/support/IngestionFake.hpp"

namespace mireth::benchmarks {

/// The thread that makes it is the main thread and has the main queue of a Linux host; the service and the
/// files are in memory.
class LoggingHost {
  public:
    struct Outcome {
        /// How long each call kept its thread, in seconds, in ascending order.
        std::vector<double> waits;
        /// How many error taps came to the service.
        std::size_t paired = 0;

        /// The wait that `part` of the calls (0 to 1) did not exceed.
        double waitAt(double part) const;
    };

    LoggingHost();

    /// Records a session during which an error is logged every `interval` for `duration`.
    Outcome run(std::chrono::seconds duration, std::chrono::microseconds interval);

  private:
    platform::PlatformServices services() const;
    void tap();
    std::vector<double> logErrors(std::chrono::seconds duration, std::chrono::microseconds interval);
    std::size_t errorTaps() const;

    SilentLog log_;
    test::IngestionFake service_;
    const std::shared_ptr<platform::AsioMainQueue> queue_ = std::make_shared<platform::AsioMainQueue>();
    const std::shared_ptr<platform::Window> window_ = std::make_shared<platform::Window>(Size{390, 844});
    const headless::HeadlessPlatform phone_;
    MirethSR library_;
    std::uint64_t lastTouch_ = 0;
};

}  // namespace mireth::benchmarks
