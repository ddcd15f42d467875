// A screen and its root view.
#include "MirethVex/Platform/ViewController.hpp"

#include <boost/core/demangle.hpp>
#include <typeinfo>
#include <utility>

namespace mireth::platform {

ViewController::ViewController(std::string className) : className_(std::move(className)) {}

ViewController::~ViewController() = default;

std::string ViewController::className() const {
    if (!className_.empty()) {
        return className_;
    }
    const std::string whole = boost::core::demangle(typeid(*this).name());
    // The arguments of a template have namespaces of their own.
    const auto lastScope = whole.rfind("::", whole.find('<'));
    return lastScope == std::string::npos ? whole : whole.substr(lastScope + 2);
}

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
