// The state of all that a window holds, shown or not, for the library to compare before and after a tap.
#pragma once

#include <QQuickItem>
#include <QWidget>
#include <cstddef>
#include <memory>

#include "MirethVex/Platform/Image.hpp"
#include "MirethVex/Platform/View.hpp"
#include "platforms/qt/objects/ClassCatalog.hpp"
#include "platforms/qt/objects/PassSize.hpp"
#include "platforms/qt/state/ItemState.hpp"
#include "platforms/qt/state/StateDigest.hpp"
#include "platforms/qt/state/WidgetState.hpp"

namespace mireth::qt {

/// Of texts no more than a digest is kept. None of the app's code runs. Main thread only.
class WindowState {
  public:
    explicit WindowState(ClassCatalog& catalog) : catalog_(catalog) {}

    void startPass();

    /// Of one widget or item of the mirror; what lies in it comes by itself.
    void add(const QWidget& widget);
    void add(const QQuickItem& item);
    /// That an item of the mirror is filled with.
    void addPicture(const platform::Image& picture);
    /// What lies in a widget or item that the mirror shows as a block.
    void addContentOf(const QWidget& widget);
    void addContentOf(const QQuickItem& item);

    /// Ends the pass. The view bears all of it as a text; it cannot be seen.
    std::shared_ptr<platform::View> view();

  private:
    void addHidden(const QWidget& widget);
    void addHidden(const QQuickItem& item);

    ClassCatalog& catalog_;
    StateDigest digest_;
    WidgetState widgets_;
    ItemState items_;
    std::size_t depth_ = 0;
    /// Of what the mirror does not show.
    PassSize hiddenSize_;
};

}  // namespace mireth::qt
