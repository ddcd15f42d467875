// Views and controllers built from their descriptions.
#include "phone/ScreenSet.hpp"

#include <algorithm>
#include <utility>

#include "phone/ScenarioError.hpp"

namespace mireth::phone {

using platform::View;
using platform::ViewClass;
using platform::ViewController;

namespace {

/// Hosts content that the library must not look into.
class DeclarativeController final : public ViewController, public platform::AnyUIHostingViewController {
  public:
    using ViewController::ViewController;
};

void registerClasses(const std::vector<ViewClassSpec>& specs) {
    (void)buttonClass();
    for (const auto& spec : specs) {
        ViewClass::registerClass(spec.name, ViewClass::find(spec.superclass));
    }
}

/// Runs `action`, and lets its complaints name `path`.
template <class Action>
void namingPath(const std::string& path, Action action) {
    try {
        action();
    } catch (const ScenarioError& error) {
        throw ScenarioError(path, error.what());
    }
}

}  // namespace

ScreenSet::ScreenSet(const Scenario& scenario)
    : images_(scenario.windowScale),
      window_(std::make_shared<platform::Window>(scenario.windowSize, scenario.windowScale)) {
    registerClasses(scenario.viewClasses);
    for (const auto& screen : scenario.screens) {
        addScreen(screen);
    }
    for (const auto& screen : scenario.screens) {
        checkReactions(screen.views);
    }
    for (const auto& step : scenario.steps) {
        check(step);
    }
}

void ScreenSet::check(const Instruction& instruction) const {
    if (const auto* set = std::get_if<SetStep>(&instruction.action)) {
        namingPath(instruction.path, [&] { handles_.at(set->id)->check(set->settings); });
    }
}

void ScreenSet::checkReactions(const std::vector<ViewSpec>& views) const {
    for (const auto& view : views) {
        if (view.onTap) {
            std::ranges::for_each(*view.onTap, [this](const Reaction& reaction) { check(reaction); });
        }
        checkReactions(view.subviews);
    }
}

void ScreenSet::addScreen(const ScreenSpec& spec) {
    auto controller = std::make_shared<ViewController>(spec.name);
    auto root = std::make_shared<View>();
    root->setFrame(window_->bounds());
    root->mutableLayer().appearance.backgroundColor = spec.background;
    for (const auto& view : spec.views) {
        root->addSubview(build(view));
    }
    controller->setView(std::move(root));
    screens_.emplace(spec.name, std::move(controller));
}

std::shared_ptr<View> ScreenSet::build(const ViewSpec& spec) {
    auto handle = std::make_unique<ViewHandle>(*ViewClass::find(spec.viewClass), images_);
    namingPath(spec.path, [&] { handle->apply(spec.settings); });
    auto view = handle->view();
    for (const auto& subview : spec.subviews) {
        view->addSubview(build(subview));
    }
    if (spec.controller) {
        addController(*spec.controller, view);
    }
    if (spec.onTap) {
        reactions_.emplace(view.get(), &*spec.onTap);
    }
    if (!spec.id.empty()) {
        handles_.emplace(spec.id, std::move(handle));
    }
    return view;
}

void ScreenSet::addController(const ControllerSpec& spec, const std::shared_ptr<View>& view) {
    std::shared_ptr<ViewController> controller;
    if (spec.declarative) {
        controller = std::make_shared<DeclarativeController>(spec.name);
    } else {
        controller = std::make_shared<ViewController>(spec.name);
    }
    controller->setView(view);
    children_.push_back(std::move(controller));
}

void ScreenSet::present(const std::string& name, const platform::AppearanceDelivery& appearance) {
    const auto next = screens_.at(name);
    const auto previous = std::exchange(current_, next);
    if (previous) {
        previous->view()->removeFromSuperview();
    }
    fitCurrent();
    window_->addSubview(next->view());
    appearance.didDisappear(previous, false);
    appearance.didAppear(next, false);
}

void ScreenSet::resize(Size size) {
    window_->resize(size);
    fitCurrent();
}

void ScreenSet::fitCurrent() {
    if (current_) {
        current_->view()->setFrame(window_->bounds());
    }
}

void ScreenSet::set(const std::string& id, const ViewSettings& settings, const std::string& path) {
    namingPath(path, [&] { handles_.at(id)->apply(settings); });
}

const std::vector<Reaction>* ScreenSet::reactionsOf(std::shared_ptr<const View> touched) const {
    for (; touched != nullptr; touched = touched->superview()) {
        const auto found = reactions_.find(touched.get());
        if (found != reactions_.end()) {
            return found->second;
        }
    }
    return nullptr;
}

}  // namespace mireth::phone
