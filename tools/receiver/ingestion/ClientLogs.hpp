// The log lines that clients post. Used by Endpoints.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "access/RateLimiter.hpp"
#include "exchange/Exchange.hpp"
#include "service/Services.hpp"

namespace mireth::receiver {

/// Any thread may call.
class ClientLogs {
  public:
    static constexpr std::size_t longestBody = std::size_t{128} * 1024;
    /// The body of every answer but the good one.
    static constexpr const char* refusal = R"({"status":"Failure"})";

    explicit ClientLogs(Services services) : services_(services) {}

    /// Keeps the line that the form `body` holds. The ids are those of the request's query.
    Answer answer(const std::string& brandId, const std::string& projectId, const std::string& body);

  private:
    Answer refuse(int status, const std::string& why) const;
    /// Why no line of the session may be kept; none when it may.
    std::optional<Answer> objection(const std::string& brandId, const std::string& projectId,
                                    const std::string& sessionId) const;

    const Services services_;
    RateLimiter rate_;  // guards itself
};

}  // namespace mireth::receiver
