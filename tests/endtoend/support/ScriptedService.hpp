// A service whose answers the test writes by hand, right ones and wrong ones, and which remembers what it was
// asked.
#pragma once

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "integration/network/RawServer.hpp"

namespace mireth::endtoend {

/// The requests of a session.
enum class Request { configuration, create, upload, close, log, other };

class ScriptedService {
  public:
    /// Whole responses, head and all. A request without one gets what a well-meaning service would say; an
    /// empty response closes the connection without a word. `before` is called with each request that came
    /// in, before it is answered; on any thread.
    explicit ScriptedService(
        std::map<Request, std::string> answers = {}, std::function<void(Request)> before = [](Request) {});
    ScriptedService(const ScriptedService&) = delete;
    ScriptedService& operator=(const ScriptedService&) = delete;
    ~ScriptedService() = default;

    std::string origin() const { return server_.origin(); }
    /// What was asked so far, by request line, in order.
    std::vector<std::string> requestLines() const;
    /// How often this was asked.
    std::size_t count(Request request) const;

    /// The id of its sessions when nothing else is scripted.
    static constexpr const char* sessionId = "s1";

  private:
    void answer(test::Connection& connection);

    const std::map<Request, std::string> answers_;
    const std::function<void(Request)> before_;
    mutable std::mutex mutex_;
    std::vector<std::string> requestLines_;  // guarded by mutex_
    test::RawServer server_;
};

/// A response with status 200, the headers that a service sends, and this body.
std::string okWith(const std::string& body);
/// The answer to `create` with this id.
std::string createdSession(const std::string& sessionId);
/// The answer to `configuration` with this data centre.
std::string configuredFor(const std::string& dataCenter);

}  // namespace mireth::endtoend
