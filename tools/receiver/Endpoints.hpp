// The addresses that the receiver answers and what it does for each. The HTTP server hands every request
// here.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Exchange.hpp"
#include "RateLimiter.hpp"
#include "Services.hpp"

namespace mireth::receiver {

class Endpoints final : public RequestHandler {
  public:
    explicit Endpoints(Services services) : services_(services) {}

    std::unique_ptr<Exchange> begin(const RequestHead& head) override;

  private:
    std::unique_ptr<Exchange> createSession();
    std::unique_ptr<Exchange> closeSession(const std::string& sessionId);
    std::unique_ptr<Exchange> recordPlayback(const std::string& contentType);
    std::unique_ptr<Exchange> configuration(const std::string& brandId, const std::string& projectId);
    std::unique_ptr<Exchange> clientLog();

    Answer answerCreate(const std::string& body);
    Answer answerClose(const std::string& sessionId, const std::string& body);
    Answer answerConfiguration(const std::string& brandId, const std::string& projectId) const;
    Answer answerLog(const std::string& body);
    Answer refuseSession(int status, const std::string& why) const;
    std::optional<std::string> knownSession(const std::string& message);

    const Services services_;
    RateLimiter limiter_;  // guards itself
};

}  // namespace mireth::receiver
