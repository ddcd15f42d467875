// All screens of a scenario as views and controllers, and the window that shows one of them.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "MirethVex/Platform/AppearanceDelivery.hpp"
#include "MirethVex/Platform/ViewController.hpp"
#include "MirethVex/Platform/Window.hpp"
#include "phone/ImageStore.hpp"
#include "phone/Scenario.hpp"
#include "phone/ViewHandle.hpp"

namespace mireth::phone {

/// Main thread only.
class ScreenSet {
  public:
    /// Builds everything, checks what steps and reactions will set, and presents nothing yet. Throws
    /// ScenarioError that names the place in question. `scenario` outlives it.
    explicit ScreenSet(const Scenario& scenario);
    ScreenSet(const ScreenSet&) = delete;
    ScreenSet& operator=(const ScreenSet&) = delete;

    const std::shared_ptr<platform::Window>& window() const noexcept { return window_; }

    /// Shows the screen; the old one's controller hears through `appearance` that it disappeared, then the
    /// new one's that it appeared. The name has to be a screen's.
    void present(const std::string& name, const platform::AppearanceDelivery& appearance);
    /// Resizes the window and the screen in it.
    void resize(Size size);
    /// Gives the view called `id` new settings. Throws ScenarioError that names `path`.
    void set(const std::string& id, const ViewSettings& settings, const std::string& path);
    /// The reactions of `touched`, else of its nearest superview that has some; null when there are none.
    const std::vector<Reaction>* reactionsOf(std::shared_ptr<const platform::View> touched) const;

  private:
    void check(const Instruction& instruction) const;
    void checkReactions(const std::vector<ViewSpec>& views) const;
    std::shared_ptr<platform::View> build(const ViewSpec& spec);
    void addController(const ControllerSpec& spec, const std::shared_ptr<platform::View>& view);
    void addScreen(const ScreenSpec& spec);
    void fitCurrent();

    ImageStore images_;
    const std::shared_ptr<platform::Window> window_;
    std::map<std::string, std::shared_ptr<platform::ViewController>> screens_;
    std::shared_ptr<platform::ViewController> current_;
    /// Of the views that have an id.
    std::map<std::string, std::unique_ptr<ViewHandle>> handles_;
    /// Of the views that react to taps.
    std::map<const platform::View*, const std::vector<Reaction>*> reactions_;
    /// The controllers of parts of screens; views know theirs only weakly.
    std::vector<std::shared_ptr<platform::ViewController>> children_;
};

}  // namespace mireth::phone
