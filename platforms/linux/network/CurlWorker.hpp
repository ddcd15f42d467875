// The thread of CurlHttpClient and the requests it runs.
#pragma once

#include <curl/curl.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "platforms/linux/network/CurlHttpClient.hpp"
#include "platforms/linux/network/CurlTransfer.hpp"
#include "platforms/linux/network/ExitGate.hpp"

namespace mireth::platform {

/// The completion of one request, taken exactly once: by the thread that calls it or by whoever cancels.
class PendingCompletion {
  public:
    explicit PendingCompletion(HttpClient::Completion completion) : completion_(std::move(completion)) {}

    /// Null when it was taken before.
    HttpClient::Completion take() {
        const std::lock_guard lock(mutex_);
        return std::exchange(completion_, nullptr);
    }

  private:
    std::mutex mutex_;
    HttpClient::Completion completion_;  // guarded by mutex_
};

struct CurlMultiDeleter {
    void operator()(CURLM* handle) const { curl_multi_cleanup(handle); }
};

class CurlHttpClient::Worker : public std::enable_shared_from_this<CurlHttpClient::Worker> {
  public:
    explicit Worker(CurlHttpClientOptions options);
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;
    ~Worker();

    void start();
    /// Ends all requests and the thread; waits for it unless called on it.
    void stop();

    AnyCancellable send(HttpRequest request, Completion completion);

  private:
    using Id = std::uint64_t;
    struct Order {
        Id id = 0;
        HttpRequest request;
        std::shared_ptr<PendingCompletion> completion;
    };
    struct Running {
        std::unique_ptr<CurlTransfer> transfer;
        std::shared_ptr<PendingCompletion> completion;
    };
    using Transfers = std::map<Id, Running>;

    void cancel(Id id);
    /// No memory costs a request its answer, never the process its life: nothing here throws.
    void loop() noexcept;
    /// Does what can be done without waiting. False once the process is ending.
    bool step();
    void waitForStop();
    void dropAll();
    void takeOrders();
    void begin(Order order) noexcept;
    void takeFinished();
    void endIdle();
    int millisecondsToWait() const;
    void finish(Transfers::iterator transfer, HttpResult result);
    void complete(PendingCompletion& completion, HttpResult result) const noexcept;
    bool isStopping();

    // Constant after construction.
    const CurlSettings settings_;
    const EscapedErrorHandler onEscapedError_;
    ExitGate& exitGate_;
    std::thread thread_;  // touched by start and stop only

    std::unique_ptr<CURLM, CurlMultiDeleter> multi_;  // the thread's own, but for the wake-up call
    Transfers running_;                               // the thread's own

    std::mutex mutex_;
    std::condition_variable stopped_;
    std::vector<Order> orders_;  // guarded by mutex_
    std::vector<Id> cancelled_;  // guarded by mutex_
    Id lastId_ = 0;              // guarded by mutex_
    bool stopping_ = false;      // guarded by mutex_
};

}  // namespace mireth::platform
