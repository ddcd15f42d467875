// Makes views of what a window of the app shows now.
#pragma once

#include <memory>
#include <vector>

#include "MirethVex/Platform/View.hpp"
#include "platforms/qt/mirror/ClassCatalog.hpp"
#include "platforms/qt/mirror/LiveWindow.hpp"
#include "platforms/qt/mirror/MirroredViews.hpp"
#include "platforms/qt/mirror/StyledContents.hpp"
#include "platforms/qt/screens/SeenScreens.hpp"

namespace mireth::qt {

/// One mirror serves one window. Main thread only.
class ViewMirror {
  public:
    /// The window's content, and then the windows above it at their places. Nothing of the app's is painted
    /// or changed for it, and none of its code runs.
    /// `screens` hears of the screens that are met.
    std::vector<std::shared_ptr<platform::View>> viewsOf(const LiveWindow& live, SeenScreens& screens);

  private:
    std::shared_ptr<platform::View> contentOf(const LiveWindow& live, SeenScreens& screens);

    ClassCatalog catalog_;
    MirroredViews views_;
    StyledContents contents_;
};

}  // namespace mireth::qt
