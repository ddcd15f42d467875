// How often widgets have painted themselves of which nothing else tells that they have changed.
#pragma once

#include <QEvent>
#include <QObject>
#include <QWidget>
#include <cstdint>
#include <unordered_map>

namespace mireth::qt {

/// Sees the paint events of the app go by, and causes none. A widget is looked at as long as it is asked for
/// in every pass. Main thread only.
class PaintCounts final : public QObject {
  public:
    /// Not while one of the app's filters runs, of which Qt would then ask one twice about the same event.
    PaintCounts();

    /// Since it was asked for first.
    std::uint64_t of(const QWidget& widget);

    /// Lets go of the widgets that were not asked for since the last call.
    void endPass();

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    struct Kept {
        std::uint64_t count = 0;
        bool wasSeen = false;
    };

    std::unordered_map<const QObject*, Kept> kept_;
};

}  // namespace mireth::qt
