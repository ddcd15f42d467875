// Whether the library would take a tap for a dead one.
#pragma once

#include <memory>

#include "MirethVex/Platform/Window.hpp"
#include "PrivateSide/Detection/Signals/ViewComparison/LayerComparator.hpp"
#include "PrivateSide/Detection/Signals/ViewComparison/ViewContentComparator.hpp"
#include "qt/support/EventLoop.hpp"

namespace mireth::qttest {

/// What the library compares of a window at a tap and after it.
class Seen {
  public:
    explicit Seen(const std::shared_ptr<platform::Window>& window)
        : layers_(LayerComparator(window).captureLayerSnapshot()),
          texts_(ViewContentComparator(window).serializeContent()) {}

    bool isSameAs(const Seen& other) const {
        return LayerComparator::compareLayers(layers_, other.layers_) &&
               ViewContentComparator::compareContent(texts_, other.texts_);
    }

  private:
    LayerSnapshot layers_;
    std::string texts_;
};

/// True when `tap` and what it leads to leave everything as it was.
template <class Tap>
bool isDead(const std::shared_ptr<platform::Window>& window, const Tap& tap) {
    // What has gone before is over.
    runFor(0.02);
    const Seen before(window);
    tap();
    runFor(0.03);
    return before.isSameAs(Seen(window));
}

}  // namespace mireth::qttest
