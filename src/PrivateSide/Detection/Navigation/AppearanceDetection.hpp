// Reports the screens that appear and disappear by themselves, without a word from the host.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "MirethVex/Platform/Application.hpp"
#include "MirethVex/PublicSide/DataModels/ScreenReport.hpp"
#include "PrivateSide/Logger/MemoryUseLines.hpp"
#include "PrivateSide/Logger/MirethLog.hpp"

namespace mireth {

/// Main thread. There is one for as long as the library lives: it intercepts the application's screens at
/// most once, and every project and session after that switches the same interception on and off.
class AppearanceDetection : public std::enable_shared_from_this<AppearanceDetection> {
  public:
    /// Where a change goes; what it throws is the application's hook to contain.
    using ReportScreenChange = std::function<void(const std::vector<ScreenHierarchyElement>&,
                                                  ScreenChangeType, ScreenDetectionType)>;

    AppearanceDetection(MirethLog& log, std::shared_ptr<platform::Application> application,
                        ReportScreenChange reportScreenChange);

    /// Intercepts appearance and disappearance unless that was done before, and switches the detection on.
    /// Where only one of the two can be had neither is kept: the detection stays off, and the next call tries
    /// again.
    void enableSwizzle();

    /// After an interception; before it there is nothing to switch, and only the line is written.
    void enableAutodetection();
    void disableAutodetection();

    /// Absent until the application's screens are intercepted.
    std::optional<bool> shouldReportChange() const noexcept { return shouldReportChange_; }

  private:
    bool isInstalled() const noexcept { return static_cast<bool>(appearInterception_); }
    bool install();
    platform::AppearanceInterceptor reporting(ScreenChangeType change);
    void report(const platform::ViewController& controller, ScreenChangeType change) const;
    void switchTo(bool on) noexcept;

    MirethLog& log_;
    const std::shared_ptr<platform::Application> application_;
    const ReportScreenChange reportScreenChange_;
    std::optional<bool> shouldReportChange_;
    AnyCancellable appearInterception_;
    AnyCancellable disappearInterception_;
    const MemoryUseLines memoryUse_;
};

}  // namespace mireth
