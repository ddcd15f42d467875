// How a coroutine comes to wait for something, and is resumed or let go. For what lies in this folder.
#pragma once

#include <boost/asio/associated_executor.hpp>
#include <boost/asio/async_result.hpp>
#include <utility>

#include "Base/GuardedRun.hpp"
#include "MirethVex/Base/Work.hpp"
#include "Platform/Async/DroppingScope.hpp"
#include "Platform/Async/Task.hpp"

namespace mireth {

/// Suspends the calling coroutine and hands `arrange` the work that resumes it on its executor. The work may
/// run on any thread, also before `arrange` returns.
template <class Arrange>
Task<void> suspend(Arrange arrange) {
    // Named: see Task.hpp.
    auto initiate = [arrange = std::move(arrange)](auto handler) mutable {
        auto executor = asio::get_associated_executor(handler);
        arrange(Work([executor, handler = std::move(handler)]() mutable {
            asio::post(executor, [handler = std::move(handler)]() mutable { std::move(handler)(); });
        }));
    };
    using Token = asio::use_awaitable_t<Executor>;
    Token token;
    co_await asio::async_initiate<Token, void()>(std::move(initiate), token);
}

/// Where nothing may be thrown, as in destructors: a waiter that its executor does not take is dropped with a
/// line on standard error, and its coroutine with it.
inline void resumeOrDrop(Work& waiter) noexcept {
    const DroppingScope dropping;
    runGuarded("an executor", waiter);
    waiter = nullptr;
}

}  // namespace mireth
