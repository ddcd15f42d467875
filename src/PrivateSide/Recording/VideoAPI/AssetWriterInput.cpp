#include "PrivateSide/Recording/VideoAPI/AssetWriterInput.hpp"

#include <boost/asio/execution/blocking.hpp>
#include <boost/asio/prefer.hpp>
#include <optional>
#include <utility>

#include "Platform/Async/AsyncEvent.hpp"
#include "Platform/Async/QueueExecutors.hpp"

namespace mireth {

/// Touched on `queue` only, but for the constants.
struct AssetWriterInput::State : std::enable_shared_from_this<State> {
    State(std::shared_ptr<platform::WriterInput> writerInput, const Executor& executor)
        : input(std::move(writerInput)), queue(makeSerialExecutor(executor)) {}

    /// Weak, since the input holds the callback for as long as it likes.
    void requestMediaData() {
        const Executor neverInline = asio::prefer(queue, asio::execution::blocking_t::never);
        input->requestMediaDataWhenReady([neverInline](Work work) { neverInline.execute(std::move(work)); },
                                         [weakSelf = weak_from_this()] {
                                             if (const auto self = weakSelf.lock()) {
                                                 self->resumeWaiting();
                                             }
                                         });
    }

    void resumeWaiting() {
        if (const auto event = std::exchange(waiting, std::nullopt)) {
            event->set();
        }
    }

    const std::shared_ptr<platform::WriterInput> input;
    const Executor queue;
    std::optional<AsyncEvent> waiting;
    bool requested = false;
};

AssetWriterInput::AssetWriterInput(std::shared_ptr<platform::WriterInput> input, const Executor& executor)
    : state_(std::make_shared<State>(std::move(input), executor)) {}

Task<void> AssetWriterInput::readyForMoreMediaData() const {
    return runOn(state_->queue, awaitReadiness(state_));
}

Task<void> AssetWriterInput::markAsFinished() const {
    return runOn(state_->queue, finish(state_));
}

Task<void> AssetWriterInput::awaitReadiness(std::shared_ptr<State> state) {
    // Again after waking up: the input may have been ready for one frame that came before this one.
    while (!state->requested || !state->input->isReadyForMoreMediaData()) {
        const AsyncEvent ready;
        state->waiting = ready;
        if (!std::exchange(state->requested, true)) {
            state->requestMediaData();
        }
        co_await ready.wait();
    }
}

Task<void> AssetWriterInput::finish(std::shared_ptr<State> state) {
    state->waiting.reset();
    state->input->markAsFinished();
    co_return;
}

}  // namespace mireth
