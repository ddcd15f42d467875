#include "platforms/qt/system/WorkLoop.hpp"

#include <QCoreApplication>
#include <utility>

namespace mireth::qt {

WorkEvent::WorkEvent(Work posted) : QEvent(kind()), work(std::move(posted)) {}

QEvent::Type WorkEvent::kind() {
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

WorkLoop::WorkLoop(QObject* parent, EscapedErrorHandler onEscapedError, std::function<void()> whenGone)
    : QObject(parent), onEscapedError_(std::move(onEscapedError)), whenGone_(std::move(whenGone)) {}

WorkLoop::~WorkLoop() {
    if (!isRetired_) {
        whenGone_();
    }
}

void WorkLoop::run(Work& work) noexcept {
    if (!work) {
        return;
    }
    ++running_;
    runGuarded("work on the main queue", work, onEscapedError_);
    --running_;
}

void WorkLoop::retire() {
    isRetired_ = true;
    whenGone_();
    if (running_ == 0) {
        delete this;
        return;
    }
    QCoreApplication::removePostedEvents(this, WorkEvent::kind());
    deleteLater();
}

void WorkLoop::customEvent(QEvent* event) {
    if (event->type() == WorkEvent::kind() && !isRetired_) {
        run(static_cast<WorkEvent*>(event)->work);
    }
}

}  // namespace mireth::qt
