#include "PrivateSide/Detection/Navigation/AppearanceDetection.hpp"

namespace mireth {

void AppearanceDetection::enableAutodetection() {
    shouldReportChange_ = true;
    log_.info(LogTag::navigation, "Automatic screen change detection is ON.");
}

void AppearanceDetection::disableAutodetection() {
    shouldReportChange_ = false;
    log_.info(LogTag::navigation, "Automatic screen change detection is OFF.");
}

}  // namespace mireth
