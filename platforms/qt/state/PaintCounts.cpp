#include "platforms/qt/state/PaintCounts.hpp"

#include <QCoreApplication>

#include "platforms/qt/objects/PassEntries.hpp"

namespace mireth::qt {

std::uint64_t PaintCounts::of(const QWidget& widget) {
    if (kept_.empty()) {
        // All widgets at once: one for each would outlive what is known of the widget.
        QCoreApplication::instance()->installEventFilter(this);
    }
    Kept& kept = kept_[&widget];
    kept.wasSeen = true;
    return kept.count;
}

void PaintCounts::endPass() {
    if (kept_.empty()) {
        return;
    }
    eraseUnseen(kept_);
    if (kept_.empty()) {
        QCoreApplication::instance()->removeEventFilter(this);
    }
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
