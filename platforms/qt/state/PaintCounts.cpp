#include "platforms/qt/state/PaintCounts.hpp"

#include <QCoreApplication>

#include "platforms/qt/objects/PassEntries.hpp"

namespace mireth::qt {

PaintCounts::PaintCounts() {
    // For all widgets at once: a filter for each would outlive what is known of the widget.
    QCoreApplication::instance()->installEventFilter(this);
}

std::uint64_t PaintCounts::of(const QWidget& widget) {
    Kept& kept = kept_[&widget];
    kept.wasSeen = true;
    return kept.count;
}

void PaintCounts::endPass() {
    eraseUnseen(kept_);
}

bool PaintCounts::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Paint) {
        if (const auto found = kept_.find(watched); found != kept_.end()) {
            ++found->second.count;
        }
    }
    return false;
}

}  // namespace mireth::qt
