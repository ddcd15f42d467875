// A screen and its root view.
#include "MirethVex/Platform/ViewController.hpp"

#include <utility>

namespace mireth::platform {

ViewController::ViewController(std::string className) : className_(std::move(className)) {}

ViewController::~ViewController() = default;

void ViewController::setView(std::shared_ptr<View> view) {
    if (view_ != nullptr && view_ != view && view_->viewController().get() == this) {
        view_->setViewController({});
    }
    view_ = std::move(view);
    if (view_ != nullptr) {
        view_->setViewController(weak_from_this());
    }
}

}  // namespace mireth::platform
