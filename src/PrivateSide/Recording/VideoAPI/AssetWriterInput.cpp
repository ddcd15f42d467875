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
    /// Lives as long as the readiness callback. When the input lets go of that, because its writer has failed
    /// for instance, nobody else would end the wait.
    struct Witness {
        Witness(std::weak_ptr<State> theState, Executor theQueue)
            : state(std::move(theState)), queue(std::move(theQueue)) {}
        Witness(const Witness&) = delete;
        Witness& operator=(const Witness&) = delete;
        ~Witness() {
            if (auto self = state.lock()) {
                queue.execute([self = std::move(self)] {
                    self->isLetGo = true;
                    self->resumeWaiting();
                });
            }
        }

        const std::weak_ptr<State> state;
        const Executor queue;
    };

    State(std::shared_ptr<platform::WriterInput> writerInput, const Executor& executor)
        : input(std::move(writerInput)), queue(makeSerialExecutor(executor)) {}

    /// Weak, since the input holds the callback for as long as it likes.
    void requestMediaData() {
        const Executor neverInline = asio::prefer(queue, asio::execution::blocking_t::never);
        const auto witness = std::make_shared<const Witness>(weak_from_this(), neverInline);
        input->requestMediaDataWhenReady([neverInline](Work work) { neverInline.execute(std::move(work)); },
                                         [witness] {
                                             if (const auto self = witness->state.lock()) {
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
    bool isLetGo = false;
};

AssetWriterInput::AssetWriterInput(std::shared_ptr<platform::WriterInput> input, const Executor& executor)
    : state_(std::make_shared<State>(std::move(input), executor)) {}

Task<bool> AssetWriterInput::readyForMoreMediaData() const {
    return runOn(state_->queue, awaitReadiness(state_));
}

Task<void> AssetWriterInput::markAsFinished() const {
    return runOn(state_->queue, finish(state_));
}

Task<bool> AssetWriterInput::awaitReadiness(std::shared_ptr<State> state) {
    // Again after waking up: the input may have been ready for one frame that came before this one.
    while (!state->requested || !state->input->isReadyForMoreMediaData()) {
        if (state->isLetGo) {
            co_return false;
        }
        const AsyncEvent ready;
        state->waiting = ready;
        if (!std::exchange(state->requested, true)) {
            state->requestMediaData();
        }
        co_await ready.wait();
    }
    co_return true;
}

Task<void> AssetWriterInput::finish(std::shared_ptr<State> state) {
    state->isLetGo = true;
    state->resumeWaiting();
    state->input->markAsFinished();
    co_return;
}

}  // namespace mireth
