// What tells one state of an item from the next: its text, value, selection and the like.
#pragma once

#include <QQuickItem>

#include "platforms/qt/objects/ClassCatalog.hpp"
#include "platforms/qt/state/SignalCounts.hpp"
#include "platforms/qt/state/StateDigest.hpp"

namespace mireth::qt {

/// Whether a control is pressed, has the focus or is under the pointer is no state. Main thread only.
class ItemState {
  public:
    /// Of the item alone, without its place and what lies in it. `rule` is that of its class.
    void addTo(StateDigest& digest, const QQuickItem& item, const MirroredClass& rule);

    /// Where an item stands that the mirror does not show, and in which colour.
    static void addLook(StateDigest& digest, const QQuickItem& item);

    void endPass() { signals_.endPass(); }

  private:
    SignalCounts signals_;
};

}  // namespace mireth::qt
