// Makes views of a tree of widgets.
#pragma once

#include <QWidget>
#include <cstddef>
#include <memory>

#include "MirethVex/Platform/View.hpp"
#include "platforms/qt/objects/ClassCatalog.hpp"
#include "platforms/qt/objects/PassSize.hpp"

namespace mireth::qt {

class MirroredViews;
class SeenScreens;
class StyledContents;
class WidgetPictures;
class WindowState;

/// One pass. Reads the widgets and paints none of them; with `pictures` the mirror is unmasked, and shows
/// what they paint. Main thread only.
class WidgetMirror {
  public:
    WidgetMirror(ClassCatalog& catalog, const MirroredViews& views, StyledContents& contents,
                 WindowState& state, SeenScreens& screens, PassSize& size, WidgetPictures* pictures = nullptr)
        : catalog_(catalog),
          views_(views),
          contents_(contents),
          state_(state),
          screens_(screens),
          size_(size),
          pictures_(pictures) {}

    /// The window itself lies at the origin; its background is left to whoever places it. What there is no
    /// room for in the pass is left out.
    std::shared_ptr<platform::View> viewOf(QWidget& window);

  private:
    /// How the widget is shown, its own property and what lies in it considered.
    MirroredClass classOf(const QWidget& widget, bool hasChildren);
    std::shared_ptr<platform::View> copy(QWidget& widget);
    void addOwnLook(const QWidget& widget, Shown shown, platform::Layer& layer);
    void addPicture(QWidget& widget, Shown shown, platform::View& view);

    ClassCatalog& catalog_;
    const MirroredViews& views_;
    StyledContents& contents_;
    WindowState& state_;
    SeenScreens& screens_;
    PassSize& size_;
    WidgetPictures* const pictures_;
    std::size_t depth_ = 0;
};

}  // namespace mireth::qt
