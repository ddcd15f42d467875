// The coroutine type of the library's asynchronous operations, and how they are started and moved between
// executors.
#pragma once

#include <boost/asio/any_io_executor.hpp>
#include <boost/asio/awaitable.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <exception>
#include <utility>

namespace mireth {

namespace asio = boost::asio;

/// An asynchronous operation. It begins when it is awaited, runs on the executor of whoever awaits it, and
/// is dropped without further effect when that executor's queue is destroyed.
///
/// `co_await` stands before the call: `co_await client->closeSession(id)`. Parameters are taken by value,
/// since the arguments may be gone when the operation goes on. What an argument is made of is named before
/// the `co_await` when it is a lambda, a value in braces or one of the two sides of `?:`: GCC 12 destroys
/// these twice, as it does not know that they have moved into the operation. Names, moved names and what
/// functions and constructors return are safe.
template <class T = void>
using Task = asio::awaitable<T, asio::any_io_executor>;

using Executor = asio::any_io_executor;

/// Reports an exception that reached the end of a detached task, on standard error. Tasks handle their own
/// failures; this is the last guard before the host.
void reportEscapedException(const std::exception_ptr& exception) noexcept;

/// Runs `task` on `executor`, never inline, and forgets it. Whatever it needs, its parameters must own.
template <class T>
void spawn(const Executor& executor, Task<T> task) {
    asio::post(executor, [executor, task = std::move(task)]() mutable {
        asio::co_spawn(executor, std::move(task), [](const std::exception_ptr& exception, auto&&...) {
            if (exception) {
                reportEscapedException(exception);
            }
        });
    });
}

/// Runs `task` on `executor` and comes back to the caller's executor with its result or exception. `T` must
/// be default-constructible.
template <class T>
Task<T> runOn(Executor executor, Task<T> task) {
    co_return co_await asio::co_spawn(std::move(executor), std::move(task),
                                      asio::use_awaitable_t<Executor>{});
}

}  // namespace mireth
