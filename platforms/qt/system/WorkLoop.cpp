#include "platforms/qt/system/WorkLoop.hpp"

#include <QCoreApplication>
#include <cstdio>
#include <exception>
#include <string>
#include <utility>

namespace mireth::qt {

WorkEvent::WorkEvent(Work posted) : QEvent(kind()), work(std::move(posted)) {}

QEvent::Type WorkEvent::kind() {
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

WorkLoop::WorkLoop(QObject* parent, ErrorHandler onEscapedError, std::function<void()> whenGone)
    : QObject(parent), onEscapedError_(std::move(onEscapedError)), whenGone_(std::move(whenGone)) {}

WorkLoop::~WorkLoop() {
    whenGone_();
}

void WorkLoop::run(Work& work) noexcept {
    if (!work) {
        return;
    }
    ++running_;
    try {
        work();
    } catch (const std::exception& error) {
        report(error.what());
    } catch (...) {
        report("not a std::exception");
    }
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

void WorkLoop::report(std::string_view description) const noexcept {
    try {
        const std::string text = "an error escaped from work on the main queue: " + std::string(description);
        if (onEscapedError_) {
            onEscapedError_(text);
        } else {
            std::fprintf(stderr, "M-VEX: %s\n", text.c_str());
        }
    } catch (...) {
        // No memory for the report, or a handler that throws: the place alone has to do.
        std::fputs("M-VEX: an error escaped from work on the main queue\n", stderr);
    }
}

}  // namespace mireth::qt
