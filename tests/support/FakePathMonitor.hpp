// A path monitor that reports what the test says.
#pragma once

#include <memory>
#include <utility>

#include "MirethVex/Platform/PathMonitor.hpp"

namespace mireth::test {

/// What a monitor and the test share. The test's thread plays the monitor's.
struct PathScript {
    platform::PathMonitor::UpdateHandler handler;
    int starts = 0;
    int cancels = 0;

    void report(const platform::NetworkPath& path) const {
        // A copy, since a handler may cancel.
        if (const auto current = handler) {
            current(path);
        }
    }
    void report(bool satisfied, bool wifi = false, bool cellular = false, bool wired = false) const {
        report(platform::NetworkPath{satisfied, wifi, cellular, wired});
    }
};

/// No answer to the whole contract, on purpose: it has no thread and knows no path, so that a test decides
/// what is reported, and when.
class FakePathMonitor final : public platform::PathMonitor {
  public:
    explicit FakePathMonitor(std::shared_ptr<PathScript> script) : script_(std::move(script)) {}
    ~FakePathMonitor() override { cancel(); }
    FakePathMonitor(const FakePathMonitor&) = delete;
    FakePathMonitor& operator=(const FakePathMonitor&) = delete;

    void start(UpdateHandler handler) override {
        ++script_->starts;
        script_->handler = std::move(handler);
    }
    void cancel() override {
        ++script_->cancels;
        script_->handler = nullptr;
    }

  private:
    const std::shared_ptr<PathScript> script_;
};

}  // namespace mireth::test
