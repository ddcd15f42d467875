// A controller that reports itself as a screen, for hosts that do without the automatic detection.
#pragma once

#include <string>

#include "MirethVex/Base/Export.hpp"
#include "MirethVex/Platform/ViewController.hpp"
#include "MirethVex/PublicSide/MirethSR.hpp"

namespace mireth {

/// Main thread only. Reports its class name as a screen that appears and disappears; a subclass that
/// overrides a handler calls this one's too. While automatic detection is on the library notices the same
/// change by itself, and the timeline has both.
class MIRETH_EXPORT MirethViewController : public platform::ViewController {
  public:
    /// Reports to `MirethSR::shared()`, which is first asked for when a screen appears or disappears.
    explicit MirethViewController(std::string className = {});
    /// `library` outlives the controller.
    MirethViewController(std::string className, MirethSR& library);

    void viewDidAppear(bool animated) override;
    void viewDidDisappear(bool animated) override;

  private:
    void report(ScreenChangeType change) const;

    MirethSR* const library_;
};

}  // namespace mireth
