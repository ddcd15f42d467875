#include "platforms/linux/media/ReadinessSignal.hpp"

#include <utility>

namespace mireth::platform {

bool ReadinessSignal::isReady() const {
    const std::lock_guard lock(mutex_);
    return ready_ && !finished_;
}

void ReadinessSignal::request(Post post, Callback callback) {
    {
        const std::lock_guard lock(mutex_);
        if (finished_) {
            return;
        }
        // What was replaced is destroyed outside the lock, with the arguments.
        std::swap(post_, post);
        std::swap(callback_, callback);
        isPosted_ = false;
        ++request_;
    }
    postOnce();
}

void ReadinessSignal::becomeReady() {
    {
        const std::lock_guard lock(mutex_);
        ready_ = true;
    }
    postOnce();
}

void ReadinessSignal::finish() {
    Post post;
    Callback callback;
    const std::lock_guard lock(mutex_);
    finished_ = true;
    std::swap(post_, post);
    std::swap(callback_, callback);
}

void ReadinessSignal::postOnce() {
    Post post;
    std::uint64_t request = 0;
    {
        const std::lock_guard lock(mutex_);
        if (!ready_ || finished_ || isPosted_ || !post_ || !callback_) {
            return;
        }
        isPosted_ = true;
        post = post_;
        request = request_;
    }
    post([weakSelf = weak_from_this(), request] {
        if (const auto self = weakSelf.lock()) {
            self->run(request);
        }
    });
}

void ReadinessSignal::run(std::uint64_t request) {
    Callback callback;
    {
        const std::lock_guard lock(mutex_);
        if (request != request_ || finished_) {
            return;
        }
        isPosted_ = false;
        callback = callback_;
    }
    if (callback) {
        callback();
    }
}

}  // namespace mireth::platform
