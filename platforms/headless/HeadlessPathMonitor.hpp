// One watcher of the script's network. HeadlessNetwork makes them.
#pragma once

#include <memory>

#include "MirethVex/Base/AnyPublisher.hpp"
#include "MirethVex/Platform/BackgroundExecutor.hpp"
#include "MirethVex/Platform/PathMonitor.hpp"

namespace mireth::headless {

/// Reports come one at a time and in order, whatever the executor.
class HeadlessPathMonitor final : public platform::PathMonitor {
  public:
    HeadlessPathMonitor(AnyPublisher<platform::NetworkPath> paths,
                        std::shared_ptr<platform::BackgroundExecutor> background);
    HeadlessPathMonitor(const HeadlessPathMonitor&) = delete;
    HeadlessPathMonitor& operator=(const HeadlessPathMonitor&) = delete;
    ~HeadlessPathMonitor() override;

    void start(UpdateHandler handler) override;
    void cancel() override;

  private:
    struct Reports;
    const AnyPublisher<platform::NetworkPath> paths_;
    const std::shared_ptr<platform::BackgroundExecutor> background_;
    const std::shared_ptr<Reports> reports_;
};

}  // namespace mireth::headless
