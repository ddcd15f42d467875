// Makes views of what a window of the app shows now.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "MirethVex/Platform/View.hpp"
#include "platforms/qt/mirror/MirroredViews.hpp"
#include "platforms/qt/mirror/StyledContents.hpp"
#include "platforms/qt/objects/ClassCatalog.hpp"
#include "platforms/qt/objects/LiveWindow.hpp"
#include "platforms/qt/objects/PassSize.hpp"
#include "platforms/qt/objects/WindowOrder.hpp"
#include "platforms/qt/pictures/UnmaskedPictures.hpp"
#include "platforms/qt/screens/SeenScreens.hpp"
#include "platforms/qt/state/WindowState.hpp"

namespace mireth::qt {

/// One mirror serves one window. Main thread only.
class ViewMirror {
  public:
    explicit ViewMirror(std::shared_ptr<const WindowOrder> order) : order_(std::move(order)) {}

    /// The window's content, and then the windows above it at their places. Nothing of the app's is painted
    /// or changed for it, and none of its code runs.
    /// `screens` hears of the screens that are met.
    std::vector<std::shared_ptr<platform::View>> viewsOf(const LiveWindow& live, SeenScreens& screens);

    /// The same with what the widgets and items draw. The views lack what has to be painted anew, until
    /// `paintPictures` is called.
    std::vector<std::shared_ptr<platform::View>> unmaskedViewsOf(const LiveWindow& live,
                                                                 SeenScreens& screens);

    /// Has the widgets paint that the last unmasked pass has come by. That is the app's code, which may do
    /// anything to them and to the windows.
    void paintPictures();

    /// Until the next unmasked pass.
    void letGoOfPictures() { pictures_ = nullptr; }

  private:
    std::vector<std::shared_ptr<platform::View>> allOf(const LiveWindow& live, SeenScreens& screens,
                                                       UnmaskedPictures* pictures);
    std::shared_ptr<platform::View> contentOf(const LiveWindow& live, SeenScreens& screens,
                                              UnmaskedPictures* pictures);

    const std::shared_ptr<const WindowOrder> order_;
    ClassCatalog catalog_;
    WindowState state_{catalog_};
    PassSize size_;
    MirroredViews views_;
    StyledContents contents_;
    std::shared_ptr<UnmaskedPictures> pictures_;
};

}  // namespace mireth::qt
