// A screen, or a part of one, and what the app does when it appears.
#pragma once

#include <memory>
#include <string>

#include "MirethVex/Base/Export.hpp"
#include "MirethVex/Platform/View.hpp"

namespace mireth::platform {

/// Main thread only. Hosts derive from it. Whoever presents a screen has the two handlers called through the
/// application's AppearanceDelivery, so that others may listen in. Always owned by std::shared_ptr.
class MIRETH_EXPORT ViewController : public std::enable_shared_from_this<ViewController> {
  public:
    /// `className` is what log lines and screen names call the controller; empty: the name of its C++ class.
    explicit ViewController(std::string className = {});
    virtual ~ViewController();
    ViewController(const ViewController&) = delete;
    ViewController& operator=(const ViewController&) = delete;

    /// Of the C++ class without its namespaces, unless another was given. Not from a constructor, where the
    /// class is not complete yet.
    std::string className() const;

    const std::shared_ptr<View>& view() const noexcept { return view_; }
    /// The view answers `viewController()` with this controller from then on. Not from a constructor: the
    /// controller has to be owned already.
    void setView(std::shared_ptr<View> view);

    /// The app's own reaction. What it throws reaches whoever presents the screen; the library never catches
    /// it.
    virtual void viewDidAppear(bool /*animated*/) {}
    virtual void viewDidDisappear(bool /*animated*/) {}

  private:
    std::string className_;
    std::shared_ptr<View> view_;
};

/// A controller whose view hosts declarative content. The library cannot look into such content, so every
/// view below is masked whole. Derive from it beside ViewController to mark a controller.
class MIRETH_EXPORT AnyUIHostingViewController {
  public:
    virtual ~AnyUIHostingViewController() = default;

  protected:
    AnyUIHostingViewController() = default;
    AnyUIHostingViewController(const AnyUIHostingViewController&) = default;
    AnyUIHostingViewController& operator=(const AnyUIHostingViewController&) = default;
};

}  // namespace mireth::platform
