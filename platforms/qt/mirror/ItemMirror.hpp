// Makes views of a tree of Qt Quick items.
#pragma once

#include <QQuickItem>
#include <cstddef>
#include <memory>

#include "MirethVex/Platform/View.hpp"
#include "platforms/qt/objects/ClassCatalog.hpp"
#include "platforms/qt/objects/PassSize.hpp"

namespace mireth::qt {

class ItemPictures;
class MirroredViews;
class SeenScreens;
class WindowState;

/// One pass. Reads the items' properties; what an item draws is not looked at, unless the mirror is unmasked:
/// with `pictures`. Main thread only.
class ItemMirror {
  public:
    ItemMirror(ClassCatalog& catalog, const MirroredViews& views, WindowState& state, SeenScreens& screens,
               PassSize& size, ItemPictures* pictures = nullptr)
        : catalog_(catalog),
          views_(views),
          state_(state),
          screens_(screens),
          size_(size),
          pictures_(pictures) {}

    /// What there is no room for in the pass is left out.
    std::shared_ptr<platform::View> viewOf(QQuickItem& item);

  private:
    MirroredClass classOf(const QQuickItem& item, bool isInThePlane);
    void addLook(QQuickItem& item, Shown shown, platform::View& view);
    void addChildren(const QQuickItem& item, platform::View& view);

    ClassCatalog& catalog_;
    const MirroredViews& views_;
    WindowState& state_;
    SeenScreens& screens_;
    PassSize& size_;
    ItemPictures* const pictures_;
    std::size_t depth_ = 0;
};

}  // namespace mireth::qt
