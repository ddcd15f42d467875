// Whether the library would take a tap for a dead one.
#pragma once

#include <QTest>
#include <QWindow>
#include <memory>
#include <optional>

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

/// Looks when the library does: as soon as it hears that a touch has ended.
class TapWatch final : public platform::GestureRecognizer {
  public:
    void touchesEnded(const std::vector<platform::Touch>& touches,
                      const platform::TouchEvent& /*event*/) override {
        before.emplace(std::static_pointer_cast<platform::Window>(touches.front().window.lock()));
    }
    std::optional<Seen> before;
};

/// True when a real click at `place` is a dead tap.
inline bool isDeadClick(const std::shared_ptr<platform::Window>& window, QWindow& handle, QPoint place) {
    const auto watch = std::make_shared<TapWatch>();
    window->addGestureRecognizer(watch);
    runFor(0.02);
    QTest::mouseClick(&handle, Qt::LeftButton, {}, place);
    runFor(0.03);
    window->removeGestureRecognizer(watch);
    return watch->before && watch->before->isSameAs(Seen(window));
}

}  // namespace mireth::qttest
