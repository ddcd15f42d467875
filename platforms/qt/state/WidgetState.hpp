// What tells one state of a widget from the next: its text, value, selection and the like.
#pragma once

#include <QAbstractItemView>
#include <QWidget>
#include <span>

#include "platforms/qt/objects/ClassCatalog.hpp"
#include "platforms/qt/state/PaintCounts.hpp"
#include "platforms/qt/state/SignalCounts.hpp"
#include "platforms/qt/state/StateDigest.hpp"

namespace mireth::qt {

/// Whether a control is pressed, has the focus or is under the pointer is no state. Main thread only.
class WidgetState {
  public:
    /// Of the widget alone, without its place and what lies in it. `rule` is that of its class.
    void addTo(StateDigest& digest, const QWidget& widget, const MirroredClass& rule);

    void endPass();

  private:
    void addItemView(StateDigest& digest, const QAbstractItemView& view);
    void addCount(StateDigest& digest, const QObject* sender, std::span<const int> signalIndexes);

    SignalCounts signals_;
    PaintCounts paints_;
};

}  // namespace mireth::qt
