// Runs Qt's loop until something has happened.
#pragma once

#include <QEventLoop>
#include <QTimer>
#include <chrono>
#include <functional>
#include <optional>

#include "MirethVex/Base/Async.hpp"

namespace mireth::qttest {

/// The last value of `done`; a wait that takes too long ends with false.
inline bool runUntil(const std::function<bool()>& done, double seconds = 30) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    QEventLoop loop;
    QTimer check;
    QObject::connect(&check, &QTimer::timeout, &loop, [&] {
        if (done() || std::chrono::steady_clock::now() > end) {
            loop.quit();
        }
    });
    check.start(1);
    loop.exec();
    return done();
}

inline void runFor(double seconds) {
    runUntil([] { return false; }, seconds);
}

template <class T>
std::optional<T> await(const Async<T>& async) {
    runUntil([&async] { return async.isReady(); });
    std::optional<T> result;
    async.then([&result](const T& value) { result = value; });
    runUntil([&result] { return result.has_value(); });
    return result;
}

}  // namespace mireth::qttest
