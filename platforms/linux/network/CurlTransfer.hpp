// One request of CurlHttpClient, from its rules to its result.
#pragma once

#include <curl/curl.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "MirethVex/Platform/HttpClient.hpp"
#include "platforms/linux/network/HttpRules.hpp"

namespace mireth::platform {

/// What all requests of a client have in common.
struct CurlSettings {
    bool allowInsecureHttp = false;
    /// All trusted authorities as PEM text; empty: the system's own list.
    std::string authorities;
    /// Why no request may be sent at all; empty when they may.
    std::string refusal;
};

struct CurlEasyDeleter {
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
};
struct CurlListDeleter {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
using CurlList = std::unique_ptr<curl_slist, CurlListDeleter>;

/// The client's thread only. Never moves: libcurl holds pointers into it.
class CurlTransfer {
  public:
    using TimePoint = std::chrono::steady_clock::time_point;

    CurlTransfer(HttpRequest request, const CurlSettings& settings);
    CurlTransfer(const CurlTransfer&) = delete;
    CurlTransfer& operator=(const CurlTransfer&) = delete;
    ~CurlTransfer() = default;

    /// Empty when the transfer can be run; else why it cannot.
    const std::string& refusal() const noexcept { return refusal_; }
    CURL* handle() const noexcept { return handle_.get(); }

    /// Looks whether bytes have moved since the last look.
    void noteActivity(TimePoint now);
    /// When the request fails unless bytes move before.
    TimePoint deadline() const noexcept { return lastActivity_ + idleTimeout_; }

    /// The result after libcurl ended the transfer with `code`.
    HttpResult result(CURLcode code);
    /// The result once the deadline has passed.
    HttpResult timedOut() const;
    /// A failure that names the request.
    HttpResult failure(std::string_view reason) const;

  private:
    std::string prepare(const CurlSettings& settings);
    template <class Value>
    void set(CURLoption option, Value value);
    void setSafetyRules(const CurlSettings& settings);
    void setMessage();
    void setMethodAndBody();
    void setHeaders();
    void append(CurlList& list, const std::string& entry);
    bool hasHeader(std::string_view name) const;
    void resolveToLoopback();
    static std::size_t receiveBody(char* data, std::size_t size, std::size_t count, void* self);
    static std::size_t receiveHeader(char* data, std::size_t size, std::size_t count, void* self);
    HeaderFields finalHeaders() const;

    const HttpRequest request_;
    const std::chrono::milliseconds idleTimeout_;
    CheckedUrl url_;
    CurlList headers_;
    CurlList addresses_;
    std::array<char, CURL_ERROR_SIZE> errorText_{};
    std::unique_ptr<CURL, CurlEasyDeleter> handle_;  // after what it points to
    CURLcode setUpResult_ = CURLE_OK;
    std::string refusal_;

    std::string body_;
    std::size_t headerBytes_ = 0;
    bool isTooLong_ = false;
    bool hasWholeHead_ = false;  // of the last answer that has begun, interim ones included

    std::int64_t lastMark_ = -1;
    TimePoint lastActivity_ = std::chrono::steady_clock::now();
};

}  // namespace mireth::platform
