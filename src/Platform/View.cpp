// Who owns whom in the view tree, and which view lies where.
#include "MirethVex/Platform/View.hpp"

#include <algorithm>
#include <iterator>
#include <utility>

#include "MirethVex/Platform/ViewController.hpp"
#include "Platform/HitTest.hpp"

namespace mireth::platform {

View::View(const ViewClass& viewClass) : viewClass_(&viewClass) {}

View::~View() {
    // One destructor inside the other would use up the stack in a tree that is very deep.
    std::vector<std::shared_ptr<View>> orphans = std::move(subviews_);
    while (!orphans.empty()) {
        const std::shared_ptr<View> orphan = std::move(orphans.back());
        orphans.pop_back();
        if (orphan.use_count() == 1) {
            std::ranges::move(orphan->subviews_, std::back_inserter(orphans));
            orphan->subviews_.clear();
        }
    }
}

void View::addSubview(const std::shared_ptr<View>& subview) {
    if (subview == nullptr || subview.get() == this) {
        return;
    }
    for (auto ancestor = superview(); ancestor != nullptr; ancestor = ancestor->superview()) {
        if (ancestor == subview) {
            return;
        }
    }
    // The argument may be an element of the list it is about to be taken out of.
    const auto added = subview->shared_from_this();
    added->removeFromSuperview();
    added->superview_ = weak_from_this();
    subviews_.push_back(added);
}

void View::removeFromSuperview() {
    const auto parent = superview();
    superview_.reset();
    if (parent == nullptr) {
        return;
    }
    auto& siblings = parent->subviews_;
    const auto self = std::ranges::find(siblings, this, &std::shared_ptr<View>::get);
    if (self != siblings.end()) {
        // The superview may have been the last owner.
        const std::shared_ptr<View> keepAlive = std::move(*self);
        siblings.erase(self);
    }
}

std::shared_ptr<View> View::hitTest(Point point) {
    return deepestViewAt(shared_from_this(), point);
}

void View::setViewController(std::weak_ptr<ViewController> controller) {
    viewController_ = std::move(controller);
    wasDeclarative_ =
        dynamic_cast<const AnyUIHostingViewController*>(viewController_.lock().get()) != nullptr;
}

void View::touchesBegan(const std::vector<Touch>& /*touches*/, const TouchEvent& /*event*/) {}
void View::touchesMoved(const std::vector<Touch>& /*touches*/, const TouchEvent& /*event*/) {}
void View::touchesEnded(const std::vector<Touch>& /*touches*/, const TouchEvent& /*event*/) {}
void View::touchesCancelled(const std::vector<Touch>& /*touches*/, const TouchEvent& /*event*/) {}

std::shared_ptr<ViewController> View::parentViewController() const {
    if (auto own = viewController()) {
        return own;
    }
    for (auto ancestor = superview(); ancestor != nullptr; ancestor = ancestor->superview()) {
        if (auto controller = ancestor->viewController()) {
            return controller;
        }
    }
    return nullptr;
}

}  // namespace mireth::platform
