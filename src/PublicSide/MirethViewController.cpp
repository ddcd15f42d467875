#include "MirethVex/PublicSide/MirethViewController.hpp"

#include <utility>

namespace mireth {

MirethViewController::MirethViewController(std::string className)
    : ViewController(std::move(className)), library_(nullptr) {}

MirethViewController::MirethViewController(std::string className, MirethSR& library)
    : ViewController(std::move(className)), library_(&library) {}

void MirethViewController::viewDidAppear(bool animated) {
    ViewController::viewDidAppear(animated);
    report(ScreenChangeType::appear);
}

void MirethViewController::viewDidDisappear(bool animated) {
    ViewController::viewDidDisappear(animated);
    report(ScreenChangeType::disappear);
}

void MirethViewController::report(ScreenChangeType change) const {
    auto& library = library_ == nullptr ? MirethSR::shared() : *library_;
    library.reportScreenChange({ScreenHierarchyElement{className()}}, change, ScreenDetectionType::automatic);
}

}  // namespace mireth
