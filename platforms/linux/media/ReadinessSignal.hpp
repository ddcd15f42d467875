// Tells whoever feeds a writer input that it can take a frame.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>

#include "MirethVex/Base/Work.hpp"

namespace mireth::platform {

/// Posts the callback each time the input becomes ready; at most one call is on its way at any time. Any
/// thread. Always owned by std::shared_ptr. A signal that is gone calls nobody.
class ReadinessSignal : public std::enable_shared_from_this<ReadinessSignal> {
  public:
    using Post = std::function<void(Work)>;
    using Callback = std::function<void()>;

    bool isReady() const;
    /// Replaces an earlier request; posts at once when the input is ready.
    void request(Post post, Callback callback);
    /// The input can take a frame, or another one.
    void becomeReady();
    /// The input takes no frame any more, and nothing is posted or called from then on, but for a call that
    /// another thread is beginning at this very moment. May be called from within the callback.
    void finish();

  private:
    void postOnce();
    void run(std::uint64_t request);

    mutable std::mutex mutex_;
    // Guarded by mutex_
    bool ready_ = false;
    bool finished_ = false;
    bool isPosted_ = false;
    /// Tells a call that was posted for an earlier request from one for this.
    std::uint64_t request_ = 0;
    Post post_;
    Callback callback_;
};

}  // namespace mireth::platform
