// Where the one session is in its life, and the steps that it can take.
#pragma once

#include <memory>
#include <utility>

#include "Base/ScopedFlag.hpp"
#include "MirethVex/PublicSide/DataModels/Enums/SessionCloseResult.hpp"
#include "Platform/Async/AsyncEvent.hpp"
#include "PrivateSide/Orchestrator/SessionState.hpp"

namespace mireth {

/// | from | step | to |
/// |---|---|---|
/// | stopped | `prepare` | starting |
/// | starting | `giveUp` | stopped |
/// | starting | `begin` | started; beginning until the scope ends that it returns |
/// | started | `pause` | paused, of the same session |
/// | paused | `resume` | started, of the same session |
/// | started, paused | `close` | the same, and closing |
/// | started, paused and closing | `end` | stopped |
///
/// Between `end` and the service's answer to the end of its session another one may be prepared: what came of
/// the old one is kept by its `Closing` alone. Who takes a step has looked at where it leads from. Main
/// thread.
class SessionLife {
  public:
    /// A stop in progress, and what came of it.
    struct Closing {
        AsyncEvent done;
        SessionCloseResult result;
    };

    const SessionState& state() const noexcept { return state_; }
    /// Past all steps.
    void setState(SessionState state) { state_ = std::move(state); }

    void prepare() { state_.value = SessionState::Starting{}; }
    void giveUp() { state_.value = SessionState::Stopped{}; }
    [[nodiscard]] ScopedFlag begin(const RemoteSessionInfo& info) {
        state_.value = SessionState::Started{info};
        return ScopedFlag(isBeginning_);
    }
    void pause() { state_.value = SessionState::Paused{*state_.session()}; }
    void resume() { state_.value = SessionState::Started{*state_.session()}; }
    std::shared_ptr<Closing> close() { return closing_ = std::make_shared<Closing>(); }
    void end() {
        state_.value = SessionState::Stopped{};
        closing_.reset();
    }

    /// While the parts of a session are being started: a log listener may call in between.
    bool isBeginning() const noexcept { return isBeginning_; }
    /// Between `close` and `end`; null otherwise.
    const std::shared_ptr<Closing>& closing() const noexcept { return closing_; }

    /// The owner lets go: a start that is in progress leads to no session any more. For good.
    void abandon() noexcept { isAbandoned_ = true; }
    bool isAbandoned() const noexcept { return isAbandoned_; }

  private:
    SessionState state_;
    std::shared_ptr<Closing> closing_;
    bool isBeginning_ = false;
    bool isAbandoned_ = false;
};

}  // namespace mireth
