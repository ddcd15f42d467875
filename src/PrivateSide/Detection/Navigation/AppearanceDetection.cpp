#include "PrivateSide/Detection/Navigation/AppearanceDetection.hpp"

#include <utility>

#include "MirethVex/Platform/ViewController.hpp"

namespace mireth {

AppearanceDetection::AppearanceDetection(MirethLog& log, std::shared_ptr<platform::Application> application,
                                         ReportScreenChange reportScreenChange)
    : log_(log),
      application_(std::move(application)),
      reportScreenChange_(std::move(reportScreenChange)),
      memoryUse_(log, "PrivateSide/Detection/Navigation/AppearanceDetection") {}

void AppearanceDetection::enableSwizzle() {
    if (!isInstalled() && !install()) {
        log_.error(LogTag::navigation,
                   "Cancelling: Unable to turn automatic screen appearance detection ON.");
        return;
    }
    enableAutodetection();
}

void AppearanceDetection::enableAutodetection() {
    switchTo(true);
    log_.info(LogTag::navigation, "Automatic screen change detection is ON.");
}

void AppearanceDetection::disableAutodetection() {
    switchTo(false);
    log_.info(LogTag::navigation, "Automatic screen change detection is OFF.");
}

bool AppearanceDetection::install() {
    auto appear = application_->interceptViewDidAppear(reporting(ScreenChangeType::appear));
    auto disappear = application_->interceptViewDidDisappear(reporting(ScreenChangeType::disappear));
    if (!appear || !disappear) {
        return false;
    }
    appearInterception_ = std::move(appear);
    disappearInterception_ = std::move(disappear);
    return true;
}

platform::AppearanceInterceptor AppearanceDetection::reporting(ScreenChangeType change) {
    return [weak = weak_from_this(), change](const platform::ViewController& controller) {
        if (const auto self = weak.lock()) {
            self->report(controller, change);
        }
    };
}

void AppearanceDetection::report(const platform::ViewController& controller, ScreenChangeType change) const {
    if (shouldReportChange_.value_or(false)) {
        reportScreenChange_({ScreenHierarchyElement{controller.className()}}, change,
                            ScreenDetectionType::automatic);
    }
}

void AppearanceDetection::switchTo(bool on) noexcept {
    if (isInstalled()) {
        shouldReportChange_ = on;
    }
}

}  // namespace mireth
