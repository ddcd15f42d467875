// A line that overwrites itself.
#include "phone/ProgressLine.hpp"

#include <unistd.h>

#include <cstdio>
#include <utility>

namespace mireth::phone {

ProgressLine::ProgressLine(headless::VirtualMainQueue& queue, std::string name, double lengthSeconds)
    : queue_(queue), name_(std::move(name)), length_(lengthSeconds) {
    if (!queue.isVirtual() && ::isatty(STDERR_FILENO) == 1) {
        timer_ = queue.scheduleRepeating(platform::Seconds(0.5), [this] { show(); });
    }
}

ProgressLine::~ProgressLine() {
    if (timer_) {
        std::fputs("\r\x1b[K", stderr);
    }
}

void ProgressLine::show() const {
    const double now = static_cast<double>(queue_.now().count()) / 1e9;
    std::fprintf(stderr, "\r\x1b[K%6.1f of %.1f s  %s", now, length_, name_.c_str());
    std::fflush(stderr);
}

}  // namespace mireth::phone
